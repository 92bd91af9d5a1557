// The life of an extractable: ids, visits, removal.

#include "vorlane/model/extractable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/probe.h"
#include "support/recording.h"
#include "support/support.h"
#include "vorlane/vorlane.h"

namespace zyl::test {
namespace {

using Names = std::vector<std::string>;

class ZylRemoval : public EnvTest {
 protected:
  ZylRemoval() {
    Probe::Died.clear();
    plugIn = new (impl) RecordingPlugIn(impl, &log);
    impl->getPlugInManager()->add(plugIn, "recorder");
    impl->getPlugInManager()->addNotified(plugIn);
  }
  ~ZylRemoval() override { impl->getPlugInManager()->removeNotified(plugIn); }

  // What must hold after every removal, however it went.
  void expectUsable() {
    plugIn->onChange = nullptr;
    EXPECT_EQ(impl->getRecycleBin(), nullptr);
    const ZylIdManager& ids = *impl->getIdManager();
    for (ZylIdManager::Iterator it(ids); it.ok(); ++it) {
      EXPECT_FALSE(ids.isMarked(*it)) << "slot " << *it;
      if (ZylExtractableI* object = ids.getLive(*it)) {
        EXPECT_EQ(object->getId(), *it);
      }
    }
    const long living = Probe::Living;
    Probe* user = probe(env, nullptr, probe(env));
    user->left->end();
    EXPECT_EQ(Probe::Living, living);
  }
  bool isLive(ZylExtractableI* object, long id) {
    return impl->getIdManager()->getLive(id) == object;
  }

