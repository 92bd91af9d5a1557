#include "vorlane/bootstrap/message_handler.h"

#include <gtest/gtest.h>

#include <iostream>
#include <stdexcept>
#include <string>

#include "bootstrap/child.h"
#include "vorlane/bootstrap/logger.h"

using zyl::test::inChild;

namespace {

TEST(MessageCatalog, HasAllTexts) {
  const std::string noInstallation = " installation -> ignored.";
  const std::string noRuntime =
      " (A), but does not point to a valid SUN/Tavorn JRE or JDK installation -> ignored.";
  const std::string relaunch =
      ":\nA\n(you can relaunch with -debug to have more details about the error).\n";
  const struct {
    const char* id;
    std::string text;
  } rows[] = {
      {"BOOTSTRAP_BAD_VTQROOT_ENV",
       "VTQROOT_OVERRIDE environment variable is defined (A), but does not point to a valid VTQ" +
           noInstallation},
      {"BOOTSTRAP_BAD_VTQROOT_LOADED",
       "We are running in a JVM that has already VTQ loaded, but the VTQ classes (A) are not in a "
       "valid VTQ" +
           noInstallation},
      {"BOOTSTRAP_BAD_INSTALLER_JRE", "A JRE was set in VTQ installer" + noRuntime},
      {"BOOTSTRAP_BAD_JAVAHOME", "JAVA_HOME environment variable is defined" + noRuntime},
      {"BOOTSTRAP_BAD_JAVAREGISTRY", "A JRE is declared in registry" + noRuntime},
      {"BOOTSTRAP_BAD_JAVAPATH", "A java executable was found in PATH" + noRuntime},
      {"BOOTSTRAP_BAD_JAVAVTQ", "A JRE was found in VTQ installation" + noRuntime},
      {"BOOTSTRAP_BAD_KVLROOT_ENV",
       "KVLROOT_OVERRIDE environment variable is defined (A), but does not point to a valid KVL" +
           noInstallation},
      {"BOOTSTRAP_JAVA_CREATED_JVM",
       "Created Java Virtual Machine from \"A\", with Java support classes from \"B\""},
      {"BOOTSTRAP_JAVA_NO_JVM", "Can't find/create a valid Java Runtime Environment."},
      {"BOOTSTRAP_NO_KVLROOT", "Can't find the KVL root directory"},
      {"BOOTSTRAP_NO_VTQROOT", "Can't find the VTQ root directory, check VTQ is installed"},
      {"BOOTSTRAP_NO_JVM", "No JVM running, see previous messages"},
      {"BOOTSTRAP_JAVA_ERR_GET_JVM", "Error loading a Java Runtime Environment: A"},
      {"BOOTSTRAP_JAVA_ERR_CREATE_JVM",
       "Error creating Java Runtime Environment (did you set wrong parameters in VTQS_JAVA_ARGS?): "
       "A"},
      {"BOOTSTRAP_LAUNCH_ERROR", "Error launching A: B"},
      {"BOOTSTRAP_ERROR_KVLVTQ_FALLBACK_KVL",
       "Tavorn MARZ VTQ was detected, but there was an error launching KVL-VTQ IDE" + relaunch +
           "Starting in pure KVL mode."},
      {"BOOTSTRAP_ERROR_VTQ_PLAYER",
       "Tavorn MARZ VTQ Studio failed to launch" + relaunch + "Exiting."},
  };
  ZylKvlDefaultMessageHandler handler;
  for (const auto& row : rows) EXPECT_EQ(handler.localize(row.id, "A", "B"), row.text);
  EXPECT_EQ(handler.getMessageCatalog().size(), std::size(rows));
  EXPECT_EQ(handler.getMessageCatalog()["BOOTSTRAP_LAUNCH_ERROR"], "Error launching %s: %s");
}

TEST(MessageCatalog, FixesPlaceHolders) {
  const char* rows[][2] = {{"", ""},       {"%", "%"},         {"100%", "100%"},
                           {"%0", "%s"},   {"%1-%0", "%s-%s"}, {"%2 %% %", "%2 %% %"},
                           {"%%0", "%%s"}, {"%01", "%s1"}};
  for (const auto& row : rows) {
    EXPECT_EQ(ZylKvlDefaultMessageHandler::fixPlaceHolders(row[0]), row[1]);
  }
}

TEST(Localize, TakesTextsAndArgumentsOfAnyKind) {
  ZylKvlDefaultMessageHandler handler;
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(handler.localize("FOO", "a", nullptr), "FOO (a;)");
    EXPECT_EQ(handler.getMessageCatalog().at("FOO"), "");
  }
  EXPECT_EQ(handler.localize(nullptr, "%s", "%n"), " (%s;%n)");
  EXPECT_EQ(handler.localize("BOOTSTRAP_LAUNCH_ERROR", nullptr, nullptr), "Error launching : ");
  EXPECT_EQ(handler.localize("BOOTSTRAP_LAUNCH_ERROR", "%s%d", "%n"), "Error launching %s%d: %n");

