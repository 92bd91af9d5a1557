// What both surveys share: lines, names, and the text of a refusal.

#include "survey.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdlib>

namespace zyl::solve {

LineError::LineError(long line, const std::string& what)
    : ReadError("line " + std::to_string(line) + ": " + what), _line(line) {}

int NameTable::find(std::string_view name) const {
  const auto found = _numbers.find(name);
  return found == _numbers.end() ? -1 : found->second;
}

int NameTable::add(std::string_view name) {
  const auto [place, fresh] = _numbers.try_emplace(name, static_cast<int>(_names.size()));
  if (fresh) _names.push_back(name);
  return place->second;
}

bool Lines::next(std::string_view& line) {
  if (_rest.empty()) return false;
  const std::size_t end = _rest.find('\n');
  line = _rest.substr(0, end);
  _rest.remove_prefix(end == std::string_view::npos ? _rest.size() : end + 1);
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  ++_number;
  return true;
}

bool parseNumber(std::string_view word, double& value) {
  std::string_view digits = word;
  const bool negative = !digits.empty() && digits.front() == '-';
  if (negative || (!digits.empty() && digits.front() == '+')) digits.remove_prefix(1);
  // What follows also keeps out the words that the conversion knows, such as "nan".
  if (digits.empty() ||
      (std::isdigit(static_cast<unsigned char>(digits.front())) == 0 && digits.front() != '.')) {
    return false;
  }
  std::string copy;
  if (digits.find_first_of("dD") != std::string_view::npos) {  // Fortran's exponents
    copy = digits;
    std::replace_if(
        copy.begin(), copy.end(), [](char c) { return c == 'd' || c == 'D'; }, 'e');
    digits = copy;
  }
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error == std::errc::invalid_argument || end != digits.data() + digits.size()) return false;
  // Beyond the doubles in either direction, which only this one tells apart.
  if (error != std::errc()) value = std::strtod(std::string(digits).c_str(), nullptr);
  if (negative) value = -value;
  return true;
}

void appendNumber(std::string& text, double value) {
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof(buffer), value);
  text.append(buffer, result.ptr);
}

void appendName(std::string& text, char kind, int number) {
  char buffer[16];
  const auto result = std::to_chars(buffer, buffer + sizeof(buffer), number);
  text += kind;
  text.append(buffer, result.ptr);
}

std::string upperCase(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return result;
}

std::string quoted(std::string_view word) {
  constexpr std::size_t Longest = 60;
  if (word.size() <= Longest) return "'" + std::string(word) + "'";
  return "'" + std::string(word.substr(0, Longest)) + "...'";
}

}  // namespace zyl::solve