  Log log;
  RecordingPlugIn* plugIn;
};

// The ways to remove: whether the objects themselves end, and whether all go as one array.
struct Form {
  const char* name;
  void (*run)(const ZylExtractableArray& objects);
  bool ends = true;
  bool asArray = true;
};

ZylExtractableI* last(const ZylExtractableArray& array) { return array.getI(array.getSize() - 1); }

const Form Forms[] = {
    {"end", [](const ZylExtractableArray& a) { last(a)->end(); }, true, false},
    {"removeFromAll", [](const ZylExtractableArray& a) { last(a)->removeFromAll(); }, false, false},
    {"removeFromAllOfArray",
     [](const ZylExtractableArray& a) { a.getEnv().getImpl()->removeFromAll(a); }, false},
    {"removeFromAllAndDestroy",
     [](const ZylExtractableArray& a) { a.getEnv().getImpl()->removeFromAllAndDestroy(a, 0); }},
    {"endElements", [](const ZylExtractableArray& a) { a.endElements(); }},
};

TEST_F(ZylRemoval, TakesAlongWhatRefersToIt) {
  for (const Form& form : Forms) {
    SCOPED_TRACE(form.name);
    Probe::Died.clear();
    Probe* leaf = probe(env, "leaf");
    Probe* second = form.asArray ? probe(env, "second") : leaf;
    const long id = leaf->getId();
    probe(env, "top", probe(env, "user", leaf, second));
    ZylModel model(env);
    model.add(ZylExtractable(leaf));
    log.clear();
    const ZylExtractableArray array(env, 4, ZylExtractable(), ZylExtractable(leaf),
                                    ZylExtractable(second), ZylExtractable(leaf));
    form.run(array);
    Names died = {"top", "user"};
    if (form.ends && form.asArray) died.push_back("second");
    if (form.ends) died.push_back("leaf");
    EXPECT_EQ(Probe::Died, died);
    EXPECT_EQ(isLive(leaf, id), !form.ends);
    EXPECT_TRUE(model.getImpl()->getElements().isEmpty());
    Log expected = {"ZylRemoveFromAllChange (all)", "ZylDestroyExtractableArray (all)"};
    if (!form.ends && form.asArray) expected.push_back(expected[0]);
    EXPECT_EQ(log, expected);
    if (form.ends && form.asArray) {
      EXPECT_EQ(array.getSize(), 0);
    }
    expectUsable();
  }
}

TEST_F(ZylRemoval, EachBatchIsAnnouncedBeforeAnyOfItDies) {
  Probe* leaf = probe(env, "leaf");
  Probe* user = probe(env, "user", leaf);
  Probe* late = probe(env, "late");
  static Probe* lateNow;
  lateNow = late;
  user->onDeath = [] { lateNow->end(); };
  static std::vector<std::string>* events;
  std::vector<std::string> seen;
  events = &seen;
  plugIn->onChange = [](const ZylChange& change) {
    if (!change.isType(ZylDestroyExtractableArray::GetTypeInfo())) return;
    const auto& batch = static_cast<const ZylDestroyExtractableArray&>(change);
    std::string text = "batch";
    ZylExtractableArray objects = batch.getChangedExtractableArray();
    for (long i = 0; i < objects.getSize(); ++i) text += std::string(" ") + objects[i].getName();
    text += ", dead " + std::to_string(Probe::Died.size());
    events->push_back(text);
  };
  leaf->end();
  EXPECT_EQ(seen, (Names{"batch user leaf, dead 0", "batch late, dead 2"}));
  EXPECT_EQ(Probe::Died, (Names{"user", "leaf", "late"}));
  expectUsable();
}

TEST_F(ZylRemoval, RequestsFromWithinAScanJoinIt) {
  for (const bool keeps : {false, true}) {
    SCOPED_TRACE(keeps ? "removeFromAll" : "end");
    Probe::Died.clear();
    log.clear();
    Probe* leaf = probe(env, "leaf");
    Probe* watcher = probe(env, "watcher");
    Probe* victim = probe(env, "victim");
    const long id = victim->getId();
    probe(env, "victim's user", victim);
    static Probe* victimNow;
    static bool keepsNow;
    victimNow = victim;
    keepsNow = keeps;
    watcher->onAtRemove = [] {
      Probe* once = victimNow;
      victimNow = nullptr;
      if (once != nullptr) keepsNow ? once->removeFromAll() : once->end();
    };
    leaf->end();
    EXPECT_EQ(Probe::Died, keeps ? (Names{"victim's user", "leaf"})
                                 : (Names{"victim's user", "victim", "leaf"}));
    EXPECT_EQ(isLive(victim, id), keeps);
    if (!keeps) {
      EXPECT_EQ(log.size(), 2U) << "one removal, one batch";
    }
    watcher->onAtRemove = nullptr;
    expectUsable();
  }
}

TEST_F(ZylRemoval, TheBlocksComeBack) {
  const auto liveAndDie = [&] {
    Probe* leaf = probe(env, "a leaf with a name");
    leaf->setIntProperty("number", 1);
    leaf->setStringProperty("text", "value");
    probe(env, "user", leaf);
    EXPECT_TRUE(leaf->isGround());
    EXPECT_FALSE(leaf->isDecisionExpr());
    leaf->end();
  };
  liveAndDie();  // names are interned, and removals keep an array for the next one
  const long before = impl->getMemoryUsage();
  liveAndDie();
  EXPECT_EQ(impl->getMemoryUsage(), before);
}

// Whoever raises, the graph stays as it was.
TEST_F(ZylRemoval, AnExceptionRestoresTheSlots) {
  static ZylTypeInfo raiseAt;
  for (const ZylTypeInfo at : {ZylRemoveFromAllChange::GetTypeInfo(),
                               ZylDestroyExtractableArray::GetTypeInfo(), ZylTypeInfo(nullptr)}) {
    Probe::Died.clear();
    Probe* leaf = probe(env, "leaf");
    Probe* user = probe(env, "user", leaf);
    raiseAt = at;
    if (at == nullptr) user->onAtRemove = [] { throw ZylWrongUsage("refused"); };
    plugIn->onChange = [](const ZylChange& change) {
      if (raiseAt != nullptr && change.isType(raiseAt)) throw ZylWrongUsage("refused");
    };
    const ZylExtractableArray array(env, 1, ZylExtractable(leaf));
    for (const Form& form : Forms) {
      const bool destroys = form.ends || !form.asArray;
      if (at == ZylDestroyExtractableArray::GetTypeInfo() && !destroys) continue;
      EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { form.run(array); }, "refused")) << form.name;
      EXPECT_EQ(impl->getRecycleBin(), nullptr);
      EXPECT_TRUE(isLive(leaf, leaf->getId()) && isLive(user, user->getId())) << form.name;
    }
    user->onAtRemove = nullptr;
    plugIn->onChange = nullptr;
    leaf->end();
    EXPECT_EQ(Probe::Died, (Names{"user", "leaf"}));
    expectUsable();
  }
}

