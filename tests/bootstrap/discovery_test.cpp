#include "vorlane/bootstrap/discovery.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "bootstrap/child.h"
#include "bootstrap/java_utils.h"
#include "bootstrap/system_utils.h"
#include "jace/interposed.h"
#include "vorlane/bootstrap/message_handler.h"

namespace zyl::test {
namespace {

TEST(SystemUtils, GivesTheDirectoryOfAPath) {
  const char* rows[][2] = {{"/a/b", "/a"}, {"/a", ""},      {"a", "a"}, {"a/", "a"},
                           {"a\\b", "a"},  {"a/b\\c", "a"}, {"", ""},   {"\\", ""}};
  for (const auto& row : rows) EXPECT_EQ(SystemUtils::GetDirname(row[0]), row[1]);
}

TEST(SystemUtils, SplitsCommandLines) {
  using Words = std::vector<std::string>;
  const std::string big(1 << 20, 'x');
  const struct {
    std::string text;
    Words words;
  } rows[] = {
      {"", {}},
      {" \t\r\n ", {}},
      {"-a 'b c' \"d'e\"", {"-a", "b c", "d'e"}},
      {"\"\" '' x", {"", "", "x"}},
      {"a\"b c\"d", {"ab cd"}},
      {"\ta\n\nb\r", {"a", "b"}},
      {"a 'b c", {"a", "b c"}},
      {"\"", {""}},
      {"a\\ b \\\"c d\\\"", {"a\\", "b", "\\c d\\"}},
      {"''\"\"", {""}},
      {"a b c d e", {"a", "b", "c", "d", "e"}},
      {big + " '" + big + " ", {big, big + " "}},
  };
  for (const auto& row : rows) {
    int count = -1;
    const std::unique_ptr<char*, decltype(&std::free)> block(
        ZylKvlCommandLineToArgv(row.text.c_str(), &count), std::free);
    EXPECT_EQ(Words(block.get(), block.get() + count), row.words);
    EXPECT_EQ(block.get()[count], nullptr);
  }
}

TEST(SystemUtils, PutsPathsInFrontOfTheLoadersPath) {
  const struct {
    const char* old;
    const char* path;
    bool noInheritedAppend;
    const char* wanted;
  } rows[] = {
      {nullptr, "/a", false, "/a:"},  {"/x:/y", "/a", false, "/a:/x:/y"},
      {"/x", "/a", true, "/a:"},      {"/a/bc:/d", "/a/b", false, "/a/bc:/d"},
      {"/a:/b", "/a", true, "/a:/b"}, {"/x", nullptr, false, "/x"},
      {"/x", nullptr, true, ""},      {"/x:/a", "/a", false, "/a:/x:/a"},
  };
  for (const auto& row : rows) {
    inChild({}, [&row] {
      if (row.old != nullptr) setenv("LD_LIBRARY_PATH", row.old, 1);
      SystemUtils::AddToSharedLibLoadingPath(row.path, row.noInheritedAppend);
      EXPECT_STREQ(std::getenv("LD_LIBRARY_PATH"), row.wanted);
    });
  }
}

TEST(SystemUtils, TellsTheModule) {
  inChild({}, [] {
    EXPECT_THAT(SystemUtils::GetCurrentModuleFilePath(), testing::EndsWith("/bootstrap_test"));
    for (const char* file : {"/d/libx.so.1", "/d/x.a", "x.dll"}) {
      moduleFile = file;
      EXPECT_TRUE(ZylKvlIsRunningAsSharedLib());
    }
    const std::string longFile(3000, 'x');
    moduleFile = longFile.c_str();
    EXPECT_FALSE(ZylKvlIsRunningAsSharedLib());
    EXPECT_EQ(SystemUtils::GetCurrentModuleFilePath(), longFile.substr(0, 1023));
    modulesAreHidden = true;
    EXPECT_EQ(SystemUtils::GetCurrentModuleFilePath(), "cant_find_module_path");
    EXPECT_EQ(ZylKvlGetCurrentModuleDirPath(), "cant_find_module_path");
    EXPECT_FALSE(ZylKvlIsRunningAsSharedLib());
    EXPECT_EQ(JavaUtils::GetLoadedJRERuntimeLibInternal(), "");
    ZylKvlNullMessageHandler handler;
    EXPECT_FALSE(ZylKvlHasValidKVLRoot(handler));
  });
}

// The roots of both products behave alike, but that one is also looked for near the module.
TEST(Roots, AreFoundOncePerProcess) {
  const TemporaryDirectory directory;
  const std::string bad = directory.path("bad");
  directory.touch("kvl/lib/kvlall.jar");
  directory.touch("vtq/lib/vtqall.jar");
  directory.touch("vtqe/lib/vtqeall.jar");
  const struct {
    const char* product;
    bool (*isThere)(ZylKvlMessageHandler&);
    std::string (*get)(ZylKvlMessageHandler&);
    std::vector<std::string> roots;
    std::string fatal;
  } products[] = {
      {"KVL",
       ZylKvlHasValidKVLRoot,
       ZylKvlGetKVLRootDir,
       {"kvl"},
       "Can't find the KVL root directory"},
      {"VTQ",
       ZylKvlIsVTQEnabled,
       ZylKvlGetVTQRootDir,
       {"vtq", "vtqe"},
       "Can't find the VTQ root directory, check VTQ is installed"},
  };
  for (const auto& product : products) {
    const std::string name = product.product;
    const std::string variable = name + "ROOT_OVERRIDE";
    for (const std::string& root : product.roots) {
      inChild({{variable, directory.path(root)}}, [&] {
        ZylKvlDefaultMessageHandler handler;
        EXPECT_TRUE(product.isThere(handler));
        setenv(variable.c_str(), bad.c_str(), 1);  // what was found is final
        EXPECT_EQ(product.get(handler), directory.path(root));
      });
    }
    for (const Environment& environment : {Environment{}, {{variable, bad}}}) {
      const Outcome outcome = inChild(environment, [&] {
        ZylKvlDefaultMessageHandler handler;
        for (int i = 0; i < 2; ++i) EXPECT_FALSE(product.isThere(handler));
        EXPECT_THROW(product.get(handler), std::runtime_error);
        ZylKvlNullMessageHandler silent;
        EXPECT_EQ(product.get(silent), "");
      });
      const std::string warning = "WARNING: " + variable + " environment variable is defined (" +
                                  bad + "), but does not point to a valid " + name +
                                  " installation -> ignored.\n";
      EXPECT_EQ(outcome.err,
                (environment.empty() ? "" : warning) + "FATAL: " + product.fatal + "\n");
    }
  }
}

TEST(JreLayout, PrefersEarlierPlaces) {
  const TemporaryDirectory directory;
  const std::string places[] = {
      "/named/any.so",
      "/lib/x86_64/t4vm/libjvm.so",
      "/lib/amd64/t4vm/libjvm.so",
      "/lib/x86_64/classic/libjvm.so",
      "/lib/amd64/classic/libjvm.so",
      "/bin/t4vm/libjvm.so",
      "/lib/x86_64/client/libjvm.so",
      "/lib/amd64/client/libjvm.so",
      "/lib/x86_64/server/libjvm.so",
      "/lib/amd64/server/libjvm.so",
  };
  for (const std::string& place : places) directory.touch("home" + place);
  const std::string home = directory.path("home");
  inChild({{"VTQS_JVM_LIBRARY_OVERRIDE", places[0]}}, [&] {
    // With all places taken the first wins; then it goes, and the next one does.
    for (const std::string& place : places) {
      EXPECT_EQ(JavaUtils::JREHomeToJRERuntimeLib(home.c_str()), home + place);
      EXPECT_TRUE(JavaUtils::IsValidJRERootDir(home.c_str()));
      EXPECT_EQ(JavaUtils::IsLibPointingToTavornJVM(place), place.find("t4vm") != place.npos);
      std::filesystem::remove(home + place);
    }
    EXPECT_EQ(JavaUtils::JREHomeToJRERuntimeLib(home.c_str()), "");
    directory.touch("home" + places[0]);
    EXPECT_EQ(JavaUtils::JREHomeToJRERuntimeLibOverride(home.c_str()), home + places[0]);
    unsetenv("VTQS_JVM_LIBRARY_OVERRIDE");
    EXPECT_FALSE(JavaUtils::IsValidJRERootDir(home.c_str()));
    EXPECT_FALSE(JavaUtils::IsLibPointingToTavornJVM("/x"));
  });
}

TEST(JavaHome, IsAJreOrHoldsOne) {
  const TemporaryDirectory directory;
  const std::string library = "/lib/amd64/server/libjvm.so";
  directory.touch("jre" + library);
  directory.touch("jdk/jre" + library);
  const std::string file = directory.touch("file");
  const auto bad = [](const std::string& home) {
    return "WARNING: JAVA_HOME environment variable is defined (" + home +
           "), but does not point to a valid SUN/Tavorn JRE or JDK installation -> ignored.\n";
  };
  const std::string none = "ERROR: Can't find/create a valid Java Runtime Environment.\n";
  const struct {
    Environment environment;
    std::string library;
    std::string err;
  } rows[] = {
      {{{"JAVA_HOME", directory.path("jre")}}, directory.path("jre") + library, ""},
      {{{"JAVA_HOME", directory.path("jdk")}}, directory.path("jdk/jre") + library, ""},
      {{{"JAVA_HOME", file}}, "", bad(file) + none},
      {{{"JAVA_HOME", ""}}, "", bad("") + none},
      {{}, "", none},
  };
  for (const auto& row : rows) {
    const Outcome outcome = inChild(row.environment, [&row] {
      ZylKvlDefaultMessageHandler handler;
      EXPECT_EQ(JavaUtils::GetJRERuntimeLibInternal(handler, /*report=*/true), row.library);
      EXPECT_EQ(JavaUtils::GetJRERuntimeLibInternal(handler, /*report=*/false), row.library);
    });
    EXPECT_EQ(outcome.err, row.err);
  }
}

class LoadTime : public testing::Test {
 protected:
  // Loads the copied library by `path`, from the temporary directory.
  [[nodiscard]] Outcome load(const std::string& path) const {
    return inChild({{"STUB_RECORD", _directory.path("record")}, {"LD_LIBRARY_PATH", "/old"}}, [&] {
      std::filesystem::current_path(_directory.path());
      void* library = dlopen(path.c_str(), RTLD_NOW);
      ASSERT_NE(library, nullptr) << dlerror();
      EXPECT_EQ(std::filesystem::current_path(), _directory.path());
      std::cout << std::getenv("LD_LIBRARY_PATH") << "\n";
      void* question = dlsym(library, "_Z26ZylKvlIsRunningAsSharedLibv");
      EXPECT_TRUE(reinterpret_cast<bool (*)()>(question)());
      // Visible to all, and for good.
      dlclose(library);
      std::cout << (dlsym(RTLD_DEFAULT, "stubLocalRefs") != nullptr);
    });
  }

