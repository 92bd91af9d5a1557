// Hash functions and comparisons, for the tables of the library and of clients.

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "vorlane/env/hash_table.h"

long ZylStringHashFunction(const char* text, long n) {
  std::uint64_t h = 0;
  for (const char* c = text; *c != '\0'; ++c) {
    h = (h << 4) +
        static_cast<std::uint64_t>(static_cast<std::int64_t>(static_cast<signed char>(*c)));
    const std::uint64_t g = h & 0xf0000000U;
    if (g != 0) h = h ^ g ^ (g >> 24);
  }
  return static_cast<long>(h % static_cast<std::uint64_t>(n));
}

long ZylStringHashFunction2(const char* text, long n) {
  std::uint64_t h = 0;
  for (const char* c = text; *c != '\0'; ++c) {
    h = h * 65599 +
        static_cast<std::uint64_t>(static_cast<std::int64_t>(static_cast<signed char>(*c)));
  }
  // The magnitude, without the overflow of the most negative number.
  if ((h >> 63) != 0) h = 0 - h;
  return static_cast<long>(h & (static_cast<std::uint64_t>(n) - 1));
}

// Thomas Wang's 64-bit integer mix (1997), computed modulo 2^64.
long ZylIntegerHashFunction(long key, long n) {
  const auto shifted = [](std::uint64_t k, int by) {
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(k) >> by);
  };
  auto k = static_cast<std::uint64_t>(key);
  k += ~(k << 32);
  k ^= shifted(k, 22);
  k += ~(k << 13);
  k ^= shifted(k, 8);
  k *= 9;
  k ^= shifted(k, 15);
  k += ~(k << 27);
  k ^= shifted(k, 31);
  return std::labs(static_cast<long>(k) % n);
}

long ZylAddressHashFunction(void* key, long n) {
  return ZylIntegerHashFunction(reinterpret_cast<long>(key), n);
}

long ZylSymbolHashFunction(ZylSymbolI* key, long n) {
  return ZylIntegerHashFunction(reinterpret_cast<long>(key), n);
}

long ZylFloatHashFunction(double key, long n) {
  const double scaled = std::trunc(key * 0.618033);
  // What no integer of 64 bits holds goes to one bucket.
  if (!(std::fabs(scaled) < 9.0e18)) return 0;
  const auto whole = static_cast<std::uint64_t>(static_cast<std::int64_t>(scaled));
  return static_cast<long>(whole % static_cast<std::uint64_t>(n));
}

long ZylPlatformIndependentIntegerHashFunction(long key, long n) {
  const auto wide = static_cast<std::uint64_t>(key);
  auto k = static_cast<std::uint32_t>(wide + ~(wide << 15));
  k = (k ^ (k >> 10)) * 9;
  k ^= k >> 6;
  const std::uint64_t mixed = k;
  k = static_cast<std::uint32_t>(mixed + ~(mixed << 11));
  return static_cast<long>(static_cast<std::uint64_t>(k ^ (k >> 16)) %
                           static_cast<std::uint64_t>(n));
}

long ZylIntDataTableHashFunction(long key, long n) { return ZylIntegerHashFunction(key, n); }
long ZylNumDataTableHashFunction(double key, long n) { return ZylFloatHashFunction(key, n); }

long ZylStringCompFunction(const char* a, const char* b) { return std::strcmp(a, b) == 0 ? 1 : 0; }
long ZylStringCompFunction2(const char* a, const char* b) {
  return a == b || std::strcmp(a, b) == 0 ? 1 : 0;
}
long ZylIntegerCompFunction(long a, long b) { return a == b ? 1 : 0; }
long ZylAddressCompFunction(void* a, void* b) { return a == b ? 1 : 0; }
long ZylFloatCompFunction(double a, double b) { return a == b ? 1 : 0; }
