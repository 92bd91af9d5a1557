// System calls that fail on demand: definitions of the test program in front of the system's.

#ifndef ZYL_TESTS_JACE_INTERPOSED_H
#define ZYL_TESTS_JACE_INTERPOSED_H

namespace zyl::test {

/// What the operations on thread keys return in place of doing their work; 0 lets them do it.
extern int threadKeyFailure;
/// Whether `dladdr` fails.
extern bool modulesAreHidden;
/// Whether the working directory cannot be told.
extern bool directoryIsHidden;

}  // namespace zyl::test

#endif
