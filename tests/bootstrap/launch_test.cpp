// Launch of a class, the launcher's command line, and the way back of exceptions.

#include <cstdlib>
#include <functional>
#include <iostream>
#include <list>
#include <stdexcept>
#include <string>
#include <vector>

#include "bootstrap/java_utils.h"
#include "bootstrap/stub_installation.h"
#include "jace/interposed.h"
#include "jace/stub.h"
#include "vorlane/bootstrap.h"
#include "vorlane/env/exception.h"

namespace zyl::test {
namespace {

using Texts = std::vector<std::string>;
using Launch = StubInstallation;

bool launchDemo(ZylKvlMessageHandler& handler, const std::list<std::string>& arguments = {}) {
  return ZylKvlLaunchJavaMain(std::string("Demo"), "demo/Main", handler, arguments, false, false);
}

TEST_F(Launch, RunsMainOrTellsWhyNot) {
  const struct {
    std::string rules;
    std::string failure;
    std::string trace = "";
    std::size_t described = 1;
  } rows[] = {
      {"", "", "Launching main Java class: demo/Main\n", 0},
      {"missing=demo/Main", "?", "Can't find Demo launch class\n"},
      {"missing=demo/Main.main", "?"},
      {"missing=java/lang/String", "java.lang.NoClassDefFoundError: java/lang/String"},
      {"null=NewObjectArray", "java.lang.OutOfMemoryError: array"},
      {"throws=main", "java.lang.IllegalStateException: main",
       "Demo failed with exception: java.lang.IllegalStateException: main\n"},
      {"throws=main throws=toString", "?", "", 2},
      {"throws=main missing=java/lang/IllegalStateException.toString", "?", "", 2},
      {"throws=main null=GetStringUTFChars",
       "Unable to retrieve the character string for an exception message.",
       "Failed to launch Demo: Unable to retrieve the character"},
  };
  for (const auto& row : rows) {
    for (const bool debug : {true, false}) {
      SCOPED_TRACE(row.rules);
      const Outcome outcome = run({{"STUB_RUNTIME", row.rules}}, [&] {
        ZylKvlLogger::_enabled = debug;
        ZylKvlDefaultMessageHandler handler;
        EXPECT_EQ(launchDemo(handler), row.failure.empty());
        EXPECT_FALSE(jace::helper::attach()->ExceptionCheck());
        EXPECT_EQ(openLocalRefs(), 0);
      });
      expectAll(outcome.err,
                {debug ? row.trace : "",
                 row.failure.empty() ? "" : "ERROR: Error launching Demo: " + row.failure + "\n"});
      EXPECT_EQ(recorded("ExceptionDescribe").size(), debug ? row.described : 0);
    }
  }
}

TEST_F(Launch, PassesArgumentsInTheFormThatTheMachineReads) {
  const Outcome outcome = run({}, [] {
    ZylKvlLogger::_enabled = true;
    ZylKvlNullMessageHandler handler;
    EXPECT_TRUE(launchDemo(handler, {"a b", "", "\xC3\xA9\xE2\x82\xAC", "\xF0\x9F\x99\x82",
                                     "\xFF\xC3", "\xED\xA0\x80", "\xF4\x90\x80\x80"}));
  });
  const std::string bad = "\xEF\xBF\xBD";
  EXPECT_EQ(recorded("argument"),
            (Texts{"a b", "", "\xC3\xA9\xE2\x82\xAC", "\xED\xA0\xBD\xED\xB9\x82", bad + bad,
                   bad + bad + bad, bad + bad + bad + bad}));
  expectAll(outcome.err, {"Adding main arg: a b\n", "Adding main arg: \n"});
}

// Raises whatever it is told to when the machine has been created.
class RaisingHandler : public ZylKvlDefaultMessageHandler {
 public:
  explicit RaisingHandler(std::function<void()> raise) : _raise(std::move(raise)) {}
  void info(const char*, const char*, const char*) override { _raise(); }

