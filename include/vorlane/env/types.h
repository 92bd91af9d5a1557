// The scalar types of the interface and their limits.

#ifndef ZYL_ENV_TYPES_H
#define ZYL_ENV_TYPES_H

#include <cstddef>
#include <cstdint>
#include <limits>

static_assert(sizeof(long) == 8 && sizeof(void*) == 8, "64-bit Linux only");

using ZylInt = long;
using ZylNum = double;
using ZylAny = void*;
/// A long used as 0 or 1.
using ZylBool = long;

/// Largest and smallest integer a model may hold: what a double holds exactly, 2^53 - 1.
inline constexpr ZylInt ZylIntMax = 9007199254740991;
inline constexpr ZylInt ZylIntMin = -9007199254740991;

/// Largest finite double; a bound beyond plus or minus this is infinite.
inline constexpr ZylNum ZylNumMax = std::numeric_limits<double>::max();
/// Smallest positive normal double.
inline constexpr ZylNum ZylNumMin = std::numeric_limits<double>::min();

/// Plus infinity as a bound or a value.
inline constexpr ZylNum ZylInfinity = std::numeric_limits<double>::infinity();

#endif
