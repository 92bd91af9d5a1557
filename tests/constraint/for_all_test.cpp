#include "vorlane/constraint/for_all.h"

#include "expr/fixture.h"
#include "support/index.h"
#include "vorlane/constraint/for_all_change.h"

namespace zyl::test {
namespace {

using ZylForAll = ExprTest;

TEST_F(ZylForAll, NestsAndShows) {
  const ZylRange inner = x <= 3;
  ZylGeneratorI* index = new (impl) Index(impl);
  index->suchThat((x >= 1).getImpl())->suchThat(1);
  auto* over = new (impl) ZylComprehensionI(impl, 1, &index);
  auto* once = new (impl) ZylForAllI(over, inner.getImpl());
  auto* twice = new (impl) ZylForAllI(over, once);
  EXPECT_EQ(twice->getInnerConstraint(), inner.getImpl());
  const std::string head = "Forall( i in 1..3 / (1 <= x   && TrueConstraint ) | ";
  EXPECT_TRUE(DisplaysAs(ZylConstraint(twice), head + head + "x  <= 3  ) )"));

  ZylForAllRange third(env, once, 2);
  EXPECT_TRUE(
      RaisesWith<ZylWrongUsage>([&] { ZylForAllRange{inner}; },
                                "Cannot create an ZylForAllRange instance with this constraint"));
  values->extract(once);
  values->log.clear();
  third.setUB(4);
  third.setLinearCoef(x, 2);
  ASSERT_EQ(values->log.size(), 2U);
  EXPECT_EQ(values->log[0], "apply ZylSetForAllRangeUB");
  EXPECT_EQ(values->lastTarget, once);
  third.end();

  // Counted: the generator dies with the last that ranges over it.
  Index::died = 0;
  ZylExtractable(twice).end();
  EXPECT_EQ(Index::died, 0);
  ZylExtractable(once).end();
  EXPECT_EQ(Index::died, 1);
}

}  // namespace
}  // namespace zyl::test
