// Rounding, parsing and printing of numbers, independent of the process's locale.

#ifndef ZYL_ENV_NUMBER_H
#define ZYL_ENV_NUMBER_H

#include "vorlane/env/exception.h"
#include "vorlane/env/types.h"

/// Plus infinity once `ZylInitGlobals` has run, which each environment sees to.
extern ZYL_EXPORT double ZylInfinityValue;

/// Stores plus infinity in `ZylInfinityValue`.
ZYL_EXPORT void ZylInitGlobals();
/// Reads `ZylInfinityValue`.
ZYL_EXPORT double ZylGetInfinity();
ZYL_EXPORT double ZylComputeInfinity();

ZYL_EXPORT bool ZylIsNAN(double value);
/// Whether a double is finite and integral.
ZYL_EXPORT bool ZylNumIsInteger(double value);
/// To the nearest integer, halves away from zero; infinities stay.
ZYL_EXPORT double ZylRound(double value);
/// To the nearest integer, halves toward plus infinity.
ZYL_EXPORT double ZylKvlRound(double value);
/// Toward zero, clamped to [ZylIntMin, ZylIntMax]; 0 for a NaN.
ZYL_EXPORT ZylInt ZylTrunc(double value);
/// a / b rounded down, or up, for either sign of b. A zero divisor is the machine's fault.
ZYL_EXPORT long ZylDownDiv(long a, long b);
ZYL_EXPORT long ZylUpDiv(long a, long b);
/// Without effect: doubles are not computed by the unit that these used to set.
ZYL_EXPORT void ZylEnableNANDetection();
ZYL_EXPORT void ZylDisableNANDetection();

/// A text is no number.
class ZYL_EXPORT ZylParsingNumberMismatch : public ZylException {
 public:
  enum Type : int { BadInt = 0, BadNum = 1, OutOfRange = 2 };
  /// The text is not copied.
  ZylParsingNumberMismatch(const char* text, Type type);
  const char* getString() const noexcept { return _string; }
  Type getType() const noexcept { return _type; }

 private:
  const char* _string;
  Type _type;
};

/// Parses a double; "infinity" and "Infinity", with or without a minus, may have anything behind
/// them. Reads what `convertZylNum` and streams print of any number, "inf" included. Raises
/// `ZylParsingNumberMismatch`.
ZYL_EXPORT double ZylParseNum(const char* text);
/// Parses a decimal integer; "maxint", "-maxint", "true" and "false" may have anything behind them.
ZYL_EXPORT long ZylParseInt(const char* text);
/// Like strtod, with "." as the point in every locale, no hexadecimal form, and at most 18
/// significant digits. Sets errno to ERANGE for an exponent beyond 511, and where the result is
/// infinite; what is too small is 0. `ZylNumMax` rounded up to 15 digits or more is `ZylNumMax`.
ZYL_EXPORT double ZylStrtod(const char* text, char** end);
/// Writes the magnitude of `value` in the manner of %g with 1 to 14 digits behind the first (-1
/// means 14) and returns the length; `*status` becomes 0, or -1 with the text "?" where there is no
/// such form. `size` must have room for the text and its terminator.
ZYL_EXPORT long convertZylNum(char* buffer, unsigned long size, double value, int precision,
                              int* status);
/// Formats as vsnprintf does, within `size`; returns the length.
ZYL_EXPORT long ZylSPrintf(char* buffer, unsigned long size, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

#endif
