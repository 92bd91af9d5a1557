// Symbol visibility of the library.

#ifndef ZYL_ENV_EXPORT_H
#define ZYL_ENV_EXPORT_H

/// Marks what clients and engines may link against; everything else stays hidden.
#define ZYL_EXPORT __attribute__((visibility("default")))
/// Marks a private member of an exported class that no inline function calls.
#define ZYL_LOCAL __attribute__((visibility("hidden")))

/// Hints for the few paths that are inlined into every client.
#define ZYL_LIKELY(x) __builtin_expect(!!(x), 1)
#define ZYL_UNLIKELY(x) __builtin_expect(!!(x), 0)
#define ZYL_COLD __attribute__((cold, noinline))

#endif
