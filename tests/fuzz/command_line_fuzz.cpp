// Any text splits into words which, quoted, split into themselves.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "vorlane/bootstrap/discovery.h"

namespace {

std::vector<std::string> split(const std::string& text) {
  int count = -1;
  char** table = ZylKvlCommandLineToArgv(text.c_str(), &count);
  std::vector<std::string> words(table, table + count);
  if (table[count] != nullptr) std::abort();
  std::free(table);
  return words;
}

// Each quote of a kind stands between quotes of the other kind.
std::string quoted(const std::string& word) {
  std::string result = "''";
  for (const char c : word) {
    const char quote = c == '"' ? '\'' : '"';
    result += {quote, c, quote};
  }
  return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::string> words = split(std::string(data, data + size));
  std::string line;
  for (const std::string& word : words) line += " \t" + quoted(word);
  if (split(line) != words) std::abort();
  return 0;
}
