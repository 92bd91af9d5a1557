// What an LP file says that its reader would take in another way.

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>

#include "survey.h"

namespace zyl::solve {

namespace {

constexpr double FileInfinity = 1e30;

enum class Kind { Number, Name, Infinity, Free, Sign, Star, Sense, Colon, Section, End };
enum class Section { None, Objective, Rows, Bounds, Integers, Binaries, End };

struct Token {
  Kind kind = Kind::End;
  std::string_view text;
  long line = 0;
  bool startsLine = false;
  double value = 0.0;               // of a number; 1 or -1 of a sign
  char sense = '=';                 // '<', '>', '='
  Section section = Section::None;  // that it opens
  bool maximize = false;
};

bool isDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }

// Names begin with fewer marks than they may hold, for "2(x + y)" and "x >= 3;" hold none.
bool startsName(char c) {
  return std::isalpha(static_cast<unsigned char>(c)) != 0 ||
         static_cast<unsigned char>(c) >= 0x80 ||
         (c != '\0' && std::string_view("_!#$%&@'{}~?").find(c) != std::string_view::npos);
}
bool isInName(char c) {
  return startsName(c) || isDigit(c) ||
         (c != '\0' && std::string_view(".,()\"`|").find(c) != std::string_view::npos);
}

// Words of the format. They are never names.
struct Keyword {
  std::string_view text;
  Kind kind;
  Section section;
};
constexpr std::array<Keyword, 30> Keywords = {{{"MINIMIZE", Kind::Section, Section::Objective},
                                               {"MINIMISE", Kind::Section, Section::Objective},
                                               {"MINIMUM", Kind::Section, Section::Objective},
                                               {"MIN", Kind::Section, Section::Objective},
                                               {"MAXIMIZE", Kind::Section, Section::Objective},
                                               {"MAXIMISE", Kind::Section, Section::Objective},
                                               {"MAXIMUM", Kind::Section, Section::Objective},
                                               {"MAX", Kind::Section, Section::Objective},
                                               {"SUBJECT", Kind::Section, Section::Rows},
                                               {"SUCH", Kind::Section, Section::Rows},
                                               {"ST", Kind::Section, Section::Rows},
                                               {"ST.", Kind::Section, Section::Rows},
                                               {"S.T.", Kind::Section, Section::Rows},
                                               {"BOUNDS", Kind::Section, Section::Bounds},
                                               {"BOUND", Kind::Section, Section::Bounds},
                                               {"GENERALS", Kind::Section, Section::Integers},
                                               {"GENERAL", Kind::Section, Section::Integers},
                                               {"GEN", Kind::Section, Section::Integers},
                                               {"INTEGERS", Kind::Section, Section::Integers},
                                               {"INTEGER", Kind::Section, Section::Integers},
                                               {"INT", Kind::Section, Section::Integers},
                                               {"BINARIES", Kind::Section, Section::Binaries},
                                               {"BINARY", Kind::Section, Section::Binaries},
                                               {"BIN", Kind::Section, Section::Binaries},
                                               {"END", Kind::Section, Section::End},
                                               {"FREE", Kind::Free, Section::None},
                                               {"INF", Kind::Infinity, Section::None},
                                               {"INFINITY", Kind::Infinity, Section::None},
                                               {"SEMI", Kind::Section, Section::None},
                                               {"SOS", Kind::Section, Section::None}}};

// Cuts the text into tokens. Comments run from a backslash to the end of the line, or are lines
// that begin with a slash.
class LpTokens {
 public:
  explicit LpTokens(std::string_view file) : _lines(file) {}
  Token next();

 private:
  [[noreturn]] void refuse(const std::string& what) const {
    throw LineError(_lines.getNumber(), what);
  }
  bool findToken();
  void number(Token& token);
  void name(Token& token);

