// Any text serves as identifier, catalogue text and argument of a message.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "vorlane/bootstrap/message_handler.h"

namespace {

constexpr std::size_t maxLength = 10239;

void expect(bool condition) {
  if (!condition) std::abort();
}

// Only a digit behind a '%' may change, and only to 's'.
void checkPlaceHolders(const std::string& text) {
  const std::string fixed = ZylKvlDefaultMessageHandler::fixPlaceHolders(text);
  expect(fixed.size() == text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isPlaceHolder = i > 0 && text[i - 1] == '%' && (text[i] == '0' || text[i] == '1');
    expect(fixed[i] == (isPlaceHolder ? 's' : text[i]));
  }
}

void checkLocalize(const std::string& id, const std::string& text, const char* first,
                   const char* second) {
  ZylKvlDefaultMessageHandler handler;
  handler.getMessageCatalog()[id] = text;
  const std::string result = handler.localize(id.c_str(), first, second);
  expect(result.size() <= maxLength);
  if (text.empty()) {
    const std::string wanted = id + " (" + first + ";" + second + ")";
    expect(result == wanted.substr(0, maxLength));
  } else if (text.find('%') == std::string::npos) {
    expect(result == text.substr(0, maxLength));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // Four texts, each up to the next zero byte.
  std::string rest(data, data + size);
  std::string texts[4];
  for (std::string& text : texts) {
    text = rest.substr(0, rest.find('\0'));
    rest.erase(0, text.size() + 1);
  }
  checkPlaceHolders(texts[1]);
  checkLocalize(texts[0], texts[1], texts[2].c_str(), texts[3].c_str());
  return 0;
}
