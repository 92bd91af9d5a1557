// Interned strings.

#include "vorlane/env/symbol.h"

#include <set>
#include <sstream>
#include <string>

#include "support/support.h"

namespace zyl::test {
namespace {

class ZylSymbols : public EnvTest {};

TEST_F(ZylSymbols, OneForEachText) {
  std::set<const ZylSymbolI*> symbols;
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 300; ++i) symbols.insert(env.makeSymbol(("s" + std::to_string(i)).c_str()));
    EXPECT_EQ(symbols.size(), 300U);
  }
  char text[] = "own copy";
  const ZylSymbolI* symbol = env.makeSymbol(text);
  text[0] = 'X';
  EXPECT_STREQ(symbol->getText(), "own copy");
  EXPECT_EQ(impl->intern("own copy"), symbol->getText());
  EXPECT_TRUE(symbol->isSymbol());
  EXPECT_TRUE(DisplaysAs(symbol, "own copy"));
}

TEST_F(ZylSymbols, UnknownTexts) {
  EXPECT_EQ(env.getSymbol(nullptr), nullptr);
  EXPECT_FALSE(impl->hasSymbol(nullptr));
  EXPECT_FALSE(impl->hasSymbol("absent"));
  EXPECT_TRUE(RaisesWith<ZylUndefinedSymbol>([&] { env.getSymbol("absent"); },
                                             "Access undefined symbol: absent"));
  EXPECT_STREQ(ZylUndefinedSymbol(nullptr).getMessage(), "Access undefined symbol: ?");
}

TEST_F(ZylSymbols, AFailedOneIsNotThere) {
  const char* text = "a text of more than a few words, in a large enough block";
  FailEachAllocation(
      impl, [&] { env.makeSymbol(text); },
      [&] {
        EXPECT_FALSE(impl->hasSymbol(text));
        env.makeSymbol("other");
      });
  FailingAllocator failing(1);
  EXPECT_THROW(env.getSymbol("absent"), ZylMemoryException);
}

TEST_F(ZylSymbols, Handles) {
  EXPECT_THROW(static_cast<void>(ZylSymbol().getString()), ZylEmptyHandleException);
  std::ostringstream stream;
  stream << ZylSymbol(env.makeSymbol("text"));
  EXPECT_EQ(stream.str(), "text");
}

}  // namespace
}  // namespace zyl::test
