// Splitting of a command line into words.

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "bootstrap/system_utils.h"
#include "bootstrap/trace.h"
#include "vorlane/bootstrap/discovery.h"

namespace {

bool isSeparator(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool isQuote(char c) { return c == '"' || c == '\''; }

// Copies the word that begins at `next` to `out` without its quotes, and moves both behind it.
void copyWord(const char*& next, const char* end, char*& out) {
  char quote = '\0';
  for (; next != end; ++next) {
    const char c = *next;
    if (quote != '\0' ? c == quote : isQuote(c)) {
      quote = quote != '\0' ? '\0' : c;
    } else if (quote == '\0' && isSeparator(c)) {
      break;
    } else {
      *out++ = c;
    }
  }
  *out++ = '\0';
}

}  // namespace

char** SystemUtils::ZylKvlCommandLineToArgv(const char* text, int* count) {
  const TraceMethod method("ZylKvlCommandLineToArgv", text);
  if (text == nullptr) text = "";
  *count = 0;
  const std::size_t length = std::strlen(text);
  // A word takes a character at least, and all but the last one a separator: (n + 1) / 2 words at
  // most, and one terminator for each in place of its separator or of the text's end.
  const std::size_t tableSize = (length + 2) / 2 + 1;
  auto* table = static_cast<char**>(std::malloc(tableSize * sizeof(char*) + length + 2));
  if (table == nullptr) return nullptr;

  char* out = reinterpret_cast<char*>(table + tableSize);
  const char* next = text;
  const char* end = text + length;
  std::size_t words = 0;
  while (true) {
    while (next != end && isSeparator(*next)) ++next;
    if (next == end) break;
    table[words++] = out;
    copyWord(next, end, out);
  }
  table[words] = nullptr;
  *count = static_cast<int>(words);
  return table;
}

char** ZylKvlCommandLineToArgv(const char* text, int* count) {
  return SystemUtils::ZylKvlCommandLineToArgv(text, count);
}