  Lines _lines;
  std::string_view _line;
  std::size_t _at = 0;
  bool _startsLine = false;
};

bool LpTokens::findToken() {
  for (;;) {
    _at = std::min(_line.find_first_not_of(" \t\f\v", _at), _line.size());
    if (_at < _line.size() && _line[_at] != '\\') return true;
    do {
      if (!_lines.next(_line)) return false;
    } while (!_line.empty() && _line[0] == '/');
    _at = 0;
    _startsLine = true;
  }
}

void LpTokens::number(Token& token) {
  std::size_t end = _at;
  const auto digits = [&] {
    while (end < _line.size() && isDigit(_line[end])) ++end;
  };
  digits();
  if (end < _line.size() && _line[end] == '.') ++end;
  digits();
  const std::size_t mantissa = end;
  if (end < _line.size() && (_line[end] == 'e' || _line[end] == 'E')) {
    ++end;
    if (end < _line.size() && (_line[end] == '+' || _line[end] == '-')) ++end;
    const std::size_t exponent = end;
    digits();
    if (end == exponent) end = mantissa;
  }
  // "3x" is 3 x, but "3e5x" and "1.2.3" may be anything.
  const bool ambiguous =
      end < _line.size() &&
      (end > mantissa ? isInName(_line[end]) : !startsName(_line[end]) && isInName(_line[end]));
  const std::string_view text = _line.substr(_at, end - _at);
  if (ambiguous || !parseNumber(text, token.value)) {
    refuse(quoted(_line.substr(_at, _line.find_first_of(" \t", _at) - _at)) + " is not a number");
  }
  token.kind = Kind::Number;
  token.text = text;
  _at = end;
}

void LpTokens::name(Token& token) {
  std::size_t end = _at;
  int open = 0;
  while (end < _line.size() && isInName(_line[end])) {
    if (_line[end] == '(') ++open;
    if (_line[end] == ')' && --open < 0) break;
    ++end;
  }
  token.text = _line.substr(_at, end - _at);
  if (open != 0) refuse(quoted(token.text) + " is not a name");
  _at = end;
  token.kind = Kind::Name;
  if (token.text.size() > 8) return;
  const std::string word = upperCase(token.text);
  const auto* found = std::find_if(Keywords.begin(), Keywords.end(),
                                   [&](const Keyword& keyword) { return keyword.text == word; });
  // The two kinds of sections that no linear model has go by many names.
  if (found == Keywords.end() && word != "SEMIS" && word != "SOS1" && word != "SOS2") return;
  if (found == Keywords.end() ||
      (found->kind == Kind::Section && found->section == Section::None)) {
    refuse("section " + quoted(token.text) + " is not supported");
  }
  token.kind = found->kind;
  token.section = found->section;
  token.maximize = word[1] == 'A';
  if (found->kind == Kind::Infinity) token.value = HUGE_VAL;
  if (word != "SUBJECT" && word != "SUCH") return;
  _at = std::min(_line.find_first_not_of(" \t", _at), _line.size());
  const std::string_view second = word == "SUCH" ? "THAT" : "TO";
  const std::string rest = upperCase(_line.substr(_at, second.size()));
  const std::size_t behind = _at + second.size();
  if (rest != second || (behind < _line.size() && isInName(_line[behind]))) {
    refuse(quoted(token.text) + " is not followed by " + std::string(second));
  }
  _at = behind;
}

Token LpTokens::next() {
  Token token;
  const bool found = findToken();
  token.line = _lines.getNumber();
  if (!found) return token;
  token.startsLine = _startsLine;
  _startsLine = false;
  const char c = _line[_at];
  token.text = _line.substr(_at, 1);
  if (isDigit(c) || c == '.') {
    number(token);
  } else if (startsName(c)) {
    name(token);
  } else if (c == '+' || c == '-') {
    token.kind = Kind::Sign;
    token.value = c == '-' ? -1.0 : 1.0;
    ++_at;
  } else if (c == '*' || c == ':') {
    token.kind = c == '*' ? Kind::Star : Kind::Colon;
    ++_at;
  } else if (c == '<' || c == '>' || c == '=') {
    const std::size_t end = std::min(_line.find_first_not_of("<>=", _at), _line.size());
    token.text = _line.substr(_at, end - _at);
    token.kind = Kind::Sense;
    token.sense = c == '=' && token.text.size() == 2 ? token.text[1] : c;
    static constexpr std::array<std::string_view, 7> Senses = {"<",  "<=", "=<", ">",
                                                               ">=", "=>", "="};
    if (std::find(Senses.begin(), Senses.end(), token.text) == Senses.end()) {
      refuse(quoted(token.text) + " is not understood");
    }
    _at = end;
  } else if (c == '[' || c == ']' || c == '^') {
    refuse("quadratic terms are not supported");
  } else {
    refuse(quoted(token.text) + " is not understood");
  }
  return token;
}

char turned(char sense) { return sense == '<' ? '>' : (sense == '>' ? '<' : '='); }

void appendSide(std::string& text, char sense, double value) {
  text += sense == '=' ? " = " : (sense == '<' ? " <= " : " >= ");
  if (std::isinf(value)) {
    text += value > 0 ? "inf" : "-inf";
  } else {
    appendNumber(text, value);
  }
  text += '\n';
}

// Follows the grammar with one token of look-ahead, and writes the copy on the way.
class LpSurvey {
 public:
  explicit LpSurvey(std::string_view file) : _tokens(file) {
    advance();
    advance();
  }
  Survey run();