// Whoever held a kept expression dies; the removal owns it in the meantime.
TEST_F(ZylRemoval, KeepsCountedObjectsWithTheRightCount) {
  const ZylNumVar x(env, 0, 1);
  for (const Form& form : Forms) {
    if (form.ends) continue;
    SCOPED_TRACE(form.name);
    ZylRangeI* range = ZylRange(env, 0, ZylMax(x, 1.0) + ZylAbs(x), 5).getImpl();
    const long rangeId = range->getId();
    ZylNumExprI* sum = range->getExprI();
    const ZylNumExpr holder{ZylNumExprArg(sum)};
    ASSERT_EQ(sum->getCount(), 2);
    const ZylExtractableArray array(env, 1, ZylExtractable(sum));
    form.run(array);
    EXPECT_TRUE(isLive(sum, sum->getId()));
    EXPECT_FALSE(isLive(range, rangeId));
    EXPECT_EQ(sum->getCount(), 1);
    const long id = sum->getId();
    sum->end();
    EXPECT_FALSE(isLive(sum, id));
    expectUsable();
  }
}

// Neither objects nor kept expressions are lost on the way.
TEST_F(ZylRemoval, FailedAllocations) {
  const ZylNumVar y(env, 0, 1);
  for (const Form& form : Forms) {
    SCOPED_TRACE(form.name);
    ZylExtractableArray array(env);
    Probe* users[20] = {};
    FailEachAllocation(
        [&] {
          const ZylNumVar x(env, 0, 1);
          for (int i = 0; i < 4; ++i) ZylRange(env, 0, ZylMax(x, y) + ZylAbs(x), 5);
          for (Probe*& user : users) user = probe(env, nullptr, x.getImpl());
          array.clear();
          array.add(x);
          useUpPools(impl);
          return x.getImpl();
        },
        [&](ZylNumVarI&) { form.run(array); },
        [&](ZylNumVarI& x) {
          ASSERT_TRUE(isLive(&x, x.getId()));
          for (Probe* user : users) ASSERT_TRUE(isLive(user, user->getId()));
          x.end();
          expectUsable();
        });
  }
}

// What was asked for is gone with the first batch, whoever refuses a later one. Ids and blocks are
// issued again at once: what the plug-in makes may stand where the dead one stood.
TEST_F(ZylRemoval, ARefusedLaterBatchLeavesNoHandleOfTheDead) {
  static Probe* late;
  static ZylEnvI* where;
  static int batches;
  for (const Form& form : Forms) {
    if (!form.ends) continue;
    SCOPED_TRACE(form.name);
    Probe* leaf = probe(env);
    late = probe(env, "late");
    where = impl;
    batches = 0;
    leaf->onDeath = [] { late->end(); };
    plugIn->onChange = [](const ZylChange& change) {
      if (!change.isType(ZylDestroyExtractableArray::GetTypeInfo()) || ++batches < 2) return;
      new (where) Probe(where);
      throw ZylWrongUsage("refused");
    };
    ZylExtractable handle(leaf);
    const ZylExtractableArray array(env, 3, handle, ZylExtractable(), handle);
    EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { form.asArray ? form.run(array) : handle.end(); },
                                          "refused"));
    if (!form.asArray) {
      EXPECT_EQ(handle.getImpl(), nullptr);
    } else {
      for (long i = 0; i < array.getSize(); ++i) EXPECT_EQ(array.getI(i), nullptr);
      array.endElements();
    }
    EXPECT_TRUE(isLive(late, late->getId()));
    expectUsable();
  }
}

