// Symbols and their table: one object for each text.

#include "vorlane/env/symbol.h"

#include <cstring>
#include <ostream>

ZYL_TYPE_DEF(ZylSymbolI, ZylKvlBaseObjectI)

ZylSymbolI::ZylSymbolI(ZylEnvI* env, const char* text)
    : ZylKvlBaseObjectI(env), _text(env->strDup(text)) {}

ZylSymbolI::~ZylSymbolI() { _env->strFree(_text); }

bool ZylSymbolI::isSymbol() const { return true; }

void ZylSymbolI::display(std::ostream& stream) const {
  stream << (_text != nullptr ? _text : "(null)");
}

std::ostream& operator<<(std::ostream& stream, const ZylSymbol& symbol) {
  if (symbol.getImpl() == nullptr) ZylRaiseEmptyHandle();
  symbol.getImpl()->display(stream);
  return stream;
}

namespace {

// The message in storage that the exception deletes.
class Message {
 public:
  explicit Message(const char* text) {
    const char* shown = text != nullptr ? text : "?";
    const std::size_t size = std::strlen(Prefix) + std::strlen(shown) + 1;
    _text = static_cast<char*>(zyl::detail::allocateGlobal(size));
    std::strcpy(_text, Prefix);  // NOLINT: sized for both
    std::strcat(_text, shown);   // NOLINT
  }
  ~Message() { zyl::detail::releaseGlobal(_text); }
  Message(const Message&) = delete;
  Message& operator=(const Message&) = delete;
  const char* get() const { return _text; }

 private:
  static constexpr const char* Prefix = "Access undefined symbol: ";
  char* _text;
};

}  // namespace

ZylUndefinedSymbol::ZylUndefinedSymbol(const char* text) : ZylException(Message(text).get(), 1) {}

ZylSymbolTable::ZylSymbolTable(const ZylMemoryManager& manager, long buckets)
    : ZylStringHashTable<ZylSymbolI*>(manager.getImpl(), buckets) {}

ZylSymbolTable::ZylSymbolTable(const ZylEnv& env, long buckets)
    : ZylSymbolTable(env.getMemoryManager(), buckets) {}

ZylSymbolTable::~ZylSymbolTable() {
  forEach([](const char*, ZylSymbolI* symbol) { delete symbol; });
}

ZylSymbolI* ZylSymbolTable::make(const char* text) {
  if (text == nullptr) return nullptr;
  if (ZylSymbolI* const* known = find(text)) return *known;
  ZylEnvI* env = getEnv();
  auto* symbol = new (env) ZylSymbolI(env, text);
  try {
    add(symbol->getText(), symbol);
  } catch (...) {
    delete symbol;
    throw;
  }
  return symbol;
}

ZylSymbolI* ZylSymbolTable::get(const char* text) const {
  if (text == nullptr) return nullptr;
  ZylSymbolI* const* known = find(text);
  if (known == nullptr) throw ZylUndefinedSymbol(text);
  return *known;
}
