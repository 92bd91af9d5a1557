#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>

#include "bootstrap/child.h"
#include "jace/stub.h"

using jace::UnixVmLoader;
using jace::WrapperVmLoader;

namespace zyl::test {
namespace {

TEST(UnixVmLoader, TellsWhyALibraryIsNoRuntime) {
  const TemporaryDirectory directory;
  const std::string foreign = directory.copy(STUB_RUNTIME_LIBRARY, "foreign.so");
  std::fstream(foreign, std::ios::in | std::ios::out | std::ios::binary)
      .seekp(18)  // the processor in the header of the file
      .put('\x28');
  const std::string cannotLoad = "Unable to load the library at ";
  const std::string cannotResolve = "Unable to resolve the function, ";
  const struct {
    std::string path;
    std::string failure;
  } rows[] = {
      {directory.path("none.so"), cannotLoad + directory.path("none.so")},
      {directory.touch("empty.so"), cannotLoad + directory.path("empty.so")},
      {directory.path(), cannotLoad + directory.path()},
      {foreign, cannotLoad + foreign},
      {"libm.so.6", cannotResolve + "JNI_CreateJavaVM from library libm.so.6"},
      {HALF_RUNTIME_LIBRARY,
       cannotResolve + "JNI_GetCreatedJavaVMs from library " HALF_RUNTIME_LIBRARY},
      // The program itself.
      {"", cannotResolve + "JNI_CreateJavaVM from library "},
  };
  for (const auto& row : rows) {
    UnixVmLoader loader(row.path, JNI_VERSION_1_2);
    EXPECT_EQ(failureOf([&] { loader.loadVm(); }), row.failure);
  }
}

TEST(UnixVmLoader, CallsTheLibraryWhileItIsLoaded) {
  inChild({{"STUB_RUNTIME", "getCreated=-7"}}, [] {
    UnixVmLoader loader(STUB_RUNTIME_LIBRARY, JNI_VERSION_1_2);
    int count = 0;
    JavaVM* vm = nullptr;
    EXPECT_EQ(loader.getCreatedJavaVMs(&vm, 1, &count), JNI_ERR);
    loader.loadVm();
    EXPECT_EQ(loader.version(), 65538);
    EXPECT_EQ(loader.getCreatedJavaVMs(&vm, 1, &count), -7);
    const std::unique_ptr<jace::VmLoader> clone(loader.clone());
    EXPECT_EQ(clone->version(), 65538);
    EXPECT_EQ(clone->getCreatedJavaVMs(&vm, 1, &count), -7);
    loader.unloadVm();
    loader.unloadVm();
    EXPECT_EQ(loader.createJavaVM(&vm, nullptr, nullptr), JNI_ERR);
  });
}

TEST(WrapperVmLoader, StandsForTheMachineThatIsThere) {
  inChild({{"STUB_RUNTIME", "machines=1"}}, [] {
    installStub();
    JavaVM* machine = jace::helper::getJavaVM();
    for (WrapperVmLoader loader :
         {WrapperVmLoader(machine), WrapperVmLoader(jace::helper::attach())}) {
      JavaVM* vm = nullptr;
      int count = 0;
      loader.loadVm();
      loader.unloadVm();
      EXPECT_EQ(loader.version(), JNI_VERSION_1_8);
      EXPECT_EQ(loader.getCreatedJavaVMs(&vm, 0, &count), -6);
      EXPECT_EQ(loader.getCreatedJavaVMs(nullptr, 1, &count), -6);
      EXPECT_EQ(loader.getCreatedJavaVMs(&vm, 1, &count), 0);
      EXPECT_EQ(vm, machine);
      EXPECT_EQ(count, 1);

      void* env = nullptr;
      EXPECT_EQ(loader.createJavaVM(nullptr, &env, nullptr), -6);
      EXPECT_EQ(loader.createJavaVM(&vm, nullptr, nullptr), -6);
      const std::unique_ptr<jace::VmLoader> clone(loader.clone());
      EXPECT_EQ(clone->createJavaVM(&vm, &env, nullptr), 0);
      EXPECT_EQ(vm, machine);
      EXPECT_EQ(env, jace::helper::attach());
    }
  });
}

TEST(WrapperVmLoader, RefusesAMachineThatRefusesIt) {
  EXPECT_EQ(failureOf([] { WrapperVmLoader(static_cast<JavaVM*>(nullptr)); }),
            "WrapperVmLoader::WrapperVmLoader\njavaVM must be non-null");
  const std::string noMachine =
      "WrapperVmLoader::WrapperVmLoader\nUnable to retrieve the JVM from the JNIEnv* object. The "
      "specific JNI error code is ";
  EXPECT_EQ(failureOf([] { WrapperVmLoader(static_cast<JNIEnv*>(nullptr)); }), noMachine + "-6");
  inChild({{"STUB_RUNTIME", "machines=1 getJavaVM=-1"}}, [&] {
    installStub();
    EXPECT_EQ(failureOf([] { WrapperVmLoader{jace::helper::attach()}; }), noMachine + "-1");
    setenv("STUB_RUNTIME", "attach=-2", 1);
    EXPECT_EQ(failureOf([] { WrapperVmLoader{jace::helper::getJavaVM()}; }),
              "JNIHelper::attach\nUnable to attach the current thread. The specific JNI error code "
              "is -2");
  });
}

}  // namespace
}  // namespace zyl::test
