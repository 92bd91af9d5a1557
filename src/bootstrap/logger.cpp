#include "vorlane/bootstrap/logger.h"

#include <algorithm>
#include <iostream>

namespace zyl::detail {

TraceIndent::~TraceIndent() {
  delete _text;
  _text = nullptr;
}

void TraceIndent::append(const char* text) {
  if (_text == nullptr) _text = new std::string;
  *_text += text;
}

void TraceIndent::shorten(std::size_t count) noexcept {
  if (_text != nullptr) _text->resize(_text->size() - std::min(count, _text->size()));
}

const char* TraceIndent::text() const noexcept { return _text == nullptr ? "" : _text->c_str(); }

}  // namespace zyl::detail

constinit bool ZylKvlLogger::_enabled = false;
// NOLINTNEXTLINE(fuchsia-statically-constructed-objects): constinit
constinit zyl::detail::TraceIndent ZylKvlLogger::_currentIndent;

void ZylKvlLogger::log(const char* a, const char* b, const char* c, const char* d, const char* e) {
  std::cerr << _currentIndent.text() << a;
  for (const char* piece : {b, c, d, e}) {
    if (piece != nullptr) std::cerr << piece;
  }
  std::cerr << std::endl;
}

TraceMethod::TraceMethod(const char* method, const char* arg1, const char* arg2) {
  if (!ZylKvlLogger::_enabled) return;
  std::string line = std::string("Entering ") + method;
  if (arg1 != nullptr) line += std::string(" with ") + arg1;
  if (arg2 != nullptr) line += std::string(";") + arg2;
  ZylKvlLogger::log(line.c_str());
  ZylKvlLogger::_currentIndent.append("--");
}

TraceMethod::~TraceMethod() {
  if (!ZylKvlLogger::_enabled) return;
  ZylKvlLogger::_currentIndent.shorten(2);
  try {
    ZylKvlLogger::log("Exiting method");
  } catch (...) {
    // A stream that raises must not end the process from a destructor.
  }
}