// A batch that breaks off: each array lists what lives, and a second attempt ends the rest.
TEST_F(ZylRemoval, ABatchThatBreaksOffLeavesTheLivingListed) {
  for (const Form& form : Forms) {
    if (!form.ends || !form.asArray) continue;
    SCOPED_TRACE(form.name);
    Probe::Died.clear();
    Probe* first = probe(env, "first");
    Probe* second = probe(env, "second");
    second->onDeath = [] { throw ZylWrongUsage("broken off"); };
    const ZylExtractable a(first);
    const ZylExtractableArray array(env, 4, a, ZylExtractable(second), ZylExtractable(), a);
    EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { form.run(array); }, "broken off"));
    ASSERT_TRUE(isLive(first, first->getId()));
    EXPECT_EQ(array.find(a), 0);
    for (long i = 1; i < array.getSize(); ++i) EXPECT_EQ(array.getI(i), nullptr);
    form.run(array);
    EXPECT_EQ(Probe::Died, (Names{"second", "first"}));
    EXPECT_EQ(array.getSize(), 0);
    expectUsable();
  }
}

TEST_F(ZylRemoval, ElementsGiveUpTheirReferencesOnce) {
  const ZylNumVar x(env, 0, 1);
  const ZylNumExpr held = ZylAbs(x);
  const ZylNumExpr other(held);
  Probe* leaf = probe(env);
  const ZylExtractableArray array(env, 2, held, ZylExtractable(leaf));
  plugIn->onChange = [](const ZylChange&) { throw ZylWrongUsage("refused"); };
  for (int i = 0; i < 2; ++i) {
    EXPECT_THROW(array.endElements(), ZylWrongUsage);
    EXPECT_EQ(other.getImpl()->getCount(), 1);
    EXPECT_EQ(array.getI(1), leaf);
  }
  plugIn->onChange = nullptr;
  array.endElements();
  EXPECT_EQ(other.getImpl()->getCount(), 1);
  expectUsable();
}

// An id means a stranger in another environment.
TEST_F(ZylRemoval, RefusesObjectsOfAnotherEnvironment) {
  EnvFixture fixture;
  const ZylNumVar x(env, 0, 1);
  const ZylNumExpr held = ZylAbs(x);
  Probe* own = probe(env);
  Probe* stranger = probe(fixture.env);
  const ZylExtractableArray array(env, 3, held, ZylExtractable(own), ZylExtractable(stranger));
  ExpectEachRaises<ZylEnvironmentMismatch>(
      "Environment mismatch",
      {[&] { array.endElements(); }, [&] { impl->removeFromAll(array); },
       [&] { impl->removeFromAllAndDestroy(array, 0); }, [&] { impl->removeFromAll(stranger); },
       [&] { impl->removeFromAllAndDestroy(stranger, 0); }});
  EXPECT_EQ(array.getSize(), 3);
  EXPECT_EQ(held.getImpl()->getCount(), 1);
  EXPECT_TRUE(isLive(own, own->getId()));
  EXPECT_EQ(fixture->getIdManager()->getLive(stranger->getId()), stranger);
  expectUsable();
}

