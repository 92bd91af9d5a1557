// Numbers in the texts of this layer.

#ifndef ZYL_JACE_DECIMAL_H
#define ZYL_JACE_DECIMAL_H

#include <charconv>
#include <limits>
#include <string>

namespace jace::helper {

/// Returns the number as decimal text, whatever the locale.
inline std::string decimal(long number) {
  char digits[std::numeric_limits<long>::digits10 + 3];
  const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, number);
  return std::string(digits, result.ptr);
}

}  // namespace jace::helper

#endif
