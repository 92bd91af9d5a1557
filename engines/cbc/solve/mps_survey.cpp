// What an MPS file says that its reader would take in another way.

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "survey.h"

namespace zyl::solve {

namespace {

constexpr double FileInfinity = 1e30;

enum class Section { None, ObjSense, Rows, Columns, Rhs, Ranges, Bounds, End };

// The fields of a data line, under the numbers that fixed format gives them.
struct Card {
  std::string_view type;    // 1: of a row or bound
  std::string_view name;    // 2: of a row, a column or a set
  std::string_view first;   // 3
  std::string_view value;   // 4
  std::string_view second;  // 5
  std::string_view other;   // 6
};

bool isBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

// At most seven words: one more than a line can have.
struct Words {
  std::array<std::string_view, 7> word;
  std::size_t count = 0;
};

Words splitWords(std::string_view line) {
  Words words;
  std::size_t at = 0;
  while (words.count < words.word.size()) {
    while (at < line.size() && isBlank(line[at])) ++at;
    if (at == line.size()) break;
    const std::size_t begin = at;
    while (at < line.size() && !isBlank(line[at])) ++at;
    words.word[words.count++] = line.substr(begin, at - begin);
  }
  return words;
}

bool needsValue(std::string_view type) {
  return type != "FR" && type != "MI" && type != "PL" && type != "BV";
}

bool isBoundType(std::string_view type) {
  static constexpr std::array<std::string_view, 9> Types = {"UP", "LO", "FX", "FR", "MI",
                                                            "PL", "BV", "LI", "UI"};
  return std::find(Types.begin(), Types.end(), type) != Types.end();
}

// One pass over the file, which reads its data lines by words or by the columns of fixed format.
class MpsSurvey {
 public:
  MpsSurvey(std::string_view file, bool fixed) : _lines(file), _fixed(fixed) {}

  Survey run();
  [[nodiscard]] bool saysFree() const { return _saysFree; }

 private:
  // What the file has said of a column, in whatever order.
  struct Limits {
    double lower = 0.0;
    double upper = 0.0;
    bool hasLower = false;
    bool hasUpper = false;
  };

  [[noreturn]] void refuse(const std::string& what) const {
    throw LineError(_lines.getNumber(), what);
  }
  double number(std::string_view word, bool canBeInfinite = false) const;
  int row(std::string_view name) const;
  void header(std::string_view line);
  void sense(std::string_view word);
  void appendRow(std::string& text, int row) const;
  void finishColumn();
  void finishColumns();
  void data(std::string_view line);
  Card cut(std::string_view line) const;
  Card cutWords(std::string_view line) const;
  Card cutColumns(std::string_view line) const;
  void rowLine(const Card& card);
  void columnLine(const Card& card);
  void entry(std::string_view name, std::string_view value);
  void sideLine(const Card& card);
  void side(std::string_view name, std::string_view value);
  void boundLine(const Card& card);
  void appendBound(const std::string& type, int column, double value);
  void checkSet(std::string_view set);