// What joins is neither lost with its holder nor released by more than was taken; what ends by
// itself is listed no more.
TEST_F(ZylRemoval, ElementsMayJoinDuringTheScan) {
  static ZylExtractableArray array;
  static ZylRangeI *dying, *staying;
  static Probe* ending;
  const ZylNumVar x(env, 0, 1);
  dying = ZylRange(env, 0, ZylMax(x, 1.0) + ZylAbs(x), 5).getImpl();
  staying = ZylRange(env, 0, ZylMax(x, 2.0) + ZylAbs(x), 5).getImpl();
  ending = probe(env);
  ZylNumExprI* orphan = dying->getExprI();
  Probe* watcher = probe(env);
  watcher->onAtRemove = [] {
    if (array.getSize() > 1) return;
    array.addI(dying->getExprI());
    array.addI(staying->getExprI());
    array.addI(ending);
  };
  probe(env)->onAtRemove = [] {
    Probe* once = std::exchange(ending, nullptr);
    if (once == nullptr) return;
    dying->end();
    once->end();
  };
  array = ZylExtractableArray(env, 1, ZylExtractable(probe(env)));
  impl->removeFromAll(array);
  watcher->onAtRemove = nullptr;
  EXPECT_TRUE(isLive(orphan, orphan->getId()));
  EXPECT_EQ(orphan->getCount(), 0);
  EXPECT_TRUE(isLive(staying, staying->getId()));
  EXPECT_EQ(staying->getExprI()->getCount(), 1);
  ASSERT_EQ(array.getSize(), 4);
  EXPECT_EQ(array.getI(3), nullptr);
  expectUsable();
}

// Inside another removal, which has marked an element already: it must not enter the bin again.
TEST_F(ZylRemoval, AnArrayKeepsNothingThatDiesAroundIt) {
  static ZylExtractableArray array;
  Probe* leaf = probe(env, "leaf");
  Probe* user = probe(env, "user", leaf);
  Probe* kept = probe(env, "kept");
  const long id = kept->getId();
  array = ZylExtractableArray(env, 2, ZylExtractable(user), ZylExtractable(kept));
  Probe* watcher = probe(env);
  watcher->onAtRemove = [] {
    if (array.getSize() == 0) return;
    const ZylExtractableArray objects = array;
    array = ZylExtractableArray(objects.getEnv());
    objects.getI(1)->getEnv()->removeFromAll(objects);
  };
  leaf->end();
  watcher->onAtRemove = nullptr;
  EXPECT_EQ(Probe::Died, (Names{"user", "leaf"}));
  EXPECT_TRUE(isLive(kept, id));
  expectUsable();
}

// A plug-in that cleans up while it hears of a removal must leave nothing behind either.
TEST_F(ZylRemoval, WhatReceiversEndIsRemovedFromAll) {
  static Probe* second;
  static ZylTypeInfo at;
  for (const ZylTypeInfo type :
       {ZylRemoveFromAllChange::GetTypeInfo(), ZylDestroyExtractableArray::GetTypeInfo()}) {
    Probe::Died.clear();
    ZylModel model(env);
    Probe* first = probe(env, "first");
    second = probe(env, "second");
    probe(env, "user of second", second);
    model.add(ZylExtractable(second));
    at = type;
    plugIn->onChange = [](const ZylChange& change) {
      if (second != nullptr && change.isType(at)) std::exchange(second, nullptr)->end();
    };
    first->end();
    EXPECT_EQ(Probe::Died.size(), 3U);
    EXPECT_TRUE(model.getImpl()->getElements().isEmpty());
    expectUsable();
  }
}

// Random graphs against a naive closure. Users made before what they use stand below it in the
// table, so that one scan is not enough.
TEST_F(ZylRemoval, AgreesWithAClosure) {
  for (unsigned seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    std::vector<Probe*> nodes;
    std::vector<std::vector<std::size_t>> edges(40);
    for (int i = 0; i < 40; ++i) nodes.push_back(probe(env));
    std::shuffle(nodes.begin(), nodes.end(), random);
    for (std::size_t i = 1; i < nodes.size(); ++i) {
      // Edges lead to nodes of lower places, so there is no cycle.
      const auto edge = [&] {
        edges[i].push_back(random() % i);
        return nodes[edges[i].back()];
      };
      if (random() % 3 != 0) nodes[i]->left = edge();
      if (random() % 4 == 0) nodes[i]->right = edge();
    }
    std::vector<bool> dead(nodes.size(), false);
    for (int step = 0; step < 5; ++step) {
      const std::size_t k = random() % nodes.size();
      if (dead[k]) continue;
      const long living = Probe::Living;
      const long deadBefore = std::count(dead.begin(), dead.end(), true);
      if (step % 2 == 0) nodes[k]->end();
      else delete nodes[k];
      dead[k] = true;
      for (std::size_t i = k + 1; i < nodes.size(); ++i) {
        for (const std::size_t j : edges[i]) dead[i] = dead[i] || dead[j];
      }
      const long died = std::count(dead.begin(), dead.end(), true) - deadBefore;
      ASSERT_EQ(Probe::Living, living - died);
      for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (!dead[i]) {
          ASSERT_TRUE(isLive(nodes[i], nodes[i]->getId()));
        }
      }
    }
    expectUsable();
    for (std::size_t i = nodes.size(); i-- > 0;) {
      if (!dead[i]) nodes[i]->end();
    }
  }
}

