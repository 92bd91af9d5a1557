// Texts on their way to the machine.

#ifndef ZYL_BOOTSTRAP_MODIFIED_UTF8_H
#define ZYL_BOOTSTRAP_MODIFIED_UTF8_H

#include <string>
#include <string_view>

namespace zyl::detail {

/// Returns UTF-8 in the form that JNI reads: what lies beyond the first 65536 characters becomes
/// two surrogates of three bytes each, and a zero byte becomes two bytes. Each byte that is no
/// UTF-8 becomes U+FFFD, as the machine does not check what it is given.
std::string toModifiedUtf8(std::string_view text);

}  // namespace zyl::detail

#endif
