// Rounding, parsing and printing of numbers; the stop watch and the locale.

#include "vorlane/env/number.h"

#include <bit>
#include <clocale>
#include <cmath>
#include <cstring>
#include <iomanip>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "support/support.h"
#include "vorlane/env.h"

namespace zyl::test {
namespace {

constexpr double Inf = ZylInfinity;

TEST(ZylNumber, Rounding) {
  struct Row {
    double value, round, kvlRound;
    long trunc;
  };
  const Row rows[] = {{2.5, 3, 3, 2},
                      {-2.5, -3, -2, -2},
                      {0.49, 0, 0, 0},
                      {-0.5, -1, 0, 0},
                      {0.0, 0, 0, 0},
                      {-7.9, -8, -8, -7},
                      {1e300, 1e300, 1e300, ZylIntMax},
                      {-1e300, -1e300, -1e300, ZylIntMin},
                      {Inf, Inf, Inf, ZylIntMax},
                      {-Inf, -Inf, -Inf, ZylIntMin},
                      {9007199254740991.0, 9007199254740991.0, 9007199254740992.0, ZylIntMax},
                      {0.49999999999999994, 0, 1, 0}};
  for (const Row& row : rows) {
    EXPECT_EQ(ZylRound(row.value), row.round) << row.value;
    EXPECT_EQ(ZylKvlRound(row.value), row.kvlRound) << row.value;
    EXPECT_EQ(ZylTrunc(row.value), row.trunc) << row.value;
  }
  EXPECT_EQ(ZylTrunc(std::nan("")), 0);
  EXPECT_TRUE(ZylIsNAN(std::nan("")));
  EXPECT_FALSE(ZylIsNAN(Inf));
}

TEST(ZylNumber, DivisionsRoundDownAndUp) {
  for (long a = -9; a <= 9; ++a) {
    for (long b = -4; b <= 4; ++b) {
      if (b == 0) continue;
      const double exact = static_cast<double>(a) / static_cast<double>(b);
      EXPECT_EQ(ZylDownDiv(a, b), static_cast<long>(std::floor(exact))) << a << " / " << b;
      EXPECT_EQ(ZylUpDiv(a, b), static_cast<long>(std::ceil(exact))) << a << " / " << b;
    }
  }
}

TEST(ZylNumber, DivisionsWrapAround) {
  constexpr long Lowest = std::numeric_limits<long>::min();
  EXPECT_EQ(ZylDownDiv(Lowest, -1), Lowest);
  EXPECT_EQ(ZylUpDiv(Lowest, -1), Lowest);
  EXPECT_EQ(ZylDownDiv(Lowest, 3), Lowest / 3 - 1);
  EXPECT_EQ(ZylUpDiv(Lowest, 3), Lowest / 3);
}

// Extended arithmetic, which the standard library uses here and there, must not trap afterwards.
TEST(ZylNumber, NanDetectionDisturbsNoOtherArithmetic) {
  for (void (*set)() : {&ZylEnableNANDetection, &ZylDisableNANDetection}) {
    set();
    volatile long double one = 1.0L;
    volatile long double three = 3.0L;
    EXPECT_NEAR(static_cast<double>(one / three), 1.0 / 3.0, 1e-15);
    EXPECT_EQ(static_cast<double>(one / three * three), 1.0);
  }
}

TEST(ZylNumber, ParsesNumbers) {
  const std::pair<const char*, double> rows[] = {{"1.5", 1.5},
                                                 {"-0.25e2", -25.0},
                                                 {"infinityfoo", Inf},
                                                 {"Infinity", Inf},
                                                 {"-infinity", -Inf},
                                                 {"-Infinityx", -Inf},
                                                 {"  +7", 7.0},
                                                 {".5", 0.5},
                                                 {"5.", 5.0},
                                                 {"1e", 1.0},
                                                 {"1E+", 1.0},
                                                 {"0.000000000000000000000000000001", 1e-30},
                                                 {"123456789012345678901234", 123456789012345678e6},
                                                 {"1e308", 1e308},
                                                 {"0e400", 0.0},
                                                 {"1e-400", 0.0},
                                                 {"0.001e311", 1e308},
                                                 {"2.2250738585072014e-308", ZylNumMin}};
  for (const auto& [text, value] : rows) EXPECT_DOUBLE_EQ(ZylParseNum(text), value) << text;
}

TEST(ZylNumber, ParsesIntegers) {
  const std::pair<const char*, long> rows[] = {{"maxint2", ZylIntMax},
                                               {"-maxint", ZylIntMin},
                                               {"truest", 1},
                                               {"false", 0},
                                               {"-17", -17},
                                               {" 42", 42},
                                               {"", 0}};
  for (const auto& [text, value] : rows) EXPECT_EQ(ZylParseInt(text), value) << text;
}

TEST(ZylNumber, RefusedTextsTellTheirKind) {
  struct Row {
    const char* text;
    bool number;
    ZylParsingNumberMismatch::Type type;
  };
  using M = ZylParsingNumberMismatch;
  const Row rows[] = {
      {"1.5x", true, M::BadNum},      {"x", true, M::BadNum},
      {"1..5", true, M::BadNum},      {"0x10", true, M::BadNum},
      {"1e999", true, M::OutOfRange}, {"1e-999", true, M::OutOfRange},
      {"1e400", true, M::OutOfRange}, {"-1.8e308", true, M::OutOfRange},
      {"inff", true, M::BadNum},      {"1.7976931348623159e308", true, M::OutOfRange},
      {"1.5", false, M::BadInt},      {"99999999999999999999", false, M::OutOfRange}};
  for (const Row& row : rows) {
    try {
      row.number ? ZylParseNum(row.text) : static_cast<double>(ZylParseInt(row.text));
      ADD_FAILURE() << row.text << " was accepted";
    } catch (const ZylParsingNumberMismatch& exception) {
      EXPECT_EQ(exception.getType(), row.type) << row.text;
      EXPECT_EQ(exception.getString(), row.text);
      EXPECT_STREQ(exception.getMessage(), "Problem parsing this string");
    }
  }
}

TEST(ZylNumber, StrtodTellsWhereItStopped) {
  const std::pair<const char*, long> rows[] = {{"12abc", 2}, {"1.2.3", 3}, {"-", 0}, {"  x", 0},
                                               {"1e5z", 3},  {"1ex", 2},   {".", 0}, {"+.e1", 0},
                                               {"1e+x", 3},  {"-.5-", 3},  {"", 0}};
  for (const auto& [text, length] : rows) {
    char* end = nullptr;
    ZylStrtod(text, &end);
    EXPECT_EQ(end - text, length) << text;
  }
  EXPECT_TRUE(std::signbit(ZylStrtod("-0", nullptr)));
}

TEST(ZylNumber, WhatIsPrintedReadsBack) {
  using Limits = std::numeric_limits<double>;
  std::vector<double> values = {0.0,
                                -0.0,
                                Limits::max(),
                                -Limits::max(),
                                Limits::min(),
                                Limits::denorm_min(),
                                Limits::min() / 3,
                                Inf,
                                -Inf};
  std::mt19937_64 random(7);
  for (int i = 0; i < 20'000; ++i) {
    // Any bits; those of numbers with an exponent of 0 too.
    const auto bits = random();
    values.push_back(std::bit_cast<double>(i % 10 == 0 ? bits & 0x800FFFFFFFFFFFFF : bits));
  }
  for (const double value : values) {
    if (std::isnan(value)) continue;
    for (const int precision : {17, 15, 6}) {
      std::ostringstream stream;
      stream << std::setprecision(precision) << value;
      const std::string text = stream.str();
      const double expected = std::isinf(std::strtod(text.c_str(), nullptr))
                                  ? value  // the largest, rounded up
                                  : std::strtod(text.c_str(), nullptr);
      const double parsed = ZylParseNum(text.c_str());
      const double allowed = std::fabs(expected) * 1e-14 + Limits::denorm_min();
      ASSERT_TRUE(parsed == expected || std::fabs(parsed - expected) <= allowed) << text;
    }
    char text[64];
    int status = 0;
    convertZylNum(text, sizeof(text), value, -1, &status);
    if (status != 0) continue;
    ASSERT_NEAR(ZylParseNum(text), std::fabs(value), std::fabs(value) * 1e-14 + 5e-324) << text;
  }
}

TEST(ZylNumber, ConvertsToCompactText) {
  struct Row {
    double value;
    int precision;
    const char* text;
  };
  const Row rows[] = {{1.5, -1, "1.5"},        {100, -1, "100"},
                      {1e20, 14, "1e+20"},     {0.00001, -1, "0.00001"},
                      {-2.5, -1, "2.5"},       {0, -1, "0"},
                      {1e-6, -1, "0.000001"},  {1e-7, -1, "1e-7"},
                      {123456, 3, "1.235e+5"}, {1234, 3, "1234"},
                      {0.5, 0, "0.5"},         {1.0 / 3, 99, "0.333333333333333"},
                      {10, -1, "10"},          {1e14, 14, "100000000000000"},
                      {1e15, 14, "1e+15"},     {12345.678, -1, "12345.678"},
                      {99999.5, 2, "1e+5"}};
  for (const Row& row : rows) {
    char buffer[64];
    int status = 7;
    const long length = convertZylNum(buffer, sizeof(buffer), row.value, row.precision, &status);
    EXPECT_STREQ(buffer, row.text) << row.value << " by " << row.precision;
    EXPECT_EQ(length, static_cast<long>(std::strlen(row.text)));
    EXPECT_EQ(status, 0);
  }
  for (const double value : {Inf, -Inf, std::nan("")}) {
    char buffer[64];
    int status = 0;
    EXPECT_EQ(convertZylNum(buffer, sizeof(buffer), value, -1, &status), 1);
    EXPECT_STREQ(buffer, "?");
    EXPECT_EQ(status, -1);
  }
}

TEST(ZylTimer, StoppingAndStartingTwiceChangesNothing) {
  ZylTimer timer{ZylMemoryManager()};
  EXPECT_EQ(timer.getEnv(), nullptr);
  EXPECT_EQ(timer.stop(), 0.0);
  EXPECT_EQ(timer.start(), 0.0);
  EXPECT_GE(timer.start(), 0.0);
  const double total = timer.stop();
  EXPECT_EQ(timer.stop(), total);
  EXPECT_EQ(timer.getTime(), total);
}

TEST(ZylScopedSetLocale, RestoresInReverseOrder) {
  const std::string before = std::setlocale(LC_NUMERIC, nullptr);
  {
    ZylScopedSetLocale outer(LC_NUMERIC, "C.UTF-8");
    const std::string between = std::setlocale(LC_NUMERIC, nullptr);
    {
      ZylScopedSetLocale inner(LC_NUMERIC, "C");
      EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
      ZylScopedSetLocale same(LC_NUMERIC, "C");
    }
    EXPECT_EQ(std::setlocale(LC_NUMERIC, nullptr), between);
  }
  EXPECT_EQ(std::setlocale(LC_NUMERIC, nullptr), before);
}

}  // namespace
}  // namespace zyl::test