// --- arrays --------------------------------------------------------------------------------------

class ZylExtractables : public EnvTest {};

TEST_F(ZylExtractables, FindRunsFromTheEndAndNamesFromTheStart) {
  ZylExtractable a(probe(env, "before"));
  ZylExtractable b(probe(env));
  EXPECT_EQ(ZylExtractableArray(env, 3, a, b, a).find(a), 2);
  EXPECT_EQ(ZylExtractableArray(env, 1, a).find(b), -1);
  ZylExtractableArray(env, 2, a, b).setNames("x");
  EXPECT_STREQ(b.getName(), "x[1]");
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>(
      [&] { ZylExtractableArray(env, 3, b, a, b).setNames("y"); },
      "ZylExtractableArray::setNames: Can't have duplicate element in Array"));
  EXPECT_STREQ(a.getName(), "x[0]");
}

TEST_F(ZylExtractables, ClonesOfArrays) {
  ZylEnv other;
  ZylExtractable a(probe(env, "a"));
  ZylExtractableArray array(env, 2, a, a);
  ZylExtractableArray before = array;
  array.replaceByClone(other.getImpl());
  EXPECT_EQ(array.getSize(), 2);
  EXPECT_EQ(array[0].getEnv().getImpl(), other.getImpl());
  EXPECT_EQ(before[0].getImpl(), a.getImpl());
  before.replaceByClone(nullptr);
  EXPECT_NE(before[0].getImpl(), a.getImpl());
  EXPECT_EQ(before[0].getEnv().getImpl(), impl);
  other.end();
}

TEST_F(ZylExtractables, LiteralTexts) {
  ZylExtractable a(probe(env));
  ZylNumVar x(env);
  ZylRange r(env, 0, x, 1);
  ExpectEachRaises<ZylWrongUsage>(
      {{"ZylExtractableArray::ZylExtractableArray: n != 2",
        [&] { ZylExtractableArray(env, 3, a, a); }},
       {"ZylNumVarArray::ZylNumVarArray: n != 1", [&] { ZylNumVarArray(env, 2, x); }},
       {"ZylNumVarArray::ZylNumVarArray: n !=2", [&] { ZylNumVarArray(env, 1, x, x); }},
       {"ZylRangeArray::ZylRangeArray: n !=3", [&] { ZylRangeArray(env, 1, r, r, r); }}});
  ExpectEachRaises<ZylEmptyHandleException>(
      {{"Using empty ZylRangeArray handle.", [&] { ZylRangeArray().add(r); }},
       {"Using empty ZylBoolVarArray handle.",
        [] { static_cast<void>(ZylBoolVarArray().getSize()); }}});
  EXPECT_EQ(ZylNumVarArray(env, 3)[2].getImpl(), nullptr);
}

// --- base operations and visits ------------------------------------------------------------------

TEST_F(ZylExtractables, BareObjects) {
  auto* bare = new (impl) BareProbe(impl, nullptr);
  const std::string id = std::to_string(bare->getId());
  EXPECT_TRUE(DisplaysAs(bare, "ZylExtractable unknow" + id + "\n"));
  EXPECT_THROW(bare->extractToCP(ZylAlgorithm()), ZylAlgorithm::ExtractFailure);
  EXPECT_THROW(bare->unextractFromCP(ZylAlgorithm(), nullptr), ZylAlgorithm::RemoveFailure);
  EXPECT_THROW(bare->modifyCP(ZylAlgorithm(), nullptr), ZylAlgorithm::RemoveFailure);
}

