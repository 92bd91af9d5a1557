// What every extractable class keeps, one row a class: type and text, parts in order, clones, death
// with what it refers to, failing allocations, refusing engines.

#include <algorithm>
#include <set>

#include "expr/node_rows.h"
#include "support/index.h"
#include "support/recording.h"
#include "support/support.h"
#include "vorlane/vorlane.h"

namespace zyl::test {
namespace {

struct World {
  World() = default;
  ~World() { env.end(); }
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  long liveObjects() const {
    long count = 0;
    for (ZylIdManager::Iterator it(*env.getImpl()->getIdManager()); it.ok(); ++it) ++count;
    return count;
  }
  ZylNumVarArray leaves() const { return ZylNumVarArray(env, 4, x, y, ZylNumVar(i), ZylNumVar(j)); }

  ZylEnv env;
  ZylNumVar x{env, 0, 10, "x"};
  ZylNumVar y{env, 0, 10, "y"};
  ZylIntVar i{env, 0, 5, "i"};
  ZylIntVar j{env, -9, 9, "j"};
  Operands operands{env, x, y, i, j};
  ZylRange range{env, 1, 2 * x + y, 5, "range"};  // of the client, as are the variables
};

/// How an object takes the removal of its parts: it goes with any of the first `essential` ones.
constexpr long All = 1000;

struct Row {
  const char* name;
  std::function<ZylExtractable(World&)> make;
  const char* text;  // {id} for the object's own id; null where another test has it
  std::string parts;
  long essential = All;
  bool keepsName = false;
  bool cloneDiffers = false;
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.name; }

template <class Impl, class... Arguments>
ZylExtractable made(const World& world, Arguments... arguments) {
  return ZylExtractable(new (world.env.getImpl()) Impl(world.env.getImpl(), arguments...));
}

ZylComprehensionI* comprehension(const World& world) {
  ZylEnvI* env = world.env.getImpl();
  ZylGeneratorI* index = new (env) Index(env);
  index->suchThat(1);
  return new (env) ZylComprehensionI(env, 1, &index);
}

ZylExtractable forAll(const World& world) {
  return ZylExtractable(new (world.env.getImpl())
                            ZylForAllI(comprehension(world), world.range.getImpl()));
}

const Row ObjectRows[] = {
    {"ZylNumVarI", [](World& w) { return ZylNumVar(w.env, 0, 1, "v"); }, "@[0..1] ", "", 0, true},
    {"ZylSemiContVarI", [](World& w) { return ZylSemiContVar(w.env, 2, 5, ZylNumVar::Float, "s"); },
     "ZylSemiContI (@)\ns[0..5]   _threshold 2\n", "", 0, false, /*cloneDiffers=*/true},
    {"ZylConstraintIndVarI", [](World& w) { return ZylNumVar(w.range); }, "1 <= 2 * x  + y  <= 5 ",
     "range"},
    {"ZylNumLinTermI",
     [](World& w) { return ZylExtractable((2 * w.x + 3 * w.y + ZylAbs(w.x) + 1).getImpl()); },
     "2 * x  + 3 * y  + abs(x[0..10] ) + 1 ", "- x y", 0},
    {"ZylIntLinTermI",
     [](World& w) { return ZylExtractable((2 * w.i - w.j + ZylAbs(w.i) + 1).getImpl()); },
     "2 * i  + -1 * j  + abs(i[0..5] ) + 1 ", "- i j", 0},
    {"ZylConversionI",
     [](World& w) { return ZylConversion(w.env, w.leaves(), ZylNumVar::Int, "c"); },
     "ZylConversionI (@)\n  vars [x[0..10] , y[0..10] , i[0..5] , j[-9..9] ]\n  type 1\n",
     "x y i j", 0},
    {"ZylObjectiveI", [](World& w) { return ZylMaximize(w.env, w.x + w.y); },
     "obj@ = (x  + y , ZylObjective, Maximize);\n", "-"},
    {"ZylModelI",
     [](World& w) {
       ZylModel model(w.env);
       model.add(w.x);
       model.add(w.range);
       return model;
     },
     "ZylModel model@ = {\nx[0..10] \n1 <= 2 * x  + y  <= 5 \n}\n", "x range", 0},
    {"ZylRangeI", [](World& w) { return w.x + w.y <= 4; }, "x  + y  <= 4 ", "-"},
    {"ZylConstConstraintI", [](World& w) { return made<ZylConstConstraintI>(w, 1L); },
     "TrueConstraint ", ""},
    {"ZylNumEqI", [](World& w) { return w.x == w.y; }, "x[0..10]  == y[0..10] ", "x y"},
    {"ZylNumLeI", [](World& w) { return w.x <= w.y; }, "x[0..10]  <= y[0..10] ", "x y"},
    {"ZylNumGeI", [](World& w) { return w.x >= w.y; }, "x[0..10]  >= y[0..10] ", "x y"},
    {"ZylNumLTI", [](World& w) { return w.i < w.j; }, "i[0..5]  < j[-9..9] ", "i j"},
    {"ZylNumGTI", [](World& w) { return w.i > w.j; }, "i[0..5]  > j[-9..9] ", "i j"},
    {"ZylComprehensionI", [](World& w) { return ZylExtractable(comprehension(w)); },
     "i in 1..3 / (TrueConstraint )", "-"},
    {"ZylForAllI", [](World& w) { return forAll(w); },
     "Forall( i in 1..3 / (TrueConstraint ) | 1 <= 2 * x  + y  <= 5  )", "- range"},
    {"ZylForAllRangeI",
     [](World& w) {
       return made<ZylForAllRangeI>(w, static_cast<ZylForAllI*>(forAll(w).getImpl()), 2L);
     },
     "ZylForAllRange(Forall( i in 1..3 / (TrueConstraint ) | 1 <= 2 * x  + y  <= 5  ), 2)", ""},
};

// Only named as bases, or made by nobody but a front end.
const std::set<std::string> Abstract = {"ZylExtractableI", "ZylNumExprI",
                                        "ZylIntExprI",     "ZylConstraintI",
                                        "ZylGeneratorI",   "ZylBinaryNumConstraintI"};

std::vector<Row> rows() {
  std::vector<Row> result(std::begin(ObjectRows), std::end(ObjectRows));
  for (const NodeRow& node : NodeRows) {
    const std::string name = node.name;
    const bool shrinks = name.find("ArrayI") != std::string::npos ||
                         name.find("ExprArrayElementI") != std::string::npos;
    const long essential = !shrinks ? All : name.find("Element") != std::string::npos ? 1 : 0;
    result.push_back(
        {node.name, [&node](World& w) { return node.make(w.operands); }, nullptr, "*", essential});
  }
  return result;
}

struct Parts : ZylExtractableVisitor {
  explicit Parts(ZylExtractableI* object) { object->visitSubExtractables(this); }
  using ZylExtractableVisitor::visitChildren;
  void beginVisit(ZylExtractableI*) override { ++begun; }
  void visitChildren(ZylExtractableI*, ZylExtractableI* child) override {
    EXPECT_NE(child, nullptr);
    list.push_back(child);
  }
  void endVisit(ZylExtractableI*) override { ++ended; }
  std::vector<ZylExtractableI*> list;
  long begun = 0;
  long ended = 0;
};

class Contract : public testing::TestWithParam<Row> {
 protected:
  Contract() {
    object = GetParam().make(world);
    // A temporary is kept as a client keeps it.
    if (ZylNumExprI* expr = counted()) expr->hold();
    if (auto* over = zyl::as<ZylComprehensionI>(object.getImpl())) over->hold();
  }
  ZylNumExprI* counted() const {
    auto* expr = zyl::as<ZylNumExprI>(object.getImpl());
    return expr != nullptr && expr->isRefCountedExpr() ? expr : nullptr;
  }
  static bool isAlive(const World& world, long id) {
    return !world.env.getImpl()->getIdManager()->isFree(id);
  }
  // The text, without what an object's own name or id makes of it.
  static std::string anonymous(const ZylExtractableI* object) {
    std::string text = displayed(object);
    const auto replace = [&text](const std::string& own, const char* by) {
      const auto at = text.find(own);
      if (at != std::string::npos) text.replace(at, own.size(), by);
    };
    if (object->getName() != nullptr) replace(object->getName(), "@");
    for (const std::string before : {"(", "obj", "model"}) {
      replace(before + std::to_string(object->getId()), (before + "@").c_str());
    }
    // Most clones have no name, the range of the client's neither.
    replace("range: ", "");
    return text;
  }
  static const Row& rowOf(const ZylExtractableI* object) {
    static const std::vector<Row> Table = rows();
    return *std::find_if(Table.begin(), Table.end(), [&](const Row& row) {
      return std::string(row.name) == object->getRttiTypeName();
    });
  }
  // The law: what goes takes along all to which it is essential.
  static bool goesWith(ZylExtractableI* part, const std::set<const ZylExtractableI*>& gone) {
    if (gone.count(part) != 0) return true;
    if (std::string(part->getRttiTypeName()) == "Index") return false;
    const Parts parts(part);
    const long essential = rowOf(part).essential;
    for (long k = 0; k < static_cast<long>(parts.list.size()) && k < essential; ++k) {
      if (goesWith(parts.list[static_cast<std::size_t>(k)], gone)) return true;
    }
    return false;
  }

