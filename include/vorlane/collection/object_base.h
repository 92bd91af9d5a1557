// One element of a collection, of whatever type.

#ifndef ZYL_COLLECTION_OBJECT_BASE_H
#define ZYL_COLLECTION_OBJECT_BASE_H

#include <concepts>
#include <iosfwd>

#include "vorlane/env/symbol.h"

/// A value with its kind: what type-less access to collections gives and takes.
///
/// A plain value of two words, copied freely. It owns nothing: addresses, symbols and texts must
/// outlive it.
class ZYL_EXPORT ZylObjectBase {
 public:
  /// What the value is.
  enum class Kind : int { None, Int, Num, Any, Symbol, String };

  /// Holds nothing.
  ZylObjectBase() noexcept : _kind(Kind::None), _any(nullptr) {}
  explicit ZylObjectBase(std::integral auto value) noexcept
      : _kind(Kind::Int), _int(static_cast<long>(value)) {}
  explicit ZylObjectBase(double value) noexcept : _kind(Kind::Num), _num(value) {}
  explicit ZylObjectBase(void* value) noexcept : _kind(Kind::Any), _any(value) {}
  explicit ZylObjectBase(ZylSymbol value) noexcept
      : _kind(Kind::Symbol), _symbol(value.getImpl()) {}
  explicit ZylObjectBase(const char* value) noexcept : _kind(Kind::String), _string(value) {}

  Kind getKind() const noexcept { return _kind; }
  bool isInt() const noexcept { return _kind == Kind::Int; }
  bool isNum() const noexcept { return _kind == Kind::Num; }
  bool isAny() const noexcept { return _kind == Kind::Any; }
  bool isSymbol() const noexcept { return _kind == Kind::Symbol; }
  bool isString() const noexcept { return _kind == Kind::String; }

  /// The value, if it is of the kind asked for: nothing is converted. Each raises `ZylWrongUsage`
  /// for another kind.
  long getInt() const {
    require(Kind::Int, "ZylObjectBase::getInt: the value is no integer");
    return _int;
  }
  double getNum() const {
    require(Kind::Num, "ZylObjectBase::getNum: the value is no number");
    return _num;
  }
  void* getAny() const {
    require(Kind::Any, "ZylObjectBase::getAny: the value is no object");
    return _any;
  }
  ZylSymbol getSymbol() const {
    require(Kind::Symbol, "ZylObjectBase::getSymbol: the value is no symbol");
    return ZylSymbol(_symbol);
  }
  const char* getString() const {
    require(Kind::String, "ZylObjectBase::getString: the value is no text");
    return _string;
  }
  /// Writes the number, the address or the text; nothing for no value.
  void display(std::ostream& stream) const;

 private:
  void require(Kind kind, const char* text) const {
    if (_kind != kind) ZylRaiseWrongUsage(text);
  }

  Kind _kind;
  union {
    long _int;
    double _num;
    void* _any;
    ZylSymbolI* _symbol;
    const char* _string;
  };
};

ZYL_EXPORT std::ostream& operator<<(std::ostream& stream, const ZylObjectBase& value);

#endif
