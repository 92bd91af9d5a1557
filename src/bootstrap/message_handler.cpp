// What becomes of a message: looked up, filled in, and handed to whoever listens.

#include "vorlane/bootstrap/message_handler.h"

#include <cstddef>
#include <iostream>
#include <span>
#include <stdexcept>
#include <string_view>

#include "bootstrap/message_catalog.h"
#include "bootstrap/trace.h"

namespace {

constexpr std::size_t maxTextLength = 10239;

std::string_view orEmpty(const char* text) { return text == nullptr ? "" : text; }

// Texts are not for printf: a client may enter any text in the catalogue, and one with more
// placeholders than arguments would read what nobody passed.
std::string substitute(std::string_view format, std::span<const std::string_view> arguments) {
  std::string result;
  std::size_t nextArgument = 0;
  for (std::size_t i = 0; i < format.size() && result.size() < maxTextLength; ++i) {
    const std::string_view pair = format.substr(i, 2);
    if (pair == "%s" && nextArgument < arguments.size()) {
      result += arguments[nextArgument++];
      ++i;
    } else {
      result += format[i];
      if (pair == "%%") ++i;
    }
  }
  if (result.size() > maxTextLength) result.resize(maxTextLength);
  return result;
}

}  // namespace

ZylKvlMessageHandler::~ZylKvlMessageHandler() = default;

ZylKvlNullMessageHandler::~ZylKvlNullMessageHandler() = default;
void ZylKvlNullMessageHandler::info(const char*, const char*, const char*) {}
void ZylKvlNullMessageHandler::warning(const char*, const char*, const char*) {}
void ZylKvlNullMessageHandler::error(const char*, const char*, const char*) {}
void ZylKvlNullMessageHandler::fatal(const char*, const char*, const char*) {}

ZylKvlDefaultMessageHandler::ZylKvlDefaultMessageHandler() = default;
ZylKvlDefaultMessageHandler::~ZylKvlDefaultMessageHandler() = default;

void ZylKvlDefaultMessageHandler::info(const char* id, const char* arg0, const char* arg1) {
  report("INFO", localize(id, arg0, arg1).c_str());
}

void ZylKvlDefaultMessageHandler::warning(const char* id, const char* arg0, const char* arg1) {
  report("WARNING", localize(id, arg0, arg1).c_str());
}

void ZylKvlDefaultMessageHandler::error(const char* id, const char* arg0, const char* arg1) {
  report("ERROR", localize(id, arg0, arg1).c_str());
}

void ZylKvlDefaultMessageHandler::fatal(const char* id, const char* arg0, const char* arg1) {
  const std::string text = localize(id, arg0, arg1);
  report("FATAL", text.c_str());
  throw std::runtime_error("FATAL:" + text);
}

void ZylKvlDefaultMessageHandler::report(const char* severity, const char* text) {
  std::string line = std::string(severity) + ": " + text;
  std::cerr << line << std::endl;
  _reportedMessages.push_back(std::move(line));
}

std::string ZylKvlDefaultMessageHandler::localize(const char* id, const char* arg0,
                                                  const char* arg1) {
  const std::string key(orEmpty(id));
  const std::string_view arguments[] = {orEmpty(arg0), orEmpty(arg1)};
  const std::string& format = getMessageCatalog()[key];
  if (!format.empty()) return substitute(format, arguments);

  zyl::detail::trace("Message ID:", key.c_str(), " not found in messages catalog");
  const std::string_view fallback[] = {key, arguments[0], arguments[1]};
  return substitute("%s (%s;%s)", fallback);
}

std::map<std::string, std::string>& ZylKvlDefaultMessageHandler::getMessageCatalog() {
  if (!_catalogLoaded) {
    for (const zyl::detail::CatalogRow& row : zyl::detail::catalogRows()) {
      _catalog[row.id] = fixPlaceHolders(row.text);
    }
    _catalogLoaded = true;
  }
  return _catalog;
}

std::string ZylKvlDefaultMessageHandler::fixPlaceHolders(std::string text) {
  for (std::size_t i = text.find('%'); i != std::string::npos; i = text.find('%', i + 1)) {
    if (i + 1 == text.size()) break;
    char& next = text[i + 1];
    if (next == '0' || next == '1') next = 's';
  }
  return text;
}

std::list<std::string>& ZylKvlDefaultMessageHandler::getReportedMessages() {
  return _reportedMessages;
}
