// Creating a Java machine in this process and running a class in it.

#ifndef ZYL_BOOTSTRAP_LAUNCH_H
#define ZYL_BOOTSTRAP_LAUNCH_H

#include <list>
#include <string>

#include "vorlane/env/export.h"

class ZylKvlMessageHandler;

/// Creates the machine of this process, once; returns whether it came from here.
///
/// The runtime is found by `JAVA_HOME`, its options come from `VTQS_JAVA_ARGS`, the class path and
/// the library path from the installation roots. With the log on, `redirectJavaOutput` asks the
/// loader class to send Java's output to this process's streams. `requireGenerationalGC` makes a
/// Tavorn runtime collect by generations.
///
/// Failures go to `handler`; a handler whose `fatal` returns gets false. A machine that runs
/// already is left alone: false as well. Raises `jace::JNIException` if the runtime's library
/// cannot be loaded, `std::runtime_error` by the default handler.
ZYL_EXPORT bool ZylKvlCreateJVM(ZylKvlMessageHandler& handler, bool redirectJavaOutput,
                                bool requireGenerationalGC);

/// Creates the machine if there is none and calls `main` of `mainClass`, a name with slashes, with
/// `args` (UTF-8). Returns whether `main` ran and ended without an exception; if not, `handler`
/// gets the reason as an `error`. The machine stays, and the calling thread stays attached.
/// Nothing is raised but by `handler` itself.
ZYL_EXPORT bool ZylKvlLaunchJavaMain(const char* displayName, const char* mainClass,
                                     ZylKvlMessageHandler& handler,
                                     const std::list<std::string>& args, bool redirectJavaOutput,
                                     bool requireGenerationalGC);
ZYL_EXPORT bool ZylKvlLaunchJavaMain(const std::string& displayName, const std::string& mainClass,
                                     ZylKvlMessageHandler& handler,
                                     const std::list<std::string>& args, bool redirectJavaOutput,
                                     bool requireGenerationalGC);

/// Is the whole of a native launcher: takes its own options out of the command line and runs
/// `main` of `mainClass` with the others. `-X` prints the options and ends the process.
///
/// Silent without `-debug`, on failure too, and it sets no exit status.
ZYL_EXPORT void parseArgumentsAndExec(int argc, char** argv, const char* displayName,
                                      const char* mainClass, bool redirectJavaOutput,
                                      bool requireGenerationalGC);

/// For native code called by Java in which a callback has raised a Java exception: puts the
/// exception that the callback's wrapper holds in place of the wrapper, pending for the caller,
/// and returns its stack trace. Raises `jace::JNIException` if no machine can be reached.
ZYL_EXPORT std::string ZylCatchAndThrowFromJVM();

#endif
