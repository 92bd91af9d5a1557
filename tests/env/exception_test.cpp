// The root of the exceptions.

#include "vorlane/env/exception.h"

#include <memory>
#include <sstream>
#include <string>

#include "support/support.h"

namespace zyl::test {
namespace {

TEST(ZylException, KeepsOrCopiesItsText) {
  char text[] = "text";
  const ZylException kept(text, 0);
  const ZylException copied(text, 1);
  text[0] = 'T';
  EXPECT_STREQ(kept.getMessage(), "Text");
  EXPECT_STREQ(copied.getMessage(), "text");
  EXPECT_STREQ(ZylException().getMessage(), "");
  EXPECT_STREQ(ZylException(nullptr, 1).getMessage(), "");
}

TEST(ZylException, CopiesOwnTheirTexts) {
  auto source = std::make_unique<ZylWrongUsage>("first", 1);
  ZylWrongUsage copy(*source);
  ZylWrongUsage assigned("second", 1);
  assigned = *source;
  ZylWrongUsage& self = assigned;
  assigned = self;
  source.reset();
  EXPECT_STREQ(copy.getMessage(), "first");
  EXPECT_STREQ(assigned.getMessage(), "first");
  assigned = ZylWrongUsage("literal");
  EXPECT_STREQ(assigned.getMessage(), "literal");
}

TEST(ZylException, StreamsByItsPrint) {
  struct Own : ZylException {
    Own() : ZylException("message") {}
    void print(std::ostream& stream) const override { stream << "<" << getMessage() << ">"; }
  };
  std::ostringstream stream;
  const ZylException& base = Own();
  stream << base << ZylQuietException("quiet");
  EXPECT_EQ(stream.str(), "<message>quiet");
}

TEST(ZylException, TextsThatNothingElseShows) {
  EXPECT_STREQ(ZylEmptyHandleException().getMessage(), "Using empty handle.");
  EXPECT_STREQ(ZylBadConversion().getMessage(),
               "Bad Conversion between an integer object and a numeric object.");
  EXPECT_STREQ(ZylNotImplemented().getMessage(), "Feature Not Implemented.");
  EXPECT_STREQ(ZylEnv::AbortException().getMessage(), "ZylEnv has been requested to abort.");
  EXPECT_STREQ(ZylNotImplemented("own").getMessage(), "own");
}

TEST(ZylCopyString, CopiesOnDemand) {
  const char* text = "text";
  EXPECT_EQ(ZylCopyString(text, 0), text);
  EXPECT_EQ(ZylCopyString(nullptr, 1), nullptr);
  char* copy = ZylCopyString(text, 1);
  EXPECT_NE(copy, text);
  EXPECT_STREQ(copy, "text");
  delete[] copy;
  FailingAllocator failing(1);
  EXPECT_THROW(static_cast<void>(ZylCopyString(text, 1)), ZylMemoryException);
}

}  // namespace
}  // namespace zyl::test
