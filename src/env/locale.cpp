#include "vorlane/env/locale.h"

#include <clocale>
#include <cstdlib>
#include <cstring>

#include "vorlane/env/exception.h"

ZylScopedSetLocale::ZylScopedSetLocale(int category, const char* locale)
    : _category(category), _saved(nullptr) {
  const char* current = std::setlocale(category, nullptr);
  if (current == nullptr || std::strcmp(current, locale) == 0) return;
  _saved = strdup(current);
  if (_saved == nullptr) ZylRaiseMemory();
  std::setlocale(category, locale);
}

ZylScopedSetLocale::~ZylScopedSetLocale() {
  if (_saved == nullptr) return;
  std::setlocale(_category, _saved);
  std::free(_saved);  // NOLINT: from strdup
}
