// A locale for the length of a scope.

#ifndef ZYL_ENV_LOCALE_H
#define ZYL_ENV_LOCALE_H

#include "vorlane/env/export.h"

/// Sets the process's locale of a category, and sets it back at the end of the scope. Process-wide:
/// not safe while other threads depend on the locale.
class ZYL_EXPORT ZylScopedSetLocale {
 public:
  /// Changes nothing if `locale` is in force already. Raises `ZylMemoryException`.
  ZylScopedSetLocale(int category, const char* locale);
  ~ZylScopedSetLocale();
  ZylScopedSetLocale(const ZylScopedSetLocale&) = delete;
  ZylScopedSetLocale& operator=(const ZylScopedSetLocale&) = delete;

 private:
  int _category;
  char* _saved;
};

#endif
