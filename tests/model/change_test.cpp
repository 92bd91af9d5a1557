// Who hears of a change, in what order, and what becomes of refusals.

#include "vorlane/model/change.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "support/probe.h"
#include "support/recording.h"
#include "support/support.h"
#include "vorlane/vorlane.h"

namespace zyl::test {
namespace {

class ZylRouting : public EnvTest {
 protected:
  RecordingPlugIn* plugIn(const char* name, ZylAlgorithmI* algorithm = nullptr) {
    auto* made = new (impl) RecordingPlugIn(impl, &log, algorithm, name);
    impl->getPlugInManager()->add(made, name);
    impl->getPlugInManager()->addNotified(made);
    return made;
  }
  RecordingAlgorithm* algorithm(const char* name) {
    return new RecordingAlgorithm(impl, &log, name);
  }
  void extractInto(std::initializer_list<RecordingAlgorithm*> algorithms, const ZylExtractable& e) {
    x.setBounds(0, 10);  // from now on the variable has a domain of its own
    for (RecordingAlgorithm* a : algorithms) a->extract(e.getImpl());
    log.clear();
  }

  Log log;
  ZylNumVar x{env, 0, 10, "x"};
};

TEST_F(ZylRouting, PlugInsFirstAndTheNewestFirst) {
  plugIn("p1");
  plugIn("p2");
  RecordingAlgorithm* first = algorithm("a1");
  RecordingAlgorithm* second = algorithm("a2");
  extractInto({first, second}, x);
  x.setLB(1);
  EXPECT_EQ(log, (Log{"p2: ZylSetNumVarBounds", "p1: ZylSetNumVarBounds",
                      "a2: apply ZylSetNumVarBounds", "a1: apply ZylSetNumVarBounds"}));
}

TEST_F(ZylRouting, OnlyThoseWhoExtractedTheObject) {
  RecordingAlgorithm* uses = algorithm("uses");
  RecordingAlgorithm* other = algorithm("other");
  plugIn("tied to uses", uses);
  plugIn("tied to other")->setAlgorithm(other);
  extractInto({uses}, x);
  x.setUB(5);
  EXPECT_EQ(log, (Log{"tied to uses: ZylSetNumVarBounds", "uses: apply ZylSetNumVarBounds"}));
  EXPECT_EQ(uses->lastTarget, x.getImpl());
  EXPECT_EQ(uses->lastHandle, uses->getHandle(x.getImpl()));

  log.clear();
  impl->change(ZylSetNumVarBounds(x.getImpl(), 0, 1));
  EXPECT_EQ(
      log, (Log{"tied to other: ZylSetNumVarBounds (all)", "tied to uses: ZylSetNumVarBounds (all)",
                "other: apply ZylSetNumVarBounds", "uses: apply ZylSetNumVarBounds"}));
}

TEST_F(ZylRouting, AllHearBeforeTheRefusalsAreRaisedAsOne) {
  RecordingAlgorithm* a3 = algorithm("a3");
  RecordingAlgorithm* a2 = algorithm("a2");
  RecordingAlgorithm* a1 = algorithm("a1");
  a1->refuse("ZylSetNumVarBounds");
  a3->refuse("ZylSetNumVarBounds");
  extractInto({a1, a2, a3}, x);
  const long before = impl->getMemoryUsage();
  try {
    x.setLB(3);
    ADD_FAILURE() << "nothing was raised";
  } catch (ZylAlgorithm::CannotChangeException& exception) {
    EXPECT_EQ(exception.getAlgorithmI(), a1) << "the first to refuse";
    EXPECT_EQ(exception.getExtractables().getSize(), 2);
    for (long i = 0; i < 2; ++i) {
      EXPECT_EQ(exception.getExtractables()[i].getImpl(), x.getImpl());
    }
    exception.end();
  }
  EXPECT_EQ(log.size(), 3U);
  EXPECT_EQ(x.getLB(), 3) << "the model is the truth";
  EXPECT_EQ(impl->getMemoryUsage(), before) << "the arrays of the refusals are gone";
}

// An engine may refuse in nobody's name and without saying what.
TEST_F(ZylRouting, BareRefusalsAreMergedToo) {
  RecordingAlgorithm* last = algorithm("last");
  RecordingAlgorithm* bare = algorithm("bare");
  last->refuse("ZylSetNumVarBounds");
  bare->onApply = [](const ZylChange&) {
    throw ZylAlgorithm::CannotChangeException(nullptr, ZylExtractableArray());
  };
  extractInto({last, bare}, x);
  try {
    x.setLB(3);
    ADD_FAILURE() << "nothing was raised";
  } catch (ZylAlgorithm::CannotChangeException& exception) {
    EXPECT_EQ(exception.getAlgorithmI(), nullptr);
    EXPECT_EQ(exception.getExtractables().getSize(), 1);
    exception.end();
  }
  EXPECT_EQ(log.size(), 2U);
  bare->onApply = nullptr;
}

TEST_F(ZylRouting, AnyOtherExceptionPassesAtOnce) {
  RecordingAlgorithm* last = algorithm("last");
  RecordingAlgorithm* raising = algorithm("raising");
  RecordingAlgorithm* refusing = algorithm("refusing");
  raising->onApply = [](const ZylChange&) { throw ZylWrongUsage("own"); };
  refusing->refuse("ZylSetNumVarBounds");
  extractInto({last, raising, refusing}, x);
  const long before = impl->getMemoryUsage();
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { x.setLB(1); }, "own"));
  EXPECT_EQ(log.size(), 2U);
  EXPECT_EQ(impl->getMemoryUsage(), before) << "nor does the refusal before it leave anything";
  raising->onApply = nullptr;
}

