// Rounding, division, parsing and printing of numbers, each the same under every locale.

#include "vorlane/env/number.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

double ZylInfinityValue = 0.0;

// Each environment comes here, and threads make environments at the same time: only the first
// writes.
void ZylInitGlobals() {
  double infinity = ZylComputeInfinity();
  if (ZylGetInfinity() != infinity) {
    __atomic_store(&ZylInfinityValue, &infinity, __ATOMIC_RELAXED);
  }
}

double ZylGetInfinity() {
  double value = 0.0;
  __atomic_load(&ZylInfinityValue, &value, __ATOMIC_RELAXED);
  return value;
}
double ZylComputeInfinity() { return std::bit_cast<double>(0x7FF0000000000000L); }

bool ZylIsNAN(double value) { return std::isnan(value); }
bool ZylNumIsInteger(double value) { return std::isfinite(value) && std::floor(value) == value; }
double ZylRound(double value) { return std::round(value); }
double ZylKvlRound(double value) { return std::floor(value + 0.5); }

ZylInt ZylTrunc(double value) {
  if (value < static_cast<double>(ZylIntMin)) return ZylIntMin;
  if (value > static_cast<double>(ZylIntMax)) return ZylIntMax;
  return std::isnan(value) ? 0 : static_cast<ZylInt>(value);
}

namespace {
// The one quotient that does not fit wraps around.
long negated(long a) { return static_cast<long>(0UL - static_cast<unsigned long>(a)); }
}  // namespace

long ZylDownDiv(long a, long b) {
  if (b == -1) return negated(a);
  const long quotient = a / b;
  return a % b != 0 && (a < 0) != (b < 0) ? quotient - 1 : quotient;
}

long ZylUpDiv(long a, long b) {
  if (b == -1) return negated(a);
  const long quotient = a / b;
  return a % b != 0 && (a < 0) == (b < 0) ? quotient + 1 : quotient;
}

// No x87 control word is loaded: doubles are computed elsewhere, and the words that these would
// load make the extended arithmetic of other code lose digits or trap.
void ZylEnableNANDetection() {}
void ZylDisableNANDetection() {}

ZylParsingNumberMismatch::ZylParsingNumberMismatch(const char* text, Type type)
    : ZylException("Problem parsing this string"), _string(text), _type(type) {}

