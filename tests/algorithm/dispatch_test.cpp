// The tables by which engines tell classes apart.

#include "vorlane/algorithm/dispatch.h"

#include "support/recording.h"
#include "support/support.h"
#include "vorlane/engine.h"

namespace zyl::test {
namespace {

// A class that nobody listed, and whose type index nobody asks for.
class LaterVar final : public ZylNumVarI {
  ZYL_EXTRACTABLE(LaterVar, ZylNumVarI)
 public:
  using ZylNumVarI::ZylNumVarI;
};
ZYL_EXTRACTABLE_DEF(LaterVar, ZylNumVarI)

struct Engine {
  Log log;
  int variable = 0;
  double row = 0.0;

  int* takeVariable(const ZylNumVarI* object) {
    log.push_back(std::string("variable ") + object->getRttiTypeName());
    return &variable;
  }
  void releaseVariable(const ZylNumVarI*, int* handle) {
    log.push_back(handle == &variable ? "gone" : "lost");
  }
  double* takeRow(const ZylConstraintI* object) {
    log.push_back(std::string("row ") + object->getRttiTypeName());
    return refuses ? nullptr : &row;
  }
  void releaseRow(const ZylConstraintI*, double*) {}
  bool bounds(const ZylSetNumVarBounds& change, int* handle) {
    *handle = static_cast<int>(change.getUB());
    return change.getUB() < 100;
  }
  bool rangeBounds(const ZylSetRangeBounds&, double* handle) { return handle == &row; }
  bool refuses = false;
};

using ZylEngineTable = EnvTest;

TEST_F(ZylEngineTable, FindsAClassOrItsNearestListedBase) {
  const auto table =
      EngineTable<Engine>()
          .take<ZylNumVarI>(&Engine::takeVariable, &Engine::releaseVariable)
          .take<ZylConstraintI>(&Engine::takeRow, &Engine::releaseRow)
          .takeExactly<ZylBinaryNumConstraintI>(&Engine::takeRow, &Engine::releaseRow)
          .on<ZylSetNumVarBounds>(&Engine::bounds)
          .on<ZylSetRangeBounds>(&Engine::rangeBounds);
  Engine engine;
  const ZylNumVar x(env, 0, 1, "x");
  const ZylNumVar later(new (impl) LaterVar(impl, 0.0, 1.0, zyl::Float));
  const ZylRange range = x <= 1;
  void* handle = nullptr;
  EXPECT_TRUE(table.extract(&engine, later.getImpl(), &handle));
  EXPECT_EQ(handle, &engine.variable);
  EXPECT_TRUE(table.remove(&engine, later.getImpl(), handle));
  EXPECT_TRUE(table.extract(&engine, range.getImpl(), &handle));
  EXPECT_EQ(engine.log, (Log{"variable LaterVar", "gone", "row ZylRangeI"}));
  // Not below an entry for one class alone, nor where nothing is listed.
  EXPECT_FALSE(table.extract(&engine, (x <= later).getImpl(), &handle));
  EXPECT_FALSE(table.extract(&engine, ZylSquare(x).getImpl(), &handle));
  EXPECT_FALSE(table.remove(&engine, ZylModel(env).getImpl(), nullptr));
  engine.refuses = true;
  EXPECT_FALSE(table.extract(&engine, range.getImpl(), &handle));

  const ZylSetNumVarBounds followed(x.getImpl(), 0, 7);
  EXPECT_TRUE(table.apply(&engine, &followed, &engine.variable));
  EXPECT_EQ(engine.variable, 7);
  const ZylSetNumVarBounds refused(x.getImpl(), 0, 700);
  EXPECT_FALSE(table.apply(&engine, &refused, &engine.variable));
  const ZylSetRangeBounds bounds(range.getImpl(), 0, 1);
  EXPECT_TRUE(table.apply(&engine, &bounds, &engine.row));
  const ZylSetRangeCoef unknown(range.getImpl(), x.getImpl(), 1, 2);
  EXPECT_FALSE(table.apply(&engine, &unknown, &engine.row));
}

TEST_F(ZylEngineTable, TakesTheLastEntryOfAClass) {
  Engine engine;
  const auto table = EngineTable<Engine>()
                         .take<ZylNumVarI>(&Engine::takeVariable, &Engine::releaseVariable)
                         .takeExactly<ZylNumVarI>(&Engine::takeVariable, &Engine::releaseVariable);
  void* handle = nullptr;
  EXPECT_TRUE(table.extract(&engine, ZylNumVar(env, 0, 1).getImpl(), &handle));
  EXPECT_FALSE(table.extract(&engine, new (impl) LaterVar(impl, 0.0, 1.0, zyl::Float), &handle));
}

}  // namespace
}  // namespace zyl::test