TEST_F(ZylExtractables, DecisionAnswersAreKept) {
  ZylNumVar x(env);
  Probe* inner = probe(env, nullptr, x.getImpl());
  Probe* outer = probe(env, nullptr, probe(env), inner);
  EXPECT_TRUE(outer->isDecisionExpr());
  const long visits = outer->visits;
  EXPECT_TRUE(outer->isDecisionExpr());
  EXPECT_EQ(outer->visits, visits);
  Probe* plain = probe(env);
  EXPECT_FALSE(plain->isDecisionExpr());
  plain->left = x.getImpl();
  EXPECT_FALSE(plain->isDecisionExpr()) << "the first answer stands";
  // Another object at the same address must ask again.
  plain->end();
  Probe* again = probe(env, nullptr, x.getImpl());
  if (impl->usesMemoryManager()) {
    EXPECT_EQ(again, plain);
  }
  EXPECT_TRUE(again->isDecisionExpr());
}

TEST_F(ZylExtractables, GroundnessLooksBelow) {
  Probe* index = probe(env);
  Probe* user = probe(env, nullptr, probe(env), probe(env, nullptr, index));
  EXPECT_TRUE(user->isGround());
  index->nonground = true;
  EXPECT_FALSE(user->isGround());
  ZylNumVar x(env);
  EXPECT_TRUE(x.getImpl()->isGround());
}

TEST_F(ZylExtractables, VisitorsAndMissingChildren) {
  Probe* parent = probe(env);
  ZylFindMarkedVisitor marked;
  marked.visitChildren(parent, parent);
  marked.visitChildren(parent, nullptr);
  EXPECT_EQ(marked.getResult(), 0);
  ZylFindDecisionVar decision;
  ZylFindAggregate aggregate;
  Probe* bulk = probe(env);
  bulk->aggregate = true;
  for (ZylFindVisitor* visitor :
       {static_cast<ZylFindVisitor*>(&decision), static_cast<ZylFindVisitor*>(&aggregate)}) {
    visitor->visitChildren(parent, static_cast<ZylExtractableI*>(nullptr));
    EXPECT_EQ(visitor->getResult(), 0);
    ZylExtractableArray array(env, 3, ZylExtractable(), ZylExtractable(ZylNumVar(env).getImpl()),
                              ZylExtractable(bulk));
    visitor->visitChildren(parent, array);
    EXPECT_NE(visitor->getResult(), 0);
  }
  EXPECT_EQ(bulk->visits, 1) << "only the search for an aggregate goes on behind the variable";
}

TEST_F(ZylExtractables, HandlesTellTheirKind) {
  ZylNumVar x(env);
  ZylExtractable range = ZylRange(env, 0, x, 1);
  EXPECT_TRUE(ZylExtractable(ZylModel(env)).isModel());
  EXPECT_TRUE(ZylExtractable(x).isVariable() && ZylExtractable(x).isNumExpr());
  EXPECT_TRUE(range.isConstraint());
  EXPECT_TRUE(range.isIntExpr()) << "a constraint has the value 0 or 1";
  EXPECT_EQ(range.asModel().getImpl(), nullptr);
  EXPECT_EQ(range.asConstraint().getImpl(), range.getImpl());
}

TEST_F(ZylExtractables, EmptyHandlesRaise) {
  ZylExtractable e;
  ExpectEachRaises<ZylEmptyHandleException>(
      "Using empty Handle",
      {[&] { e.asModel(); }, [&] { e.getId(); }, [&] { e.end(); }, [&] { e.removeFromAll(); },
       [&] { e.display(std::cout); }, [&] { e.setIntProperty("x", 1); }});
}

}  // namespace
}  // namespace zyl::test