 private:
  std::function<void()> _raise;
};

TEST_F(Launch, TurnsExceptionsOfAnyFamilyIntoItsFailure) {
  const struct {
    std::function<void()> raise;
    std::string failure;
    std::string trace;
  } rows[] = {
      {[] { throw ZylException("our own"); }, "our own", "Failed to launch Demo: our own\n"},
      {[] { throw 1; }, "?", "Failed to launch Demo with unknown exception\n"},
      {[] { throw std::runtime_error("standard"); },
       "FATAL:Error creating Java Runtime Environment (did you set wrong parameters in "
       "VTQS_JAVA_ARGS?): standard",
       "Failed to launch Demo: FATAL:Error creating"},
  };
  for (const auto& row : rows) {
    const Outcome outcome = run({}, [&row] {
      ZylKvlLogger::_enabled = true;
      RaisingHandler handler(row.raise);
      EXPECT_FALSE(launchDemo(handler));
    });
    expectAll(outcome.err, {row.trace, "ERROR: Error launching Demo: " + row.failure + "\n"});
  }
}

TEST_F(Launch, TellsThatNoMachineRuns) {
  const Outcome outcome = run({{"STUB_RUNTIME", "create=-1"}}, [] {
    ZylKvlNullMessageHandler silent;
    EXPECT_FALSE(launchDemo(silent));
    ZylKvlDefaultMessageHandler handler;
    EXPECT_FALSE(launchDemo(handler));
    EXPECT_THROW(ZylKvlGetJVM(handler), std::runtime_error);
  });
  const std::string fatal = "No JVM running, see previous messages\n";
  EXPECT_EQ(outcome.err,
            "FATAL: " + fatal + "ERROR: Error launching Demo: FATAL:" + fatal + "FATAL: " + fatal);
  const Outcome uninstalled = run({}, [] {
    unsetenv("JAVA_HOME");
    ZylKvlDefaultMessageHandler handler;
    EXPECT_FALSE(launchDemo(handler));
  });
  EXPECT_EQ(uninstalled.err,
            "ERROR: Can't find/create a valid Java Runtime Environment.\nERROR: Error launching "
            "Demo: Unable to resolve the function, JNI_CreateJavaVM from library \n");
}

class Launcher : public StubInstallation {
 protected:
  // Prints the variables that options set, each with "|" behind it.
  Outcome launch(const Environment& environment, Texts words, int status = 0) {
    const auto body = [&words] {
      std::vector<char*> argv;
      for (std::string& word : words) argv.push_back(word.data());
      parseArgumentsAndExec(static_cast<int>(argv.size()), argv.data(), "Demo", "demo/Main",
                            /*redirectJavaOutput=*/false, /*requireGenerationalGC=*/false);
      for (const char* name : {"KVLROOT_OVERRIDE", "VTQROOT_OVERRIDE", "JAVA_HOME",
                               "VTQS_JAVA_ARGS", "VTQS_JVM_NO_INHERITED_LIBPATH_APPEND"}) {
        const char* value = std::getenv(name);
        std::cout << (value == nullptr ? "-" : value) << "|";
      }
    };
    return run(environment, body, status);
  }
};

TEST_F(Launcher, TakesItsOptionsOutOfTheLine) {
  const std::string set = _kvl + "|-|" + _home + "|";
  const struct {
    Texts words;
    std::string variables;
    Texts javaArguments = {};
    bool fails = false;  // and says nothing of it
  } rows[] = {
      {{}, set + "-|-|"},
      {{"program"}, set + "-|-|"},
      {{"program", "a", "-Debug", ""}, set + "-|-|", {"a", "-Debug", ""}},
      {{"-debug", "a"}, set + "-|-|", {"-debug", "a"}},
      {{"p", "a", "-debug", "b", "-debug"}, set + "-|-|", {"-debug", "a", "b"}},
      {{"p", "-vtqroot", "-debug", "a"}, _kvl + "|-debug|" + _home + "|-|-|", {"a"}},
      {{"-javaargs", "-y -z", "-javaNoInheritedLIBPATHAppend", "x"}, set + "-y -z|1|", {"x"}},
      {{"p", "-kvlroot", _kvl + "/.", "-java", _home + "/."}, _kvl + "/.|-|" + _home + "/.|-|-|"},
      {{"p", "-javaargs"}, set + "|-|"},
      // Without a value, which empties their variables.
      {{"p", "-java"}, _kvl + "|-||-|-|", {}, true},
      {{"p", "-kvlroot"}, "|-|" + _home + "|-|-|", {}, true},
      {{"p", "-vtqroot"}, _kvl + "||" + _home + "|-|-|", {}, true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.variables);
    const Outcome outcome = launch({{"STUB_RUNTIME", row.fails ? "throws=main" : ""}}, row.words);
    EXPECT_EQ(outcome.out, row.variables);
    EXPECT_EQ(recorded("argument"), row.javaArguments);
    EXPECT_TRUE(row.fails || recorded("Call") == Texts{"main"});
    const bool debug = !row.javaArguments.empty() && row.javaArguments[0] == "-debug";
    EXPECT_EQ(outcome.err.empty(), !debug);
  }
}

// The whole trace of a launch and of searches in vain, whatever the directory of the test.
TEST_F(Launcher, TracesEachStepInItsWords) {
  addRuntime(tavornLayout);
  const auto parse = [](Texts words) {
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    parseArgumentsAndExec(static_cast<int>(argv.size()), argv.data(), "Demo", "demo/Main",
                          /*redirectJavaOutput=*/false, /*requireGenerationalGC=*/true);
  };
  const Outcome silent = run({}, [&] {
    ZylKvlLogger::_enabled = true;  // by the client; the launcher heeds its own option only
    parse({"p"});
  });
  EXPECT_EQ(silent.err, "Entering parseArgumentsAndExec with Demo;demo/Main\n");

  const Outcome outcome = run({{"VTQS_JVM_LIBRARY_OVERRIDE", "/none"}}, [&] {
    moduleFile = "/program/test";
    parse({"p", "-vtqroot", "silent", "-debug", "-kvlroot", _kvl, "-java", _home, "-javaargs",
           "'-foo bar -cp a -Djava.library.path=/l1 dropped -classpath \"c d\" -Xint \"\"'",
           "-javaNoInheritedLIBPATHAppend", "x", "-vtqroot", _vtq});
    ZylKvlIsRunningAsSharedLib();
    ZylCatchAndThrowFromJVM();
    JavaUtils::ResetJVMSearch();
  });
  const Outcome vain = inChild({{"VTQS_JVM_LIBRARY_OVERRIDE", "/none"}}, [&] {
    ZylKvlLogger::_enabled = true;
    ZylKvlNullMessageHandler handler;
    JavaUtils::IsLibPointingToTavornJVM("/x");
    JavaUtils::GetJRERuntimeLibInternal(handler, /*report=*/false);
    JavaUtils::JREHomeToJRERuntimeLib("/none");
    setenv("VTQS_JVM_LIBRARY_OVERRIDE", "/jre.so", 1);
    _directory.touch("jre.so");
    JavaUtils::JREHomeToJRERuntimeLib(_directory.path().c_str());
    modulesAreHidden = true;
    ZylKvlHasValidKVLRoot(handler);
  });
  std::string trace = outcome.err + "\n" + vain.err;
  const std::string directory = _directory.path();
  for (auto at = trace.find(directory); at != trace.npos; at = trace.find(directory)) {
    trace.replace(at, directory.size(), "{directory}");
  }
  EXPECT_EQ(trace, readFile(TRACE_FILE));
}

TEST_F(Launcher, ShowsItsOptions) {
  const std::string usage =
      "    -debug        print debugging information.\n"
      "    -java         override the location of the java runtime.\n"
      "    -javaargs     give additional Java arguments to launch the JVM.\n"
      "    -kvlroot      override the location of the KVL runtime.\n"
      "    -vtqroot      override the location of the VTQ runtime.\n"
      "    -javaNoInheritedLIBPATHAppend do not append the inherited libpath (use "
      "-Djava.library.path in javaargs to add additional DLLs\n\n";
  for (const Texts& words : {Texts{"-X"}, {"p", "a", "-X", "b"}, {"p", "-debug", "-X"}}) {
    EXPECT_EQ(launch({}, words, /*status=*/1).out, usage);
  }
  EXPECT_THAT(launch({}, {"p", "-javaargs", "-X"}).out, testing::EndsWith("|-X|-|"));
}

using Callback = StubInstallation;

TEST_F(Callback, ExceptionComesOutOfItsWrapper) {
  const std::string wrapper = "marz/sembla/ZylSembla$CallbackRethrowException";
  const std::string inner = "demo/InnerException";
  const std::string none = "Cannot retrieve exception informations";
  struct Row {
    std::string rule;
    std::string raised;
    std::string text;
    std::string left;
  };
  std::vector<Row> rows = {
      {"", "", none, ""},
      {"", wrapper, "java.io.ByteArrayOutputStream: trace of demo/InnerException\n", inner},
      {"", "demo/Other", "java.io.ByteArrayOutputStream: trace of demo/Other\n", "demo/Other"},
      {"missing=" + wrapper, wrapper, none, wrapper},
      {"missing=" + wrapper + ".rethrowException", wrapper, none, wrapper},
  };
  for (const char* rule :
       {"missing=java/io/ByteArrayOutputStream", "missing=java/io/ByteArrayOutputStream.<init>",
        "missing=java/io/ByteArrayOutputStream.toString", "missing=java/io/PrintStream",
        "missing=java/io/PrintStream.<init>", "missing=java/lang/Throwable",
        "missing=java/lang/Throwable.printStackTrace", "throws=java/io/ByteArrayOutputStream",
        "throws=java/io/PrintStream", "throws=printStackTrace", "throws=toString",
        "null=GetStringUTFChars"}) {
    rows.push_back({rule, wrapper, none, inner});
  }
  for (const Row& row : rows) {
    SCOPED_TRACE(row.rule);
    run({{"STUB_RUNTIME", "machines=1"}}, [&row] {
      ZylKvlLogger::_enabled = true;
      installStub();
      JNIEnv* env = jace::helper::attach();
      if (!row.raised.empty()) {
        jclass type = env->FindClass(row.raised.c_str());
        env->ThrowNew(type, "");
        env->DeleteLocalRef(type);
      }
      setenv("STUB_RUNTIME", row.rule.c_str(), 1);
      EXPECT_EQ(ZylCatchAndThrowFromJVM(), row.text);
      EXPECT_EQ(env->ExceptionCheck() != JNI_FALSE, !row.left.empty());
      EXPECT_EQ(openLocalRefs(), 0);
    });
    // What fails on the way is told, not what the callback raised.
    EXPECT_EQ(wasDescribed(), row.rule.starts_with("missing") || row.rule.starts_with("throws"));
    EXPECT_EQ(recorded("Throw"), row.left.empty() ? Texts{} : Texts{row.left});
  }
}

}  // namespace
}  // namespace zyl::test