  const char* rows[][2] = {
      {"%s %s %s %n", "A B %s %n"}, {"%d%5s%", "%d%5s%"}, {"100%% %s", "100% A"}};
  for (const auto& row : rows) {
    handler.getMessageCatalog()["BAR"] = row[0];
    EXPECT_EQ(handler.localize("BAR", "A", "B"), row[1]);
  }
  const std::string longText(1 << 20, 'x');
  EXPECT_EQ(handler.localize("BOOTSTRAP_JAVA_ERR_GET_JVM", longText.c_str(), nullptr),
            ("Error loading a Java Runtime Environment: " + longText).substr(0, 10239));
  EXPECT_EQ(handler.localize("FOO", longText.c_str(), "b").size(), 10239u);
}

TEST(DefaultMessageHandler, WritesAndKeepsEachLine) {
  const zyl::test::Outcome outcome = inChild({}, [] {
    ZylKvlDefaultMessageHandler handler;
    handler.info("I", "a", "b");
    handler.warning("W", nullptr, nullptr);
    handler.error("BOOTSTRAP_JAVA_NO_JVM", nullptr, nullptr);
    try {
      handler.fatal("BOOTSTRAP_NO_JVM", nullptr, nullptr);
      ADD_FAILURE() << "fatal returned";
    } catch (const std::runtime_error& error) {
      EXPECT_STREQ(error.what(), "FATAL:No JVM running, see previous messages");
    }
    std::string kept;
    for (const std::string& line : handler.getReportedMessages()) kept += line + "\n";
    std::cout << kept;

    ZylKvlNullMessageHandler silent;
    silent.info("I", nullptr, nullptr);
    silent.warning("I", nullptr, nullptr);
    silent.error("I", nullptr, nullptr);
    silent.fatal("I", nullptr, nullptr);
  });
  EXPECT_EQ(outcome.err,
            "INFO: I (a;b)\nWARNING: W (;)\n"
            "ERROR: Can't find/create a valid Java Runtime Environment.\n"
            "FATAL: No JVM running, see previous messages\n");
  EXPECT_EQ(outcome.out, outcome.err);
}

TEST(TraceLog, IndentsBetweenEntryAndExit) {
  const zyl::test::Outcome outcome = inChild({}, [] {
    {
      const TraceMethod silent("silent", "a", "b");
      ZylKvlLogger::_enabled = true;  // its exit is logged, at the indent that there is
    }
    try {
      const TraceMethod outer("outer");
      const TraceMethod inner("inner", "a");
      ZylKvlLogger::log("1", nullptr, "3", "4", "5");
      const TraceMethod innermost("innermost", "a", "b");
      throw 1;
    } catch (int) {
    }
    ZylKvlDefaultMessageHandler().localize("FOO", nullptr, nullptr);
    const TraceMethod unfinished("unfinished", nullptr, "b");
    ZylKvlLogger::_enabled = false;
    const TraceMethod silent("silent");
  });
  EXPECT_EQ(outcome.err,
            "Exiting method\n"
            "Entering outer\n"
            "--Entering inner with a\n"
            "----1345\n"
            "----Entering innermost with a;b\n"
            "----Exiting method\n"
            "--Exiting method\n"
            "Exiting method\n"
            "Message ID:FOO not found in messages catalog\n"
            "Entering unfinished;b\n");
}

}  // namespace
