// The command line of a native launcher.

#include <cstdlib>
#include <iostream>
#include <list>
#include <string>
#include <string_view>

#include "bootstrap/java_utils.h"
#include "bootstrap/system_utils.h"
#include "bootstrap/trace.h"
#include "vorlane/bootstrap/launch.h"
#include "vorlane/bootstrap/message_handler.h"

using zyl::detail::trace;

const char* const JavaUtils::ADVANCED_USAGE_STRING =
    "    -debug        print debugging information.\n"
    "    -java         override the location of the java runtime.\n"
    "    -javaargs     give additional Java arguments to launch the JVM.\n"
    "    -kvlroot      override the location of the KVL runtime.\n"
    "    -vtqroot      override the location of the VTQ runtime.\n"
    "    -javaNoInheritedLIBPATHAppend do not append the inherited libpath (use "
    "-Djava.library.path in javaargs to add additional DLLs\n";

namespace {

// An option that sets an environment variable to the argument behind it.
struct ValueOption {
  std::string_view name;
  const char* variable;
  const char* traceText;
};

constexpr ValueOption valueOptions[] = {
    {"-kvlroot", "KVLROOT_OVERRIDE", "KVLROOT_OVERRIDE_ENV_VAR_NAME is "},
    {"-vtqroot", "VTQROOT_OVERRIDE", "VTQROOT_OVERRIDE_ENV_VAR_NAME is "},
    {"-java", "JAVA_HOME", "JAVA_HOME is "},
    {"-javaargs", "VTQS_JAVA_ARGS", "VTQS_JAVA_ARGS is "},
};

const ValueOption* findValueOption(std::string_view argument) {
  for (const ValueOption& option : valueOptions) {
    if (option.name == argument) return &option;
  }
  return nullptr;
}

[[noreturn]] void printUsageAndExit() {
  std::cout << JavaUtils::ADVANCED_USAGE_STRING << std::endl;
  std::exit(1);
}

// Carries out the options and returns what is left for the Java class.
std::list<std::string> scanArguments(int argc, char** argv) {
  std::list<std::string> javaArguments;
  bool debug = false;
  for (int i = 0; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument == "-X") printUsageAndExit();
    if (argument == "-debug") {
      debug = ZylKvlLogger::_enabled = true;
    } else if (const ValueOption* option = findValueOption(argument); option != nullptr) {
      const char* value = i + 1 < argc ? argv[++i] : "";
      // At once: the runtime is looked for by what the environment holds.
      SystemUtils::SetEnvironmentVariable(option->variable, value);
      trace(option->traceText, value);
    } else if (argument == "-javaNoInheritedLIBPATHAppend") {
      SystemUtils::SetEnvironmentVariable("VTQS_JVM_NO_INHERITED_LIBPATH_APPEND", "1");
      trace("javaNoInheritedLIBPATHAppend is ", "true");
    } else if (i > 0) {
      trace("Adding argument for the Java class: ", argv[i]);
      javaArguments.emplace_back(argument);
    }
  }
  if (debug) javaArguments.emplace_front("-debug");
  return javaArguments;
}

}  // namespace

void JavaUtils::parseArgumentsAndExec(int argc, char** argv, const char* displayName,
                                      const char* mainClass, bool redirectJavaOutput,
                                      bool requireGenerationalGC) {
  const TraceMethod method("parseArgumentsAndExec", displayName, mainClass);
  ZylKvlLogger::_enabled = false;
  const std::list<std::string> arguments = scanArguments(argc, argv);
  const auto launch = [&](ZylKvlMessageHandler& handler) {
    ZylKvlLaunchJavaMain(displayName, mainClass, handler, arguments, redirectJavaOutput,
                         requireGenerationalGC);
  };
  if (ZylKvlLogger::_enabled) {
    ZylKvlDefaultMessageHandler handler;
    launch(handler);
  } else {
    ZylKvlNullMessageHandler handler;
    launch(handler);
  }
}

void parseArgumentsAndExec(int argc, char** argv, const char* displayName, const char* mainClass,
                           bool redirectJavaOutput, bool requireGenerationalGC) {
  JavaUtils::parseArgumentsAndExec(argc, argv, displayName, mainClass, redirectJavaOutput,
                                   requireGenerationalGC);
}
