// System calls that fail on demand: definitions of the test program in front of the system's.

#ifndef ZYL_TESTS_JACE_INTERPOSED_H
#define ZYL_TESTS_JACE_INTERPOSED_H

namespace zyl::test {

/// What the operations on thread keys return in place of doing their work; 0 lets them do it.
extern int threadKeyFailure;
/// Whether `dladdr` fails.
extern bool modulesAreHidden;
/// The file that `dladdr` names for every module that it finds, null for the true one.
extern const char* moduleFile;
/// How often `dlclose` was called.
extern int closedLibraries;
/// Whether the working directory cannot be told.
extern bool directoryIsHidden;

}  // namespace zyl::test

#endif