 private:
  enum Type : char { Continuous, Integer, Binary };

  [[noreturn]] void refuse(const std::string& what) const { throw LineError(_token.line, what); }
  [[noreturn]] void refuseToken() const;
  void advance();
  bool isSection() const { return _token.kind == Kind::Section || _token.kind == Kind::End; }
  bool isNumber() const { return _token.kind == Kind::Number || _token.kind == Kind::Infinity; }
  void checkLineEnd() const;
  std::string_view takeLabel();
  double takeSign();
  double takeNumber(double sign, bool canBeInfinite = false);
  int column();
  void term(double sign, bool first, double& constant);
  void sum(double sign, double& constant);
  void objective();
  void row();
  void limit(int column, char sense, double value);
  void bound();
  void listed(bool binary);
  void section();
  std::string compose();

  LpTokens _tokens;
  Token _token;
  Token _next;
  Survey _survey;
  NameTable _columns;
  NameTable _rowNames;
  std::vector<int> _lastRow;  // in which a column has stood; the objective is -1
  std::vector<char> _stated;  // columns that stand in the objective or a row
  std::vector<char> _types;   // of columns
  double _constant = NAN;     // of the objective, if it has one
  int _row = -1;
  bool _hasRows = false;
  std::string _objectiveText, _rowText, _boundText;
};

void LpSurvey::advance() {
  _token = _next;
  _next = _tokens.next();
}

void LpSurvey::refuseToken() const {
  if (_token.kind == Kind::End) refuse("the file ends before its End");
  refuse(quoted(_token.text) + " is not expected here");
}

// The name before a colon, if there is one.
std::string_view LpSurvey::takeLabel() {
  if (_token.kind != Kind::Name || _next.kind != Kind::Colon) return {};
  const std::string_view label = _token.text;
  advance();
  advance();
  return label;
}

// Any number of signs, as programs write them.
double LpSurvey::takeSign() {
  double result = 1.0;
  while (_token.kind == Kind::Sign) {
    result *= _token.value;
    advance();
  }
  return result;
}

double LpSurvey::takeNumber(double sign, bool canBeInfinite) {
  if (!isNumber()) refuseToken();
  double value = sign * _token.value;
  if (!(std::fabs(value) < FileInfinity)) {
    if (!canBeInfinite) refuse(quoted(_token.text) + ": number out of range");
    value = value > 0 ? HUGE_VAL : -HUGE_VAL;
  }
  advance();
  return value;
}

int LpSurvey::column() {
  const int found = _columns.add(_token.text);
  if (static_cast<std::size_t>(found) == _lastRow.size()) {
    _lastRow.push_back(-2);
    _stated.push_back(0);
    _types.push_back(0);
  }
  return found;
}

// Takes one term of a sum, or its constant.
void LpSurvey::term(double sign, bool first, double& constant) {
  std::string& text = _row < 0 ? _objectiveText : _rowText;
  double value = sign;
  bool hasNumber = false;
  if (_token.kind == Kind::Number) {
    value = takeNumber(sign);
    hasNumber = true;
    if (_token.kind == Kind::Star) {
      advance();
      if (_token.kind != Kind::Name) refuseToken();
    }
  }
  if (_token.kind != Kind::Name) {
    if (!hasNumber) refuseToken();
    if (_row >= 0) refuse("a constant among the terms of a row is not supported");
    if (!std::isnan(constant)) refuse("a second constant in the objective");
    constant = value;
    return;
  }
  const auto index = static_cast<std::size_t>(column());
  if (_lastRow[index] == _row) refuse(quoted(_token.text) + " stands twice in a sum");
  _lastRow[index] = _row;
  _stated[index] = 1;
  if (_row >= 0 && value != 0.0) ++_survey.terms;
  // The reader takes numbers with a sign of their own for names.
  text += first && value >= 0.0 ? " " : (std::signbit(value) ? " - " : " + ");
  appendNumber(text, std::fabs(value));
  text += ' ';
  appendName(text, 'x', static_cast<int>(index));
  text += '\n';
  advance();
}

// What follows on the same line belongs to what the line says, and is not understood; a row with a
// name may follow.
void LpSurvey::checkLineEnd() const {
  const bool begins = _token.startsLine || (_token.kind == Kind::Name && _next.kind == Kind::Colon);
  if (!begins && !isSection()) refuseToken();
}

void LpSurvey::sum(double sign, double& constant) {
  term(sign, /*first=*/true, constant);
  while (_token.kind == Kind::Sign) term(takeSign(), /*first=*/false, constant);
}

void LpSurvey::objective() {
  _survey.maximize = _token.maximize;
  advance();
  _survey.objective = takeLabel();
  if (!isSection()) sum(takeSign(), _constant);
  if (!isSection()) refuseToken();
}

void LpSurvey::row() {
  ++_row;
  const std::string_view name = takeLabel();
  if (!name.empty()) {
    if (_rowNames.find(name) >= 0) refuse("a second row " + quoted(name));
    _rowNames.add(name);
  }
  _survey.rows.push_back(name.empty() ? "cons" + std::to_string(_row) : std::string(name));
  appendName(_rowText, 'r', _row);
  _rowText += ':';

  double sign = takeSign();
  const bool leads = isNumber() && _next.kind == Kind::Sense;
  double side = 0.0;
  char sense = '=';
  if (leads) {
    side = takeNumber(sign);
    sense = _token.sense;
    advance();
    sign = takeSign();
  }
  double none = NAN;
  sum(sign, none);
  if (leads && _token.kind != Kind::Sense) {
    sense = turned(sense);
  } else {
    if (_token.kind != Kind::Sense) refuseToken();
    const double first = side;
    if (leads && (sense == '=' || _token.sense != sense)) refuseToken();
    sense = _token.sense;
    advance();
    side = takeNumber(takeSign());
    if (leads) {
      // The reader would make two rows of this.
      _survey.lower.emplace(_row, sense == '<' ? first : side);
      side = sense == '<' ? side : first;
      sense = '<';
    }
  }
  checkLineEnd();
  appendSide(_rowText, sense, side);
}

void LpSurvey::limit(int column, char sense, double value) {
  if ((sense != '<' && value == HUGE_VAL) || (sense != '>' && value == -HUGE_VAL)) {
    refuse("bound of " + quoted(_columns.getNames()[static_cast<std::size_t>(column)]) +
           ": number out of range");
  }
  appendName(_boundText, 'x', column);
  appendSide(_boundText, sense, value);
}

void LpSurvey::bound() {
  double value = 0.0;
  char sense = '=';
  const bool leads = _token.kind != Kind::Name;
  if (leads) {
    value = takeNumber(takeSign(), /*canBeInfinite=*/true);
    if (_token.kind != Kind::Sense) refuseToken();
    sense = _token.sense;
    advance();
    if (_token.kind != Kind::Name) refuseToken();
  }
  const int limited = column();
  advance();
  if (leads) {
    limit(limited, turned(sense), value);
  } else if (_token.kind == Kind::Free) {
    limit(limited, '>', -HUGE_VAL);
    limit(limited, '<', HUGE_VAL);
    advance();
  }
  if (_token.kind == Kind::Sense && !_token.startsLine) {
    if (leads && (sense == '=' || _token.sense != sense)) refuseToken();
    sense = _token.sense;
    advance();
    limit(limited, sense, takeNumber(takeSign(), /*canBeInfinite=*/true));
  }
  checkLineEnd();
}

void LpSurvey::listed(bool binary) {
  if (_token.kind != Kind::Name) refuseToken();
  char& type = _types[static_cast<std::size_t>(column())];
  type = binary || type == Binary ? Binary : Integer;
  advance();
}

void LpSurvey::section() {
  const Section section = _token.section;
  if (section == Section::Objective || (section == Section::Rows && _hasRows)) refuseToken();
  _hasRows = _hasRows || section == Section::Rows;
  advance();
  while (!isSection()) {
    if (section == Section::Rows) row();
    if (section == Section::Bounds) bound();
    if (section == Section::Integers || section == Section::Binaries) {
      listed(/*binary=*/section == Section::Binaries);
    }
  }
}

std::string LpSurvey::compose() {
  // The reader puts a column only into a model where it stands in the objective or in a row.
  for (std::size_t j = 0; j < _stated.size(); ++j) {
    if (_stated[j] != 0) continue;
    _objectiveText += _objectiveText.empty() ? " 0 " : " + 0 ";
    appendName(_objectiveText, 'x', static_cast<int>(j));
    _objectiveText += '\n';
  }
  if (_objectiveText.empty() && std::isnan(_constant)) _constant = 0.0;
  if (!std::isnan(_constant)) {  // it has to be the last
    if (!_objectiveText.empty() || _constant < 0) _objectiveText += _constant < 0 ? " - " : " + ";
    _objectiveText += ' ';
    appendNumber(_objectiveText, std::fabs(_constant));
    _objectiveText += '\n';
  }
  std::string integers;
  std::string binaries;
  for (std::size_t j = 0; j < _types.size(); ++j) {
    if (_types[j] == 0) continue;
    std::string& list = _types[j] == Binary ? binaries : integers;
    appendName(list, 'x', static_cast<int>(j));
    list += '\n';
  }
  std::string text = "minimize\no:" + _objectiveText + "st\n" + _rowText;
  if (!_boundText.empty()) text += "bounds\n" + _boundText;
  if (!integers.empty()) text += "integers\n" + integers;
  if (!binaries.empty()) text += "binaries\n" + binaries;
  return text + "end\n";
}

Survey LpSurvey::run() {
  if (_token.kind != Kind::Section || _token.section != Section::Objective) {
    refuse(quoted(_token.text) + " begins neither an MPS file nor an LP file");
  }
  objective();
  while (_token.kind == Kind::Section && _token.section != Section::End) section();
  if (_token.kind == Kind::End) refuseToken();
  if (_next.kind != Kind::End) refuse("text behind End");
  _survey.text = compose();
  _survey.columns = _columns.getNames();
  return std::move(_survey);
}

}  // namespace

Survey surveyLp(std::string_view file) { return LpSurvey(file).run(); }

}  // namespace zyl::solve
