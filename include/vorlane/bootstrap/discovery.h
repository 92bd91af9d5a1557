// Where the installation lies, which Java runtime to use, and whether one is running.
//
// Every search runs once per process; later calls return what the first one found.

#ifndef ZYL_BOOTSTRAP_DISCOVERY_H
#define ZYL_BOOTSTRAP_DISCOVERY_H

#include <string>

#include "vorlane/env/export.h"

class ZylKvlMessageHandler;

// As in jni.h, which a program that only launches a class need not have.
struct JNIEnv_;
using JNIEnv = JNIEnv_;

/// Returns the root of the language's installation: the value of `KVLROOT_OVERRIDE`, else the
/// directory two levels above the one that holds this library, whichever first has
/// lib/kvlall.jar. Without one, `fatal`; a handler whose `fatal` returns gets the empty text.
ZYL_EXPORT std::string ZylKvlGetKVLRootDir(ZylKvlMessageHandler& handler);

/// Whether `ZylKvlGetKVLRootDir` has a root to return. Warns about a bad override.
ZYL_EXPORT bool ZylKvlHasValidKVLRoot(ZylKvlMessageHandler& handler);

/// Returns the root of the decision-support product, which `VTQROOT_OVERRIDE` alone can name.
/// Without one, `fatal`; a handler whose `fatal` returns gets the empty text.
ZYL_EXPORT std::string ZylKvlGetVTQRootDir(ZylKvlMessageHandler& handler);

/// Whether the decision-support product is there. Warns about a bad override.
ZYL_EXPORT bool ZylKvlIsVTQEnabled(ZylKvlMessageHandler& handler);

/// Returns the calling thread's environment in the machine that runs in this process, attaching
/// the thread. `fatal` if none runs; raises `jace::JNIException` if it cannot be reached.
ZYL_EXPORT JNIEnv* ZylKvlGetJVM(ZylKvlMessageHandler& handler);

/// Splits a command line into words; returns their table, which ends with a null pointer, and
/// writes their number to `count`. Table and words are one block that the caller gives to `free`;
/// null if there is no memory.
///
/// Blank, tab, line feed and carriage return end a word. Single and double quotes keep what is
/// between them together, the other kind of quote included, and are dropped; an open quote
/// reaches to the end of the text. There is no escape character.
[[nodiscard]] ZYL_EXPORT char** ZylKvlCommandLineToArgv(const char* text, int* count);

/// Returns the directory of this library, or of the program that it is linked into.
ZYL_EXPORT std::string ZylKvlGetCurrentModuleDirPath();

/// Whether the file that holds this code looks like a library by its path.
ZYL_EXPORT bool ZylKvlIsRunningAsSharedLib();

/// Puts `path` in front of `LD_LIBRARY_PATH`, unless the variable begins with that text already.
ZYL_EXPORT void ZylKvlAddToSharedLibLoadingPath(const std::string& path);

#endif
