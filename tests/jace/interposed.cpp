#include "jace/interposed.h"

#include <dlfcn.h>
#include <pthread.h>
#include <unistd.h>

namespace zyl::test {

constinit int threadKeyFailure = 0;
constinit bool modulesAreHidden = false;
constinit const char* moduleFile = nullptr;
constinit int closedLibraries = 0;
constinit bool directoryIsHidden = false;

}  // namespace zyl::test

namespace {

template <class Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

int pthread_key_create(pthread_key_t* key, void (*destructor)(void*)) noexcept {
  if (zyl::test::threadKeyFailure != 0) return zyl::test::threadKeyFailure;
  return next<int(pthread_key_t*, void (*)(void*))>("pthread_key_create")(key, destructor);
}

int pthread_key_delete(pthread_key_t key) noexcept {
  if (zyl::test::threadKeyFailure != 0) return zyl::test::threadKeyFailure;
  return next<int(pthread_key_t)>("pthread_key_delete")(key);
}

int pthread_setspecific(pthread_key_t key, const void* value) noexcept {
  if (zyl::test::threadKeyFailure != 0) return zyl::test::threadKeyFailure;
  return next<int(pthread_key_t, const void*)>("pthread_setspecific")(key, value);
}

int dladdr(const void* address, Dl_info* info) noexcept {
  if (zyl::test::modulesAreHidden) return 0;
  const int found = next<int(const void*, Dl_info*)>("dladdr")(address, info);
  if (zyl::test::moduleFile != nullptr) info->dli_fname = zyl::test::moduleFile;
  return found;
}

int dlclose(void* library) noexcept {
  ++zyl::test::closedLibraries;
  return next<int(void*)>("dlclose")(library);
}

long pathconf(const char* path, int name) noexcept {
  if (zyl::test::directoryIsHidden) return -1;
  return next<long(const char*, int)>("pathconf")(path, name);
}

}  // extern "C"
