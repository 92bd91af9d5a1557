// Interned strings.

#ifndef ZYL_ENV_SYMBOL_H
#define ZYL_ENV_SYMBOL_H

#include <iosfwd>

#include "vorlane/env/hash_table.h"

/// An interned string: two symbols of one environment are equal exactly if their pointers are.
class ZYL_EXPORT ZylSymbolI final : public ZylKvlBaseObjectI {
  ZYL_TYPE(ZylSymbolI, ZylKvlBaseObjectI)
 public:
  /// Copies the text into the pools.
  ZylSymbolI(ZylEnvI* env, const char* text);
  ~ZylSymbolI() override;
  bool isSymbol() const override;
  /// Writes the text, "(null)" if there is none.
  void display(std::ostream& stream) const;
  const char* getText() const noexcept { return _text; }

 private:
  char* _text;
};

/// Handle of a symbol.
class ZYL_EXPORT ZylSymbol {
 public:
  using ImplClass = ZylSymbolI;
  ZylSymbol() = default;
  explicit ZylSymbol(ZylSymbolI* impl) noexcept : _impl(impl) {}
  ZylSymbolI* getImpl() const noexcept { return _impl; }
  const char* getString() const {
    if (_impl == nullptr) ZylRaiseEmptyHandle();
    return _impl->getText();
  }

 private:
  ZylSymbolI* _impl = nullptr;
};

ZYL_EXPORT std::ostream& operator<<(std::ostream& stream, const ZylSymbol& symbol);

/// A text is no symbol of the environment.
class ZYL_EXPORT ZylUndefinedSymbol : public ZylException {
 public:
  explicit ZylUndefinedSymbol(const char* text);
};

/// The symbols of an environment, by their texts.
class ZYL_EXPORT ZylSymbolTable final : public ZylStringHashTable<ZylSymbolI*> {
 public:
  ZylSymbolTable(const ZylMemoryManager& manager, long buckets);
  ZylSymbolTable(const ZylEnv& env, long buckets);
  ~ZylSymbolTable() override;

  /// Returns the symbol of the text, making it on the first call. Raises `ZylMemoryException`.
  ZylSymbolI* make(const char* text);
  /// Returns the symbol of the text, null for null. Raises `ZylUndefinedSymbol`.
  ZylSymbolI* get(const char* text) const;
};

#endif