  World world;
  ZylExtractable object;
};

TEST_P(Contract, IsOfItsClassAndShowsItsParts) {
  EXPECT_STREQ(object.getImpl()->getRttiTypeName(), GetParam().name);
  const Parts parts(object.getImpl());
  EXPECT_EQ(parts.begun, 1);
  EXPECT_EQ(parts.ended, 1);
  std::string names;
  for (const ZylExtractableI* part : parts.list) {
    names += (names.empty() ? "" : " ");
    names += part->getName() != nullptr ? part->getName() : "-";
  }
  if (GetParam().parts != "*") {
    EXPECT_EQ(names, GetParam().parts);
  }
  if (GetParam().text == nullptr) return;
  EXPECT_EQ(anonymous(object.getImpl()), GetParam().text);
}

TEST_P(Contract, ClonesIntoItsOwnAndAnotherEnvironment) {
  EnvFixture other;
  for (ZylEnvI* target : {world.env.getImpl(), other.impl}) {
    const ZylExtractableI* clone = target->getClone(object.getImpl());
    ASSERT_NE(clone, object.getImpl());
    EXPECT_EQ(clone->getEnv(), target);
    EXPECT_STREQ(clone->getRttiTypeName(), GetParam().name);
    if (!GetParam().cloneDiffers) {
      EXPECT_EQ(anonymous(clone), anonymous(object.getImpl()));
    }
    if (GetParam().keepsName) {
      EXPECT_STREQ(clone->getName(), object.getName());
    } else {
      EXPECT_EQ(clone->getName(), nullptr);
    }
    const Parts parts(object.getImpl());
    const Parts copies(const_cast<ZylExtractableI*>(clone));  // NOLINT: visited, not changed
    ASSERT_EQ(copies.list.size(), parts.list.size());
    for (std::size_t k = 0; k < parts.list.size(); ++k) {
      EXPECT_EQ(copies.list[k]->getEnv(), target);
      EXPECT_NE(copies.list[k], parts.list[k]);
    }
  }
}

// Within one round of cloning, what is known already is shared.
TEST_P(Contract, SharesWhatIsClonedAlready) {
  ZylEnvI* env = world.env.getImpl();
  env->getCloneManager()->lock();
  const Parts parts(object.getImpl());
  for (ZylExtractableI* part : parts.list) env->setClone(part, part);
  ZylExtractableI* clone = env->getClone(object.getImpl());
  EXPECT_EQ(env->getClone(object.getImpl()), clone);
  EXPECT_EQ(Parts(clone).list, parts.list);
  env->getCloneManager()->unlock();
}

TEST_P(Contract, GoesWithWhatItRefersTo) {
  const std::vector<std::set<int>> batches = {{0}, {1}, {2}, {3}, {4}, {0, 1, 2, 3}};
  for (const auto& batch : batches) {
    World fresh;
    const ZylExtractable each[] = {fresh.x, fresh.y, fresh.i, fresh.j, fresh.range};
    ZylExtractableI* const subject = GetParam().make(fresh).getImpl();
    if (auto* expr = zyl::as<ZylNumExprI>(subject)) expr->hold();
    if (auto* over = zyl::as<ZylComprehensionI>(subject)) over->hold();
    ZylExtractableArray removed(fresh.env);
    std::set<const ZylExtractableI*> gone;
    for (const int k : batch) {
      removed.add(each[k]);
      gone.insert(each[k].getImpl());
    }
    const bool goes = goesWith(subject, gone);
    const long id = subject->getId();
    std::vector<ZylExtractableI*> staying;
    for (ZylExtractableI* part : Parts(subject).list) {
      if (!goesWith(part, gone)) staying.push_back(part);
    }
    fresh.env.getImpl()->removeFromAllAndDestroy(removed, 0);
    EXPECT_NE(isAlive(fresh, id), goes) << "part " << *batch.begin() << " of " << batch.size();
    if (!goes) {
      EXPECT_EQ(Parts(subject).list, staying);
    }
  }
}

TEST_P(Contract, GivesAllBackThatItsMakingTook) {
  World fresh;
  const long before = fresh.liveObjects();
  ZylExtractable subject = GetParam().make(fresh);
  ZylExtractableI* const forAllOf =
      std::string(GetParam().name) == "ZylForAllRangeI"
          ? static_cast<ZylForAllRangeI*>(subject.getImpl())->getForAll()
          : nullptr;
  subject.removeFromAll();
  subject.end();
  if (forAllOf != nullptr) forAllOf->end();
  // The filter of a generator is the client's.
  const bool hasFilter = GetParam().name == std::string("ZylComprehensionI") ||
                         GetParam().name == std::string("ZylForAllI") || forAllOf != nullptr;
  EXPECT_EQ(fresh.liveObjects(), before + (hasFilter ? 1 : 0));
}

TEST_P(Contract, LeavesItsPartsWholeWhenMemoryIsOut) {
  const std::string text = displayed(world.range) + displayed(world.x);
  FailEachAllocation(
      world.env.getImpl(), [&] { GetParam().make(world); },
      [&] { EXPECT_EQ(displayed(world.range) + displayed(world.x), text); });
  EnvFixture other;
  FailEachAllocation(
      [&] {
        useUpPools(other.impl);
        return &other;
      },
      [&](EnvFixture&) { other->getClone(object.getImpl()); }, [](EnvFixture&) {});
}

TEST_P(Contract, OutlivesTheRefusalsOfEngines) {
  auto* engine = new RecordingAlgorithm(world.env.getImpl());
  ZylModel model(world.env);
  model.add(object);
  engine->refuse(GetParam().name);
  EXPECT_THROW(engine->load(model.getImpl()), ZylAlgorithm::CannotExtractException);
  engine->acceptAll();
  engine->onExtract = [](const ZylExtractableI&) { throw ZylWrongUsage("no"); };
  EXPECT_THROW(engine->load(model.getImpl()), ZylWrongUsage);
  engine->onExtract = nullptr;
  engine->load(model.getImpl());
  engine->refusesRemoval = true;
  try {
    model.remove(object);
  } catch (const ZylException&) {
    // The model has let go of it all the same.
  }
  EXPECT_EQ(Parts(model.getImpl()).list.size(), 0U);
  EXPECT_STREQ(object.getImpl()->getRttiTypeName(), GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(Classes, Contract, testing::ValuesIn(rows()),
                         [](const auto& row) { return std::string(row.param.name); });

struct ClassFact {
  const char* name;
  bool isExtractable;
};

TEST(ContractRows, StandForEachClass) {
  std::set<std::string> tested;
  for (const Row& row : rows()) tested.insert(row.name);
  const ClassFact facts[] = {
#define ZYL_CLASS(Class, Base) {#Class, std::is_base_of_v<ZylExtractableI, Class>},
#include "support/classes.inc"
#undef ZYL_CLASS
  };
  for (const ClassFact& fact : facts) {
    const bool wanted = fact.isExtractable && Abstract.count(fact.name) == 0;
    EXPECT_EQ(tested.count(fact.name), wanted ? 1U : 0U) << fact.name;
  }
}

}  // namespace
}  // namespace zyl::test