  Lines _lines;
  bool _fixed;
  bool _saysFree = false;
  Section _section = Section::None;
  unsigned _seen = 0;                    // sections, by bit
  std::optional<std::string_view> _set;  // of this section
  Survey _survey;
  NameTable _rows;
  NameTable _columns;
  int _objective = -1;
  std::vector<char> _types;           // of rows
  std::vector<int> _lastColumn;       // that has an entry in a row
  std::vector<unsigned char> _given;  // bits of row sides: 1 right-hand side, 2 range
  std::vector<Limits> _limits;
  bool _integer = false;  // between the markers
  bool _written = true;   // the last column stands in the copy
  std::string _rowText, _columnText, _rhsText, _rangeText, _boundText;
};

double MpsSurvey::number(std::string_view word, bool canBeInfinite) const {
  double value = 0.0;
  if (!parseNumber(word, value)) {
    std::string text = upperCase(word);
    const bool negative = !text.empty() && text[0] == '-';
    if (!text.empty() && (negative || text[0] == '+')) text.erase(0, 1);
    if (text != "INF" && text != "INFINITY") refuse(quoted(word) + " is not a number");
    value = negative ? -HUGE_VAL : HUGE_VAL;
  }
  if (std::fabs(value) < FileInfinity) return value;
  if (!canBeInfinite) refuse(quoted(word) + ": number out of range");
  return value > 0 ? HUGE_VAL : -HUGE_VAL;
}

int MpsSurvey::row(std::string_view name) const {
  const int found = _rows.find(name);
  if (found < 0) refuse("unknown row " + quoted(name));
  return found;
}

void MpsSurvey::sense(std::string_view word) {
  const std::string text = upperCase(word);
  if (text != "MAX" && text != "MAXIMIZE" && text != "MIN" && text != "MINIMIZE") {
    refuse(quoted(word) + " is no sense of an objective");
  }
  _survey.maximize = text[1] == 'A';
}

void MpsSurvey::appendRow(std::string& text, int row) const {
  text += ' ';
  if (row == _objective) {
    text += 'o';
  } else {
    appendName(text, 'r', row);
  }
  text += ' ';
}

// A column may have entries only in rows that are left out.
void MpsSurvey::finishColumn() {
  if (_written) return;
  _columnText += ' ';
  appendName(_columnText, 'x', static_cast<int>(_columns.getNames().size()) - 1);
  _columnText += " o 0\n";
  _written = true;
}

void MpsSurvey::finishColumns() {
  if (_section != Section::Columns) return;
  finishColumn();
  if (_integer) {
    _columnText += " m 'MARKER' 'INTEND'\n";
    _integer = false;
  }
}

void MpsSurvey::header(std::string_view line) {
  finishColumns();
  const Words words = splitWords(line);
  const std::string word = upperCase(words.word[0]);
  if (word == "NAME") {
    if (_section != Section::None) refuse("NAME is not the first section");
    _saysFree = words.count == 3 && upperCase(words.word[2]) == "FREE";
    _survey.name = words.word[1];
    return;
  }
  static constexpr std::array<std::pair<std::string_view, Section>, 7> Sections = {
      {{"OBJSENSE", Section::ObjSense},
       {"ROWS", Section::Rows},
       {"COLUMNS", Section::Columns},
       {"RHS", Section::Rhs},
       {"RANGES", Section::Ranges},
       {"BOUNDS", Section::Bounds},
       {"ENDATA", Section::End}}};
  const auto* found = std::find_if(Sections.begin(), Sections.end(),
                                   [&](const auto& entry) { return entry.first == word; });
  if (found == Sections.end()) refuse("section " + quoted(words.word[0]) + " is not supported");
  _section = found->second;
  const unsigned bit = 1U << static_cast<unsigned>(_section);
  if ((_seen & bit) != 0) refuse("a second section " + word);
  _seen |= bit;
  _set.reset();
  const bool hasRows = (_seen & 1U << static_cast<unsigned>(Section::Rows)) != 0;
  const bool hasColumns = (_seen & 1U << static_cast<unsigned>(Section::Columns)) != 0;
  if (_section >= Section::Columns && !hasRows) refuse(word + " comes before ROWS");
  if (_section >= Section::Rhs && !hasColumns) refuse(word + " comes before COLUMNS");
  if (words.count > 1 && _section != Section::ObjSense) {
    refuse(quoted(words.word[1]) + " behind " + word);
  }
  if (words.count > 1) sense(words.word[1]);
}

Card MpsSurvey::cutWords(std::string_view line) const {
  const Words words = splitWords(line);
  const auto& word = words.word;
  switch (_section) {
    case Section::Rows:
      if (words.count == 2) return {word[0], word[1], {}, {}, {}, {}};
      break;
    case Section::Columns:
      if (words.count == 3) return {{}, word[0], word[1], word[2], {}, {}};
      if (words.count == 5) return {{}, word[0], word[1], word[2], word[3], word[4]};
      break;
    case Section::Rhs:
    case Section::Ranges:  // their sets need no name
      if (words.count == 2) return {{}, {}, word[0], word[1], {}, {}};
      if (words.count == 3) return {{}, word[0], word[1], word[2], {}, {}};
      if (words.count == 4) return {{}, {}, word[0], word[1], word[2], word[3]};
      if (words.count == 5) return {{}, word[0], word[1], word[2], word[3], word[4]};
      break;
    case Section::Bounds:
      if (words.count == 2) return {word[0], {}, word[1], {}, {}, {}};
      if (words.count == 3 && (needsValue(upperCase(word[0])) ||
                               (_columns.find(word[2]) < 0 && _columns.find(word[1]) >= 0))) {
        return {word[0], {}, word[1], word[2], {}, {}};
      }
      if (words.count == 3) return {word[0], word[1], word[2], {}, {}, {}};
      if (words.count == 4) return {word[0], word[1], word[2], word[3], {}, {}};
      break;
    default: refuse(quoted(word[0]) + " outside of a section");
  }
  refuse("does not have the fields of its section");
}

Card MpsSurvey::cutColumns(std::string_view line) const {
  static constexpr std::array<std::size_t, 6> First = {1, 4, 14, 24, 39, 49};
  static constexpr std::array<std::size_t, 6> Last = {3, 12, 22, 36, 47, 61};
  std::array<std::string_view, 6> field;
  std::size_t at = 0;
  const auto checkGap = [&](std::size_t end) {
    for (; at < std::min(end, line.size()); ++at) {
      if (line[at] != ' ') refuse("does not fit the columns of fixed format");
    }
  };
  for (std::size_t i = 0; i < field.size(); ++i) {
    checkGap(First[i]);
    if (at < line.size()) field[i] = trimmed(line.substr(at, Last[i] - at));
    at = Last[i];
  }
  checkGap(line.size());
  return {field[0], field[1], field[2], field[3], field[4], field[5]};
}

Card MpsSurvey::cut(std::string_view line) const {
  return _fixed ? cutColumns(line) : cutWords(line);
}

void MpsSurvey::rowLine(const Card& card) {
  const std::string type = upperCase(card.type);
  if (type != "N" && type != "E" && type != "L" && type != "G") {
    refuse(quoted(card.type) + " is no type of a row");
  }
  if (card.name.empty()) refuse("a row without a name");
  if (_rows.find(card.name) >= 0) refuse("a second row " + quoted(card.name));
  const int row = _rows.add(card.name);
  _types.push_back(type[0]);
  if (type == "N") {
    ++_survey.freeRows;
    if (_objective < 0) _objective = row;
    // What further free rows hold does not matter to anybody: they stay out of the copy.
    if (_objective == row) _survey.objective = card.name;
    return;
  }
  _rowText += " " + type + " ";
  appendName(_rowText, 'r', row);
  _rowText += '\n';
}

void MpsSurvey::entry(std::string_view name, std::string_view value) {
  const int found = row(name);
  const int column = static_cast<int>(_columns.getNames().size()) - 1;
  const auto index = static_cast<std::size_t>(found);
  if (_lastColumn[index] == column) refuse("a second entry in row " + quoted(name));
  _lastColumn[index] = column;
  const double element = number(value);
  if (_types[index] == 'N' && found != _objective) return;
  if (_types[index] != 'N' && element != 0.0) ++_survey.terms;
  _columnText += ' ';
  appendName(_columnText, 'x', column);
  appendRow(_columnText, found);
  appendNumber(_columnText, element);
  _columnText += '\n';
  _written = true;
}

void MpsSurvey::columnLine(const Card& card) {
  if (card.first == "'MARKER'") {
    finishColumn();
    const std::string_view kind = card.value.empty() ? card.second : card.value;
    if (kind == "'INTORG'" && !_integer) {
      _columnText += " m 'MARKER' 'INTORG'\n";
    } else if (kind == "'INTEND'" && _integer) {
      _columnText += " m 'MARKER' 'INTEND'\n";
    } else {
      refuse("marker " + quoted(kind) + " is not supported here");
    }
    _integer = !_integer;
    return;
  }
  if (card.name.empty()) refuse("a column without a name");
  const auto& columns = _columns.getNames();
  if (columns.empty() || columns.back() != card.name) {
    if (_columns.find(card.name) >= 0) refuse("a second column " + quoted(card.name));
    finishColumn();
    _columns.add(card.name);
    _limits.emplace_back();
    _written = false;
  }
  entry(card.first, card.value);
  if (!card.second.empty()) entry(card.second, card.other);
}

void MpsSurvey::checkSet(std::string_view set) {
  // Of several sets a reader would have to choose one.
  if (_set.has_value() && *_set != set) refuse("a second set " + quoted(set));
  _set = set;
}

void MpsSurvey::side(std::string_view name, std::string_view value) {
  const int found = row(name);
  const auto index = static_cast<std::size_t>(found);
  const bool range = _section == Section::Ranges;
  const unsigned char bit = range ? 2 : 1;
  if ((_given[index] & bit) != 0) refuse("a second value for row " + quoted(name));
  _given[index] = static_cast<unsigned char>(_given[index] | bit);
  const double side = number(value);
  if (_types[index] == 'N' && (range || found != _objective)) return;
  std::string& text = range ? _rangeText : _rhsText;
  text += " s";
  appendRow(text, found);
  appendNumber(text, side);
  text += '\n';
}

void MpsSurvey::sideLine(const Card& card) {
  checkSet(card.name);
  side(card.first, card.value);
  if (!card.second.empty()) side(card.second, card.other);
}

void MpsSurvey::boundLine(const Card& card) {
  std::string type = upperCase(card.type);
  if (!isBoundType(type)) refuse("bounds of type " + quoted(card.type) + " are not supported");
  checkSet(card.name);
  const int column = _columns.find(card.first);
  if (column < 0) refuse("unknown column " + quoted(card.first));
  const bool integer = type == "UI" || type == "LI";
  if (integer) {
    // The reader takes these for other bounds where they are negative.
    type = type == "UI" ? "UP" : "LO";
    _survey.integers.push_back(static_cast<std::size_t>(column));
  }
  const bool lower = type != "UP" && type != "PL";
  const bool upper = type != "LO" && type != "MI";
  Limits& limits = _limits[static_cast<std::size_t>(column)];
  if ((lower && limits.hasLower) || (upper && limits.hasUpper)) {
    refuse("a second bound of column " + quoted(card.first));
  }
  double value = 0.0;
  if (needsValue(type)) {
    value = number(card.value, /*canBeInfinite=*/true);
    if ((lower && value == HUGE_VAL) || (upper && value == -HUGE_VAL)) {
      refuse(quoted(card.value) + ": number out of range");
    }
  }
  if (lower) limits.lower = type == "LO" || type == "FX" ? value : -HUGE_VAL;
  if (upper) limits.upper = type == "UP" || type == "FX" ? value : HUGE_VAL;
  limits.hasLower = limits.hasLower || lower;
  limits.hasUpper = limits.hasUpper || upper;
  if (limits.hasLower && limits.hasUpper && limits.lower > limits.upper) {
    refuse("the bounds of column " + quoted(card.first) + " exclude each other");
  }
  appendBound(type, column, value);
}

void MpsSurvey::appendBound(const std::string& type, int column, double value) {
  const bool infinite = std::isinf(value);
  _boundText += ' ';
  _boundText += !infinite ? type : (value > 0 ? "PL" : "MI");
  _boundText += " b ";
  appendName(_boundText, 'x', column);
  if (needsValue(type) && !infinite) {
    _boundText += ' ';
    appendNumber(_boundText, value);
  }
  _boundText += '\n';
}

void MpsSurvey::data(std::string_view line) {
  if (_section == Section::ObjSense) {
    sense(trimmed(line));
    return;
  }
  const Card card = cut(line);
  switch (_section) {
    case Section::Rows: rowLine(card); break;
    case Section::Columns: columnLine(card); break;
    case Section::Rhs:
    case Section::Ranges: sideLine(card); break;
    case Section::Bounds: boundLine(card); break;
    default: refuse("data outside of a section");
  }
}

Survey MpsSurvey::run() {
  std::string_view line;
  while (_lines.next(line)) {
    if (_section == Section::End) break;  // what follows is not part of the model
    if (line.empty() || line[0] == '*' || trimmed(line).empty()) continue;
    if (isBlank(line[0])) {
      data(line);
    } else {
      header(line);
      if (_section == Section::Columns) {
        _lastColumn.assign(_types.size(), -1);
        _given.assign(_types.size(), 0);
      }
    }
  }
  if (_section != Section::End) refuse("the file ends before its ENDATA");
  // The objective of the copy is a row of its own, so that there always is one.
  _survey.text = "NAME m FREE\nROWS\n N o\n" + _rowText + "COLUMNS\n" + _columnText + "RHS\n" +
                 _rhsText + "RANGES\n" + _rangeText + "BOUNDS\n" + _boundText + "ENDATA\n";
  _survey.columns = _columns.getNames();
  _survey.rows.assign(_rows.getNames().begin(), _rows.getNames().end());
  return std::move(_survey);
}

}  // namespace

Survey surveyMps(std::string_view file) {
  MpsSurvey words(file, /*fixed=*/false);
  try {
    return words.run();
  } catch (const LineError& error) {
    if (words.saysFree()) throw;
    // Fixed format may have blanks in names. The reading that comes further tells what is wrong.
    MpsSurvey columns(file, /*fixed=*/true);
    try {
      return columns.run();
    } catch (const LineError& other) {
      if (other.getLine() > error.getLine()) throw;
    }
    throw;
  }
}

}  // namespace zyl::solve