TEST_F(ZylRouting, TheLockIsGivenBackWhateverLeaves) {
  impl->useMTSafeAllocation(1);
  RecordingAlgorithm* a = algorithm("a");
  a->refuse("ZylSetNumVarBounds");
  extractInto({a}, x);
  for (int i = 0; i < 3; ++i) {
    try {
      x.setLB(i);
    } catch (ZylAlgorithm::CannotChangeException& exception) {
      exception.end();
    }
  }
  a->onApply = [](const ZylChange&) { throw ZylWrongUsage("own"); };
  EXPECT_THROW(x.setLB(9), ZylWrongUsage);
  a->onApply = nullptr;
  // A recursive lock hides what is held from its own thread; another one is needed to see it.
  bool free = false;
  std::thread([&] {
    impl->getMutex()->lock();
    impl->getMutex()->unlock();
    free = true;
  }).join();
  EXPECT_TRUE(free);
}

TEST_F(ZylRouting, AReceiverMayEndItself) {
  extractInto({algorithm("last")}, x);
  struct EndsItself : RecordingAlgorithm {
    using RecordingAlgorithm::RecordingAlgorithm;
    bool doApply(const ZylChange*, void**, const ZylExtractableI*) override {
      log.push_back("ends");
      delete this;
      return true;
    }
  };
  auto* gone = new EndsItself(impl, &log, "gone");
  gone->extract(x.getImpl());
  log.clear();
  x.setLB(2);
  EXPECT_EQ(log, (Log{"ends", "last: apply ZylSetNumVarBounds"}));

  RecordingPlugIn* p2 = plugIn("p2");
  plugIn("p3");
  static ZylPlugInManager* manager;
  static RecordingPlugIn* leaving;
  manager = impl->getPlugInManager();
  leaving = p2;
  p2->onChange = [](const ZylChange&) { manager->removeNotified(leaving); };
  log.clear();
  x.setLB(3);
  x.setLB(4);
  EXPECT_EQ(std::count(log.begin(), log.end(), "p2: ZylSetNumVarBounds"), 1);
  EXPECT_EQ(std::count(log.begin(), log.end(), "p3: ZylSetNumVarBounds"), 2);
}

TEST_F(ZylRouting, AnAlgorithmMayDeleteTheNext) {
  RecordingAlgorithm* last = algorithm("last");
  RecordingAlgorithm* next = algorithm("next");
  RecordingAlgorithm* first = algorithm("first");
  extractInto({last, next, first}, x);
  first->onApply = [&](const ZylChange&) { delete std::exchange(next, nullptr); };
  x.setLB(1);
  EXPECT_EQ(log, (Log{"first: apply ZylSetNumVarBounds", "last: apply ZylSetNumVarBounds"}));
}

TEST_F(ZylRouting, APlugInMayDeleteTheNext) {
  plugIn("last");
  RecordingPlugIn* next = plugIn("next");
  plugIn("first")->onChange = [&](const ZylChange&) {
    impl->getPlugInManager()->removeNotified(next);
    impl->getPlugInManager()->remove(next, "next");
    delete next;
  };
  x.setLB(1);
  EXPECT_EQ(log, (Log{"first: ZylSetNumVarBounds", "last: ZylSetNumVarBounds"}));
}

TEST_F(ZylRouting, AnAlgorithmsEndUntiesItsPlugIns) {
  RecordingAlgorithm* a = algorithm("a");
  RecordingPlugIn* tied = plugIn("tied", a);
  delete a;
  EXPECT_EQ(tied->removed, a);
  EXPECT_EQ(tied->getAlgorithmI(), nullptr);
  x.setLB(1);
}

