// The messages: keys, and texts with places for two arguments.

#include "bootstrap/message_catalog.h"

namespace zyl::detail {
namespace {

constexpr CatalogRow rows[] = {
    {BOOTSTRAP_BAD_VTQROOT_ENV,
     "VTQROOT_OVERRIDE environment variable is defined (%0), but does not point to a valid VTQ "
     "installation -> ignored."},
    {"BOOTSTRAP_BAD_VTQROOT_LOADED",
     "We are running in a JVM that has already VTQ loaded, but the VTQ classes (%0) are not in a "
     "valid VTQ installation -> ignored."},
    {"BOOTSTRAP_BAD_INSTALLER_JRE",
     "A JRE was set in VTQ installer (%0), but does not point to a valid SUN/Tavorn JRE or JDK "
     "installation -> ignored."},
    {BOOTSTRAP_BAD_JAVAHOME,
     "JAVA_HOME environment variable is defined (%0), but does not point to a valid SUN/Tavorn JRE "
     "or JDK installation -> ignored."},
    {"BOOTSTRAP_BAD_JAVAREGISTRY",
     "A JRE is declared in registry (%0), but does not point to a valid SUN/Tavorn JRE or JDK "
     "installation -> ignored."},
    {BOOTSTRAP_BAD_JAVAPATH,
     "A java executable was found in PATH (%0), but does not point to a valid SUN/Tavorn JRE or "
     "JDK installation -> ignored."},
    {"BOOTSTRAP_BAD_JAVAVTQ",
     "A JRE was found in VTQ installation (%0), but does not point to a valid SUN/Tavorn JRE or "
     "JDK installation -> ignored."},
    {BOOTSTRAP_BAD_KVLROOT_ENV,
     "KVLROOT_OVERRIDE environment variable is defined (%0), but does not point to a valid KVL "
     "installation -> ignored."},
    {BOOTSTRAP_JAVA_CREATED_JVM,
     R"(Created Java Virtual Machine from "%0", with Java support classes from "%1")"},
    {BOOTSTRAP_JAVA_NO_JVM, "Can't find/create a valid Java Runtime Environment."},
    {BOOTSTRAP_NO_KVLROOT, "Can't find the KVL root directory"},
    {BOOTSTRAP_NO_VTQROOT, "Can't find the VTQ root directory, check VTQ is installed"},
    {BOOTSTRAP_NO_JVM, "No JVM running, see previous messages"},
    {BOOTSTRAP_JAVA_ERR_GET_JVM, "Error loading a Java Runtime Environment: %0"},
    {BOOTSTRAP_JAVA_ERR_CREATE_JVM,
     "Error creating Java Runtime Environment (did you set wrong parameters in VTQS_JAVA_ARGS?): "
     "%0"},
    {BOOTSTRAP_LAUNCH_ERROR, "Error launching %0: %1"},
    {"BOOTSTRAP_ERROR_KVLVTQ_FALLBACK_KVL",
     "Tavorn MARZ VTQ was detected, but there was an error launching KVL-VTQ IDE:\n%0\n(you can "
     "relaunch with -debug to have more details about the error).\nStarting in pure KVL mode."},
    {"BOOTSTRAP_ERROR_VTQ_PLAYER",
     "Tavorn MARZ VTQ Studio failed to launch:\n%0\n(you can relaunch with -debug to have more "
     "details about the error).\nExiting."},
};

}  // namespace

std::span<const CatalogRow> catalogRows() { return rows; }

}  // namespace zyl::detail
