// The form of texts at the border to Java: zeros and long characters differ from UTF-8.

#include "bootstrap/modified_utf8.h"

#include <cstddef>
#include <cstdint>

namespace zyl::detail {
namespace {

struct Character {
  std::uint32_t code = 0xFFFD;
  std::size_t length = 1;
};

// Reads the character in front of `text`, which is not empty.
Character readCharacter(std::string_view text) {
  const auto byte = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned first = byte(0);
  if (first < 0x80) return {first, 1};
  if (first < 0xC2 || first > 0xF4) return {};
  const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  if (text.size() < length) return {};
  std::uint32_t code = first & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0U) != 0x80) return {};
    code = code << 6 | (byte(i) & 0x3FU);
  }
  const bool isSurrogate = code >= 0xD800 && code < 0xE000;
  const bool isTooLong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
  if (isSurrogate || isTooLong || code > 0x10FFFF) return {};
  return {code, length};
}

void appendUnit(std::string& result, std::uint32_t unit) {
  const auto append = [&result](std::uint32_t byte) { result += static_cast<char>(byte); };
  if (unit != 0 && unit < 0x80) {
    append(unit);
  } else if (unit < 0x800) {
    append(0xC0 | unit >> 6);
    append(0x80 | (unit & 0x3F));
  } else {
    append(0xE0 | unit >> 12);
    append(0x80 | (unit >> 6 & 0x3F));
    append(0x80 | (unit & 0x3F));
  }
}

}  // namespace

std::string toModifiedUtf8(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const Character character = readCharacter(text);
    text.remove_prefix(character.length);
    if (character.code < 0x10000) {
      appendUnit(result, character.code);
    } else {
      const std::uint32_t rest = character.code - 0x10000;
      appendUnit(result, 0xD800 + (rest >> 10));
      appendUnit(result, 0xDC00 + (rest & 0x3FF));
    }
  }
  return result;
}

}  // namespace zyl::detail
