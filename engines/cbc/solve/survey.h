// A strict look at a file of a linear model, before a reader is trusted with it.
//
// The readers of CoinUtils take what they do not know for something else, keep names in buffers of
// fixed size and know no line numbers. So a survey checks every word, refuses what the reader would
// misread, and gives it a plain copy in which names are x0, x1, ... and r0, r1, ...

#ifndef ZYL_CBC_SOLVE_SURVEY_H
#define ZYL_CBC_SOLVE_SURVEY_H

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "reader.h"

namespace zyl::solve {

/// What a survey tells about a file.
struct Survey {
  std::string text;  // the plain copy: always a minimisation
  std::string name;
  std::string objective;
  bool maximize = false;
  std::vector<std::string_view> columns;  // the names behind x0, x1, ...; they live in the file
  std::vector<std::string> rows;          // the names behind r0, r1, ...
  std::size_t freeRows = 0;               // of these, left out by the reader
  std::size_t terms = 0;                  // non-zero ones in the rows that are not free
  std::map<std::size_t, double> lower;    // of rows with two sides, of which the copy has the upper
  std::vector<std::size_t> integers;      // columns that the copy does not tell to be so
};

/// Surveys a file in free or fixed MPS format. Raises `ReadError`, with the line.
Survey surveyMps(std::string_view file);

/// Surveys a file in LP format. Raises `ReadError`, with the line.
Survey surveyLp(std::string_view file);

/// A word of a file ends the reading at this line.
class LineError : public ReadError {
 public:
  LineError(long line, const std::string& what);
  [[nodiscard]] long getLine() const { return _line; }

 private:
  long _line;
};

/// Numbers names in the order of their coming. They are not copied.
class NameTable {
 public:
  /// Returns the number of `name`, -1 if it has none.
  [[nodiscard]] int find(std::string_view name) const;
  /// Returns the number of `name`, a new one if it has none.
  int add(std::string_view name);
  [[nodiscard]] const std::vector<std::string_view>& getNames() const { return _names; }

 private:
  std::unordered_map<std::string_view, int> _numbers;
  std::vector<std::string_view> _names;
};

/// Cuts text into lines, without their ends.
class Lines {
 public:
  explicit Lines(std::string_view text) : _rest(text) {}
  bool next(std::string_view& line);
  /// The line last taken, from 1.
  [[nodiscard]] long getNumber() const { return _number; }

 private:
  std::string_view _rest;
  long _number = 0;
};

/// Returns whether `word` is a decimal number, and its value: infinite beyond the doubles.
bool parseNumber(std::string_view word, double& value);

/// Appends a number as both readers understand it.
void appendNumber(std::string& text, double value);

/// Appends a stand-in name such as r12.
void appendName(std::string& text, char kind, int number);

/// The same in capitals.
std::string upperCase(std::string_view text);

/// A word in quotes, as messages show it: shortened if it is very long.
std::string quoted(std::string_view word);

}  // namespace zyl::solve

#endif