TEST_F(ZylRouting, TheEmancipatedHearNothingAndOutlive) {
  auto a = std::make_unique<RecordingAlgorithm>(impl, &log, "a");
  RecordingAlgorithm* other = algorithm("other");
  extractInto({a.get(), other}, x);
  impl->emancipateAlgorithm(a.get());
  x.setLB(1);
  EXPECT_EQ(log, (Log{"other: apply ZylSetNumVarBounds"}));
  a.reset();
  EXPECT_EQ(impl->getAlgorithms(), other);
}

// --- the changes themselves ----------------------------------------------------------------------

class ZylChanges : public EnvTest {};

TEST_F(ZylChanges, NoHookMeansRefusal) {
  RecordingAlgorithm a(impl);
  ZylNumVar x(env);
  ZylExtractableArray none(env);
  const ZylAlgorithm handle(&a);
  const std::string text = printed(ZylAlgorithm::CannotChangeException(&a));
  ExpectEachRaises<ZylAlgorithm::CannotChangeException>(
      text, {[&] { ZylSetNumVarBounds(x.getImpl(), 0, 1).applyToCP(handle, nullptr); },
             [&] { ZylRemoveFromAllChange(none).applyToCP(handle, nullptr); }});
}

TEST_F(ZylChanges, TellWhatTheyApplyTo) {
  ZylExtractableArray objects(env, 1, ZylExtractable(probe(env)));
  const ZylRemoveFromAllChange all(objects);
  EXPECT_TRUE(all.isApplyingOnArray());
  EXPECT_EQ(all.getChangedExtractableArray().getImpl(), objects.getImpl());
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { all.getChangedExtractable(); },
                                        "ZylChange::getChangedExtractable can not be called"));
  const ZylDestroyExtractableArray batch(objects);
  EXPECT_FALSE(batch.isApplyingOnArray());
  const ZylDestroyExtractable one(objects[0].getImpl());
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { one.getChangedExtractableArray(); },
                                        "ZylChange::getChangedExtractableArray can not be called"));
}

TEST_F(ZylChanges, ModelsTellOfEachElement) {
  ZylModel model(env);
  Probe* a = probe(env);
  Probe* b = probe(env);
  ZylExtractableArray both(env, 2, ZylExtractable(a), ZylExtractable(b));
  ChildLog visitor;
  ZylAddOneToModel(model.getImpl(), a).visitChange(impl, model.getImpl(), &visitor);
  ZylAddToModel(model.getImpl(), both).visitChange(impl, model.getImpl(), &visitor);
  ZylRemoveFromModel(model.getImpl(), b).visitChange(impl, model.getImpl(), &visitor);
  EXPECT_EQ(visitor.added,
            (ChildLog::Edges{{model.getImpl(), a}, {model.getImpl(), a}, {model.getImpl(), b}}));
  EXPECT_EQ(visitor.removed, (ChildLog::Edges{{model.getImpl(), b}}));
}

TEST_F(ZylChanges, AChainIsInstalledLinkByLink) {
  ZylNumVar x(env);
  ZylNumVar y(env, 0, 1, "y");
  ZylObjective first = ZylMinimize(env, x);
  ZylObjective second = ZylMaximize(env, x);
  RecordingAlgorithm a(impl);
  a.extract(first.getImpl());
  a.extract(second.getImpl());
  a.log.clear();
  ZylAddValueToObj one = first(2.0);
  ZylAddValueToObj two = second(3.0);
  one.setNext(&two);
  one.install(y.getImpl());
  EXPECT_EQ(a.log, (Log{"apply ZylAddValueToObj", "apply ZylAddValueToObj"}));
  EXPECT_EQ(one.getNext(), nullptr);
  EXPECT_EQ(one.getVarI(), y.getImpl());
  double coef = 0;
  for (auto it = second.getLinearIterator(); it.ok(); ++it) {
    if (it.getVar().getImpl() == y.getImpl()) coef = it.getCoef();
  }
  EXPECT_EQ(coef, 3.0);
  EXPECT_TRUE(RaisesWith<ZylAddExtractable::CannotAddExtractableException>(
      [&] { one.install(nullptr); }, "Cannot add new ZylExtractable to extractor"));
  ZylAddExtractable* copy = two.getCopy(impl);
  EXPECT_EQ(copy->what(), second.getImpl());
  copy->destroy(impl);
}

}  // namespace
}  // namespace zyl::test