  [[nodiscard]] std::string takeRecord() const {
    std::string record = readFile(_directory.path("record"));
    std::filesystem::remove(_directory.path("record"));
    return record;
  }

  TemporaryDirectory _directory;
  std::string _library = _directory.copy(VORLANE_LIBRARY, "sub/libvorlane.so");
  std::string _sub = _directory.path("sub");
};

TEST_F(LoadTime, LoadsTheCompanionFromTheLibrarysDirectory) {
  _directory.copy(STUB_RUNTIME_LIBRARY, "sub/libkvl123.so");
  for (const std::string& path : {_library, std::string("sub/libvorlane.so")}) {
    const Outcome outcome = load(path);
    EXPECT_EQ(outcome.err, "");
    const std::string directory = path.substr(0, path.rfind('/'));
    EXPECT_EQ(outcome.out, directory + ":/old\n1");
    EXPECT_EQ(takeRecord(), "loaded in " + _sub + "\n");
  }
  // Without a way back the working directory is not left.
  directoryIsHidden = true;
  EXPECT_EQ(load(_library).err, "");
  directoryIsHidden = false;
  EXPECT_EQ(takeRecord(), "loaded in " + _directory.path() + "\n");
}

TEST_F(LoadTime, SaysInOneLineThatThereIsNoCompanion) {
  const std::string companion = _sub + "/libkvl123.so";
  const Outcome outcome = load(_library);
  EXPECT_EQ(outcome.err, companion + ": ==> dlerror: " + companion +
                             ": cannot open shared object file: No such file or directory <==\n");
  EXPECT_EQ(outcome.out, _sub + ":/old\n0");
}

TEST_F(LoadTime, FindsTheKvlRootTwoLevelsAboveTheLibrary) {
  _directory.touch("lib/kvlall.jar");
  const std::string nested = _directory.copy(VORLANE_LIBRARY, "a/b/libvorlane.so");
  const Outcome outcome = inChild({}, [&] {
    void* library = dlopen(nested.c_str(), RTLD_NOW);
    void* question = dlsym(library, "_Z19ZylKvlGetKVLRootDirB5cxx11R20ZylKvlMessageHandler");
    ZylKvlNullMessageHandler handler;
    EXPECT_EQ(reinterpret_cast<std::string (*)(ZylKvlMessageHandler&)>(question)(handler),
              _directory.path("a/b/../.."));
  });
}

}  // namespace
}  // namespace zyl::test
