// Creation of the machine, seen from a runtime that records what it is told.

#include <dlfcn.h>

#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

#include "bootstrap/java_utils.h"
#include "bootstrap/stub_installation.h"
#include "jace/interposed.h"
#include "jace/stub.h"
#include "vorlane/bootstrap.h"

using testing::HasSubstr;

namespace zyl::test {
namespace {

using Texts = std::vector<std::string>;

class Creation : public StubInstallation {
 protected:
  // Creates a machine, with a handler that says nothing.
  static void create(bool log, bool redirectsOutput, bool requiresGenerationalGC = false) {
    ZylKvlLogger::_enabled = log;
    ZylKvlNullMessageHandler handler;
    EXPECT_TRUE(ZylKvlCreateJVM(handler, redirectsOutput, requiresGenerationalGC));
  }
  // The library path with `entries` behind the program's own directory.
  [[nodiscard]] std::string libraryPath(const std::string& entries) const {
    const std::string runtime = _home + tavornLayout.substr(0, tavornLayout.rfind('/'));
    return ZylKvlGetCurrentModuleDirPath() + entries + ":" + _kvl +
           "/bin/x86-64_sles10_4.1:" + _kvl + "/bin:" + runtime + ":" + runtime + "/..:" + runtime +
           "/../native_threads";
  }
};

TEST_F(Creation, PassesOptionsAndPathsInOrder) {
  addRuntime(tavornLayout);
  const std::string path = libraryPath(":/l1:=/l2:" + _vtq + "/bin/x86-64_sles10_4.1");
  const std::string classPath =
      "c d:" + _vtq + "/lib/:" + _vtq + "/lib/vtqeall.jar:" + _kvl + "/lib/kvlall.jar";
  const Texts wanted = {"-foo bar",
                        "-Xint",
                        "-Xgcpolicy:gencon",
                        "-Xmx512M",
                        "-Djava.class.path=" + classPath,
                        "-Djava.library.path=" + path};
  run({{"VTQROOT_OVERRIDE", _vtq},
       {"LD_LIBRARY_PATH", "/old"},
       {"VTQS_JAVA_ARGS",
        "'-foo bar -cp a -Djava.library.path=/l1 dropped -classpath \"c d\" "
        "x-Djava.library.path=/l2 -Xint \"\"'"}},
      [&path] {
        ZylKvlDefaultMessageHandler handler;
        EXPECT_TRUE(ZylKvlCreateJVM(handler, false, /*requireGenerationalGC=*/true));
        EXPECT_EQ(std::getenv("LD_LIBRARY_PATH"), path + ":/old");
        // A second one finds the first, and creates nothing.
        EXPECT_TRUE(ZylKvlCreateJVM(handler, false, false));
        EXPECT_EQ(ZylKvlGetJVM(handler), jace::helper::attach());
      });
  EXPECT_EQ(recorded("option"), wanted);
  EXPECT_EQ(recorded("JNI_CreateJavaVM"), Texts{"65538 strict"});
}

TEST_F(Creation, FollowsTheVariables) {
  const std::string noInheritedPath = "VTQS_JVM_NO_INHERITED_LIBPATH_APPEND";
  const std::string noMemory = "VTQS_JAVA_NO_DEFAULT_MEMORY";
  const std::string noMemoryText = "Don't set any JVM memory limit, since environment variable ";
  const std::string noPathText =
      "Setting JavaNoInheritedLIBPATHAppend to true, inherited LIBPATH will NOT be appended when "
      "launching JVM";
  const struct {
    std::string name;
    const char* value;
    Texts options;
    std::string trace = "";
    const char* inherited = "/old";
    std::string classPath = "";  // how it begins
  } rows[] = {
      {"VTQS_JAVA_ARGS", "", {"-Xmx512M"}},
      {"VTQS_JAVA_ARGS", "'", {"", "-Xmx512M"}},
      {"VTQS_JAVA_ARGS", "''", {"-Xmx512M"}},
      {"VTQS_JAVA_ARGS", "\"-a -b\"", {"-a", "-b", "-Xmx512M"}, "fixing them to '-a -b'\n"},
      {"VTQS_JAVA_ARGS", "-cp", {"-Xmx512M"}, "Adding classpath '' from", "/old", ":"},
      {"VTQS_JAVA_ARGS", "-cpx y", {"-cpx y", "-Xmx512M"}},
      {"VTQS_JAVA_ARGS", "-a-Xmx1g", {"-a-Xmx1g"}, "Setting max JVM memory to 'mx1g' from"},
      {"VTQS_JAVA_ARGS", "-Xmx 1g", {"-Xmx 1g"}, "Setting max JVM memory to '' from"},
      {"VTQS_JAVA_ARGS", "-Xmx1g", {"-Xmx1g"}, "Setting max JVM memory to '1g' from"},
      {noMemory, "true", {}, noMemoryText + noMemory + " is set to true"},
      {noMemory, "TRUE", {}},
      {noMemory, "True", {"-Xmx512M"}},
      {"VTQROOT_OVERRIDE", "/none", {}},
      {noInheritedPath, "1", {"-Xmx512M"}, noPathText, ""},
      {noInheritedPath, "", {"-Xmx512M"}, "", ""},
      {noInheritedPath, "0x", {"-Xmx512M"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name + "=" + row.value);
    Environment environment = {{row.name, row.value}, {"LD_LIBRARY_PATH", "/old"}};
    environment.insert({"VTQROOT_OVERRIDE", _vtq});
    const Outcome outcome = run(environment, [&row] {
      create(/*log=*/true, /*redirectsOutput=*/false, /*requiresGenerationalGC=*/true);
      EXPECT_THAT(std::getenv("LD_LIBRARY_PATH"),
                  testing::EndsWith(std::string("native_threads:") + row.inherited));
    });
    EXPECT_THAT(outcome.err, HasSubstr(row.trace));
    Texts options = recorded("option");
    ASSERT_GE(options.size(), 2u);
    options.pop_back();  // the library path
    EXPECT_THAT(options.back(), testing::StartsWith("-Djava.class.path=" + row.classPath + "/"));
    options.pop_back();
    EXPECT_EQ(options, row.options);
  }
}

TEST_F(Creation, TellsATavornRuntimeNothingThatIsNotRequired) {
  addRuntime(tavornLayout);
  const Outcome outcome = run({}, [] { create(/*log=*/true, /*redirectsOutput=*/false); });
  expectAll(outcome.err,
            {"Detected Tavorn JVM but executable did not require generational GC policy.\n"});
  EXPECT_EQ(recorded("option"), (Texts{"-Djava.class.path=" + _kvl + "/lib/kvlall.jar",
                                       "-Djava.library.path=" + libraryPath("")}));
}

TEST_F(Creation, RedirectsOutputWithTheLogOnAlone) {
  const std::string loader = "marz/vorlane/ZylJNILoader";
  const struct {
    std::string rules;
    std::string result;
    bool isLookedUp = true;
    bool isCalled = false;
  } rows[] = {{"", "success", true, true},
              {"missing=" + loader, "failure", false},
              {"missing=" + loader + ".setRedirectStandardOutput", "failure"},
              {"throws=setRedirectStandardOutput", "failure", true, true}};
  for (const auto& row : rows) {
    const Outcome outcome = run({{"STUB_RUNTIME", row.rules}}, [] {
      create(/*log=*/true, /*redirectsOutput=*/true);
      EXPECT_FALSE(jace::helper::attach()->ExceptionCheck());
      EXPECT_EQ(openLocalRefs(), 0);
    });
    expectAll(outcome.err,
              {"--Attaching to JVM environment\n--Attached? true\n",
               row.isLookedUp ? "--Looking up setRedirectStandardOutput method\n" : "",
               "--Log enabled, redirecting Java System.out and System.err on stdout/stderr: " +
                   row.result + "\n"});
    EXPECT_EQ(recorded("flag"), row.isCalled ? Texts{"true"} : Texts{});
    EXPECT_EQ(wasDescribed(), !row.rules.empty());
  }
  run({}, [] { create(/*log=*/false, /*redirectsOutput=*/true); });
  EXPECT_EQ(recorded("FindClass"), Texts{});
}

TEST_F(Creation, SeparatesNothingFromAnEmptyModuleDirectory) {
  run({{"VTQS_JAVA_ARGS", "-Djava.library.path=/l"}}, [] {
    moduleFile = "/x.so";
    create(/*log=*/false, /*redirectsOutput=*/false);
  });
  EXPECT_THAT(recorded("option"),
              testing::ElementsAre(testing::_, testing::StartsWith("-Djava.library.path=/l:")));
}

// What a handler hears, or the caller, when there is no machine to be had.
TEST_F(Creation, ReportsFailures) {
  const std::string half = "/../half/any.so";
  _directory.copy(HALF_RUNTIME_LIBRARY, "half/any.so");
  const std::string unresolved = "Unable to resolve the function, ";
  const struct {
    Environment environment;
    bool asksFirst;
    std::string fatal;   // reported, and raised by a handler that raises
    std::string raised;  // in any case
    std::string before = "";
  } rows[] = {
      // The path of no runtime is that of the program itself.
      {{{"JAVA_HOME", ""}},
       false,
       "",
       unresolved + "JNI_CreateJavaVM from library ",
       "WARNING: JAVA_HOME environment variable is defined (), but does not point to a valid "
       "SUN/Tavorn JRE or JDK installation -> ignored.\n"
       "ERROR: Can't find/create a valid Java Runtime Environment.\n"},
      {{{"JAVA_HOME", ""}}, true, "Error loading a Java Runtime Environment: No JVM", ""},
      {{{"VTQS_JVM_LIBRARY_OVERRIDE", half}},
       false,
       "",
       unresolved + "JNI_GetCreatedJavaVMs from library " + _home + half},
      {{{"STUB_RUNTIME", "create=-4"}},
       false,
       "Error creating Java Runtime Environment (did you set wrong parameters in VTQS_JAVA_ARGS?): "
       "Unable to create the virtual machine. The error was -4",
       ""},
      {{{"KVLROOT_OVERRIDE", "/none"}},
       false,
       "Can't find the KVL root directory",
       "",
       "WARNING: KVLROOT_OVERRIDE environment variable is defined (/none), but does not point to a "
       "valid KVL installation -> ignored.\n"},
  };
  for (const auto& row : rows) {
    const auto raisedWith = [&row](ZylKvlMessageHandler& handler) -> std::string {
      if (row.asksFirst) {
        EXPECT_THROW(ZylKvlGetJVM(handler), jace::JNIException);
      }
      try {
        ZylKvlCreateJVM(handler, false, false);
      } catch (const std::exception& exception) {
        return exception.what();
      }
      return "";
    };
    Outcome outcome = run(row.environment, [&] {
      ZylKvlDefaultMessageHandler handler;
      EXPECT_EQ(raisedWith(handler), row.fatal.empty() ? row.raised : "FATAL:" + row.fatal);
    });
    EXPECT_EQ(outcome.err, row.before + (row.fatal.empty() ? "" : "FATAL: " + row.fatal + "\n"));
    outcome = run(row.environment, [&] {
      ZylKvlNullMessageHandler handler;
      EXPECT_EQ(raisedWith(handler), row.raised);
    });
    EXPECT_EQ(outcome.err, "");
  }
}

TEST_F(Creation, UsesTheMachineThatRuns) {
  const struct {
    const char* rules;
    bool isLoaded;
    const char* found;
    bool isUsed;
    bool isHidden = false;  // and found in no other way
  } rows[] = {
      {"machines=1", true, "Found loaded JVM/", true},
      {"machines=1", false, "Found loaded JVM (indirect) /", true},
      {"machines=1 attach=-1", true,
       "Error trying to load JVM, ignoring it, just checking JVM availability\n", false},
      {"machines=2", true, "Found loaded JVM/", false},
      {"machines=2", false, "UnixVmLoader or Win32VmLoader created\n", false},
      {"getCreated=-1", false, "assume no JVM running\n", false},
      {"", true, "No JVM installation can be detected, assume no JVM running\n", false, true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.rules);
    const Outcome outcome = run({{"STUB_RUNTIME", row.rules}}, [this, &row] {
      if (row.isLoaded) dlopen((_home + serverLayout).c_str(), RTLD_NOW | RTLD_GLOBAL);
      if (row.isHidden) unsetenv("JAVA_HOME");
      modulesAreHidden = row.isHidden;
      ZylKvlLogger::_enabled = true;
      ZylKvlNullMessageHandler handler;
      for (int i = 0; i < 2; ++i) EXPECT_EQ(JavaUtils::HasJVM(handler), row.isUsed);
      // A library without a machine is left again.
      EXPECT_EQ(closedLibraries == 1, std::string(row.found).ends_with("assume no JVM running\n"));
      if (!row.isUsed) return;
      for (int i = 0; i < 2; ++i) EXPECT_FALSE(ZylKvlCreateJVM(handler, false, false));
      EXPECT_EQ(ZylKvlGetJVM(handler), jace::helper::attach());
      // A loader is installed once, so a new search finds no machine for itself.
      JavaUtils::ResetJVMSearch();
      EXPECT_FALSE(JavaUtils::HasJVM(handler));
    });
    expectAll(outcome.err, {row.found, row.isUsed ? "Already in a VM, using it\n" : ""});
  }
}

}  // namespace
}  // namespace zyl::test