namespace {

bool startsWith(const char* text, const char* prefix) {
  return std::strncmp(text, prefix, std::strlen(prefix)) == 0;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

}  // namespace

double ZylParseNum(const char* text) {
  if (startsWith(text, "infinity") || startsWith(text, "Infinity")) return ZylInfinity;
  if (startsWith(text, "-infinity") || startsWith(text, "-Infinity")) return -ZylInfinity;
  // As streams print them.
  if (std::strcmp(text, "inf") == 0) return ZylInfinity;
  if (std::strcmp(text, "-inf") == 0) return -ZylInfinity;
  errno = 0;
  char* end = nullptr;
  const double value = ZylStrtod(text, &end);
  if (*end != '\0') throw ZylParsingNumberMismatch(text, ZylParsingNumberMismatch::BadNum);
  if (errno == ERANGE) throw ZylParsingNumberMismatch(text, ZylParsingNumberMismatch::OutOfRange);
  return value;
}

long ZylParseInt(const char* text) {
  if (startsWith(text, "maxint")) return ZylIntMax;
  if (startsWith(text, "-maxint")) return ZylIntMin;
  if (startsWith(text, "true")) return 1;
  if (startsWith(text, "false")) return 0;
  errno = 0;
  char* end = nullptr;
  const long value = std::strtol(text, &end, 10);
  if (*end != '\0') throw ZylParsingNumberMismatch(text, ZylParsingNumberMismatch::BadInt);
  if (errno == ERANGE) throw ZylParsingNumberMismatch(text, ZylParsingNumberMismatch::OutOfRange);
  return value;
}

namespace {

constexpr long MaxDigits = 18;
constexpr long MaxExponent = 511;
constexpr double PowersOf10[] = {10., 100., 1.0e4, 1.0e8, 1.0e16, 1.0e32, 1.0e64, 1.0e128, 1.0e256};

// The digits of a mantissa: how many there are, those kept as an integer and as the double that is
// scaled, and the power of ten that the last kept one stands for.
struct Mantissa {
  const char* end;
  long digits;
  long kept;
  long integer;
  double value;
  long exponent;
};

Mantissa readMantissa(const char* p) {
  long digits = 0;
  long kept = 0;
  long behindPoint = 0;
  bool point = false;
  long parts[2] = {0, 0};
  for (;; ++p) {
    if (*p == '.' && !point) {
      point = true;
      continue;
    }
    if (!isDigit(*p)) break;
    ++digits;
    if (kept == 0 && *p == '0') {
      // Not significant, but it counts for the place of the point.
      if (point) ++behindPoint;
      continue;
    }
    if (kept == MaxDigits) {
      // Dropped, but it still counts for the place of the point.
      if (!point) --behindPoint;
      continue;
    }
    long& part = parts[kept < 9 ? 0 : 1];
    part = part * 10 + (*p - '0');
    ++kept;
    if (point) ++behindPoint;
  }
  long scale = 1;
  for (long i = 9; i < kept; ++i) scale *= 10;
  const double value =
      static_cast<double>(parts[0]) * static_cast<double>(scale) + static_cast<double>(parts[1]);
  return {p, digits, kept, parts[0] * scale + parts[1], value, -behindPoint};
}

// The exponent behind a mantissa, 0 where there is none; steps over what it reads.
long readExponent(const char** text) {
  const char*& p = *text;
  if (*p != 'e' && *p != 'E') return 0;
  ++p;
  const bool negative = *p == '-';
  if (*p == '-' || *p == '+') ++p;
  long exponent = 0;
  // Far beyond what counts, so that more digits cannot overflow.
  for (; isDigit(*p); ++p) exponent = std::min(exponent * 10 + (*p - '0'), 100000000L);
  return negative ? -exponent : exponent;
}

// Whether the largest number, written with as many digits as these, reads like this. Fewer digits
// than it takes to tell most numbers apart are meant as they stand.
bool readsAsLargest(const Mantissa& mantissa, long exponent) {
  constexpr long Largest = 179769313486231571;  // * 1e291
  if (mantissa.kept < std::numeric_limits<double>::digits10) return false;
  long unit = 1;
  for (long i = mantissa.kept; i < MaxDigits; ++i) unit *= 10;
  return (Largest + unit / 2) / unit == mantissa.integer && exponent + mantissa.kept == 291 + 18;
}

// For numbers at either end of the range, where a factor of the exponent alone would leave it.
double scaledAtTheEnd(const Mantissa& mantissa, long exponent) {
  char text[48];
  const int length = std::snprintf(text, sizeof(text), "%lde%ld", mantissa.integer, exponent);
  double value = 0.0;
  const bool inRange = std::from_chars(text, text + length, value).ec == std::errc();
  if (inRange || exponent < 0) return value;  // what is too small to tell from 0 is 0
  if (readsAsLargest(mantissa, exponent)) return ZylNumMax;
  errno = ERANGE;
  return ZylInfinity;
}

}  // namespace

double ZylStrtod(const char* text, char** end) {
  const char* p = text;
  while (isSpace(*p)) ++p;
  const bool negative = *p == '-';
  if (*p == '-' || *p == '+') ++p;

  const Mantissa mantissa = readMantissa(p);
  p = mantissa.end;
  double value = mantissa.value;
  if (mantissa.digits == 0) {
    value = 0.0;
    p = text;
  } else {
    long exponent = mantissa.exponent + readExponent(&p);
    if (std::abs(exponent) > MaxExponent) {
      errno = ERANGE;
      exponent = std::clamp(exponent, -MaxExponent, MaxExponent);
    }
    double factor = 1.0;
    for (long bit = 0, left = std::abs(exponent); left != 0; left >>= 1, ++bit) {
      if ((left & 1) != 0) factor *= PowersOf10[bit];
    }
    value = exponent < 0 ? value / factor : value * factor;
    if (std::isinf(factor) || std::isinf(value)) value = scaledAtTheEnd(mantissa, exponent);
  }
  if (end != nullptr) *end = const_cast<char*>(p);  // NOLINT: the signature of strtod
  return negative ? -value : value;
}

long convertZylNum(char* buffer, unsigned long size, double value, int precision, int* status) {
  const int digits = precision == -1 ? 14 : std::clamp(precision, 1, 14);
  *status = 0;
  char text[64];
  std::snprintf(text, sizeof(text), "%22.*e", digits, value);
  char* e = std::strchr(text, 'e');
  if (e == nullptr) {
    *status = -1;
    return ZylSPrintf(buffer, size, "?");
  }
  const long exponent = std::strtol(e + 1, nullptr, 10);
  const char sign = e[1];
  char* first = text;
  while (!isDigit(*first)) ++first;
  first[1] = '.';

  char mantissa[32];  // the digits without the point
  long count = 0;
  for (const char* p = first; p != e; ++p) {
    if (isDigit(*p)) mantissa[count++] = *p;
  }
  while (count > 1 && mantissa[count - 1] == '0') --count;

  char result[64];
  char* out = result;
  const auto put = [&](long from, long to) {
    for (long i = from; i < to; ++i) *out++ = i < count ? mantissa[i] : '0';
  };
  if (exponent >= -6 && exponent <= digits) {
    if (exponent < 0) {
      *out++ = '0';
      *out++ = '.';
      for (long i = -1; i > exponent; --i) *out++ = '0';
      put(0, count);
    } else {
      put(0, exponent + 1);
      if (count > exponent + 1) {
        *out++ = '.';
        put(exponent + 1, count);
      }
    }
    *out = '\0';
    return ZylSPrintf(buffer, size, "%s", result);
  }
  put(0, 1);
  if (count > 1) {
    *out++ = '.';
    put(1, count);
  }
  *out = '\0';
  return ZylSPrintf(buffer, size, "%s%c%c%d", result, 'e', sign,
                    static_cast<int>(std::abs(exponent)));
}

long ZylSPrintf(char* buffer, unsigned long size, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(buffer, size, format, arguments);
  va_end(arguments);
  return length;
}
