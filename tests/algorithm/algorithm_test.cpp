// The protocol between the library and an engine.

#include "vorlane/algorithm/algorithm.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/probe.h"
#include "support/recording.h"
#include "support/support.h"
#include "vorlane/vorlane.h"

namespace zyl::test {
namespace {

class ZylAlgorithms : public EnvTest {
 protected:
  ZylAlgorithms() : engine(new RecordingAlgorithm(impl)) {}
  std::string id(const ZylExtractable& e) const { return std::to_string(e.getId()); }

  RecordingAlgorithm* engine;
  ZylAlgorithm handle{engine};
  ZylNumVar x{env, 0, 10, "x"};
  ZylNumVar y{env, 0, 10, "y"};
  ZylModel model{env, "m"};
};

// --- counting ------------------------------------------------------------------------------------

TEST_F(ZylAlgorithms, SharedObjectsAreBuiltAndDroppedOnce) {
  engine->extract(x.getImpl());
  engine->extract(x.getImpl());
  EXPECT_EQ(engine->log, Log{"extract ZylNumVarI"});
  EXPECT_EQ(engine->getUsageCount(x.getImpl()), 2);
  void* built = engine->getHandle(x.getImpl());
  EXPECT_NE(built, nullptr);
  engine->remove(x.getImpl());
  EXPECT_EQ(engine->log.size(), 1U);
  EXPECT_TRUE(engine->isInUse(x.getImpl()));
  engine->remove(x.getImpl());
  EXPECT_EQ(engine->log.back(), "remove ZylNumVarI");
  EXPECT_EQ(engine->lastHandle, built);
  EXPECT_FALSE(engine->isInUse(x.getImpl()));
  EXPECT_EQ(engine->getHandle(x.getImpl()), nullptr);
}

TEST_F(ZylAlgorithms, RemovingWhatWasNeverThereDoesNothing) {
  engine->remove(x.getImpl());
  engine->decreaseUsage(x.getImpl());
  EXPECT_TRUE(engine->log.empty());
  while (impl->getIdManager()->getMaxId() < 3000) impl->getIdManager()->bookId();
  Probe* far = probe(env);
  ASSERT_GE(far->getId(), engine->getIdCapacity());
  engine->remove(far);
  EXPECT_FALSE(engine->isInUse(far));
  EXPECT_EQ(engine->getHandle(far), nullptr);
  EXPECT_EQ(engine->getUsageCount(far), 0);
  engine->remove(ZylExtractableArray());
}

class MapScope : public ZylExtractionScope {
 public:
  void* lookUp(long id) const override {
    const auto place = handles.find(id);
    return place != handles.end() ? place->second : nullptr;
  }
  void registerHandle(long id, void* built) override { handles[id] = built; }
  std::map<long, void*> handles;
};

TEST_F(ZylAlgorithms, AScopeHoldsWhatDependsOnAnIndex) {
  MapScope scope;
  Probe* index = probe(env);
  index->nonground = true;
  Probe* ground = probe(env);
  engine->setScope(&scope);
  engine->extract(index);
  engine->extract(index);
  EXPECT_EQ(engine->getUsageCount(index), 0) << "the scope alone knows it";
  EXPECT_TRUE(engine->isInUse(index));
  EXPECT_EQ(engine->log.size(), 1U);
  engine->extract(ground);
  EXPECT_EQ(engine->getUsageCount(ground), 1);
  EXPECT_EQ(scope.lookUp(ground->getId()), engine->getHandle(ground));

  MapScope second;
  engine->setScope(&second);
  EXPECT_FALSE(engine->isInUse(ground));
  engine->extract(ground);
  engine->extract(index);
  EXPECT_EQ(engine->log.size(), 3U) << "one more of the index, none of what is shared";
  EXPECT_EQ(second.lookUp(ground->getId()), engine->getHandle(ground));
  engine->refuse("Probe");
  Probe* refused = probe(env);
  EXPECT_THROW(engine->extract(refused), ZylAlgorithm::ExtractFailure);
  EXPECT_EQ(engine->getUsageCount(refused), 0);
  engine->acceptAll();
  engine->extract(refused);
  EXPECT_NE(second.lookUp(refused->getId()), nullptr) << "the scope was put back";
  engine->setScope(nullptr);
}

TEST_F(ZylAlgorithms, AnyExceptionUndoesTheCount) {
  engine->onExtract = [](const ZylExtractableI& object) {
    if (object.isType(ZylNumVarI::GetTypeInfo())) throw ZylWrongUsage("own");
  };
  model.add(x);
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { handle.extract(model); }, "own"));
  EXPECT_EQ(engine->getUsageCount(x.getImpl()), 0);
  EXPECT_EQ(engine->getUsageCount(model.getImpl()), 0);
  engine->onExtract = nullptr;
  handle.extract(model);
  EXPECT_EQ(engine->getUsageCount(x.getImpl()), 1);
}

// --- loading -------------------------------------------------------------------------------------

TEST_F(ZylAlgorithms, LoadingClearsFirst) {
  model.add(x);
  handle.extract(model);
  EXPECT_EQ(handle.getModel().getImpl(), model.getImpl());
  EXPECT_TRUE(handle.isExtracted(x));
  ZylModel second(env);
  second.add(y);
  engine->loadWithoutClear(second.getImpl());
  EXPECT_TRUE(handle.isExtracted(x) && handle.isExtracted(y));
  handle.extract(second);
  EXPECT_FALSE(handle.isExtracted(x));
  EXPECT_TRUE(handle.isExtracted(y));
  engine->load(nullptr);
  EXPECT_FALSE(handle.isExtracted(y));
  EXPECT_EQ(engine->getModelI(), nullptr);
}

TEST_F(ZylAlgorithms, ARefusedLoadNamesTheObjectsAndLeavesItEmpty) {
  ZylRange range(env, 0, x, 1);
  model.add(x);
  model.add(range);
  engine->refuse("ZylRangeI");
  try {
    handle.extract(model);
    ADD_FAILURE() << "nothing was raised";
  } catch (ZylAlgorithm::CannotExtractException& exception) {
    // A refusal inside makes the model itself fail too, unless the engine bears it.
    EXPECT_EQ(exception.getExtractables()[0].getImpl(), range.getImpl());
    EXPECT_EQ(exception.getAlgorithmI(), engine);
    EXPECT_STREQ(exception.getMessage(), "ZylAlgorithm cannot extract extractable");
    EXPECT_EQ(printed(exception).rfind("ZylAlgorithm cannot extract extractable", 0), 0U);
    exception.end();
    EXPECT_EQ(exception.getExtractables().getImpl(), nullptr);
  }
  EXPECT_EQ(engine->getModelI(), nullptr);
  EXPECT_FALSE(handle.isExtracted(x));
  EXPECT_EQ(engine->getFailedExtractions().getSize(), 0);
  engine->acceptAll();
  handle.extract(model);
  EXPECT_TRUE(handle.isExtracted(range));
}

TEST_F(ZylAlgorithms, FailedAllocationsWhileLoading) {
  ZylExpr sum(env);
  for (int i = 0; i < 5; ++i) sum += i * ZylNumVar(env);
  model.add(ZylRange(env, 0, sum, 5));
  model.add(x);
  impl->getIdManager()->bookId();
  while (impl->getIdManager()->getMaxId() < 1500) impl->getIdManager()->bookId();
  RecordingAlgorithm* fresh = nullptr;
  FailEachAllocation(
      [&] {
        delete fresh;
        fresh = new RecordingAlgorithm(impl);
        fresh->log.reserve(100);
        return fresh;
      },
      [&](RecordingAlgorithm& a) { a.load(model.getImpl()); },
      [&](RecordingAlgorithm& a) {
        EXPECT_EQ(a.getUsageCount(x.getImpl()), 0);
        a.load(model.getImpl());
        EXPECT_EQ(a.getUsageCount(x.getImpl()), 1);
      });
  FailEachAllocation(
      impl, [&] { delete new RecordingAlgorithm(impl); },
      [&] { EXPECT_EQ(impl->getAlgorithms(), fresh); });
}

// --- changes -------------------------------------------------------------------------------------

TEST_F(ZylAlgorithms, AHandleMayBeRewrittenByAChange) {
  struct Rewriting : RecordingAlgorithm {
    using RecordingAlgorithm::RecordingAlgorithm;
    bool doApply(const ZylChange*, void** built, const ZylExtractableI*) override {
      *built = &handles[accepts ? 5 : 6];
      return accepts;
    }
    bool accepts = true;
  };
  auto* rewriting = new Rewriting(impl);
  rewriting->extract(x.getImpl());
  x.setLB(1);
  EXPECT_EQ(rewriting->getHandle(x.getImpl()), &rewriting->handles[5]);
  rewriting->accepts = false;
  EXPECT_THROW(x.setLB(2), ZylAlgorithm::CannotChangeException);
  EXPECT_EQ(rewriting->getHandle(x.getImpl()), &rewriting->handles[5]) << "a refusal keeps it";
  EXPECT_TRUE(rewriting->isInUse(x.getImpl()));
}

TEST_F(ZylAlgorithms, AFailureInAChangeDestroysTheExtraction) {
  model.add(x);
  handle.extract(model);
  engine->onApply = [](const ZylChange&) { throw ZylAlgorithm::ExtractFailure("ZylX"); };
  EXPECT_TRUE(RaisesWith<ZylAlgorithm::CannotExtractException>([&] { x.setLB(1); },
                                                               "ZylAlgorithm cannot extract"));
  EXPECT_FALSE(handle.isExtracted(x));
  engine->onApply = nullptr;
  handle.extract(model);
  engine->onApply = [](const ZylChange&) { throw ZylAlgorithm::RemoveFailure(); };
  std::ostringstream expected;
  expected << "ZylAlgorithm " << static_cast<const void*>(engine) << " cannot remove";
  EXPECT_TRUE(
      RaisesWith<ZylAlgorithm::CannotRemoveException>([&] { model.remove(x); }, expected.str()));
  EXPECT_EQ(engine->getModelI(), nullptr);
  engine->onApply = nullptr;
}

TEST_F(ZylAlgorithms, ARefusedRemovalIsListed) {
  engine->extract(x.getImpl());
  engine->refusesRemoval = true;
  EXPECT_THROW(engine->remove(x.getImpl()), ZylAlgorithm::RemoveFailure);
  EXPECT_EQ(engine->getFailedRemovals().getSize(), 1);
  engine->clear();
  EXPECT_EQ(engine->getFailedRemovals().getSize(), 0);
}

TEST_F(ZylAlgorithms, ASearchRefusesChangesOfWhatIsInUse) {
  const char* text = "This change is not allowed during a search.";
  Probe* unused = probe(env);
  engine->extract(x.getImpl());
  engine->log.clear();
  engine->setSearchActive(true);
  y.setLB(1);
  EXPECT_TRUE(RaisesWith<ZylNoChangeDuringSearchException>([&] { x.setLB(1); }, text));
  unused->end();
  const long id = x.getId();
  EXPECT_TRUE(RaisesWith<ZylNoChangeDuringSearchException>([&] { x.end(); }, text));
  EXPECT_EQ(impl->getIdManager()->getLive(id), x.getImpl()) << "it lives on";
  EXPECT_EQ(impl->getRecycleBin(), nullptr);
  EXPECT_TRUE(RaisesWith<ZylNoChangeDuringSearchException>(
      [&] { impl->change(ZylSetNumVarBounds(y.getImpl(), 0, 1)); }, text));
  EXPECT_TRUE(engine->log.empty()) << "the engine heard nothing";
  engine->setSearchActive(false);
  x.setLB(2);
  EXPECT_EQ(engine->log.size(), 1U);
}

TEST_F(ZylAlgorithms, RemovalsOfWhatIsNotInUseAreSkipped) {
  engine->extract(x.getImpl());
  engine->log.clear();
  probe(env)->end();
  EXPECT_EQ(engine->log, Log{"apply ZylDestroyExtractableArray"})
      << "only the removal tells that it applies to an array";
  engine->log.clear();
  x.end();
  EXPECT_EQ(engine->log, (Log{"apply ZylRemoveFromAllChange", "apply ZylDestroyExtractableArray"}));
}

TEST_F(ZylAlgorithms, ChangesWithoutATargetMayBeRefused) {
  engine->refuse("ZylSetNumVarBounds");
  std::ostringstream text;
  text << "ZylAlgorithm " << static_cast<const void*>(engine) << " cannot change";
  EXPECT_TRUE(RaisesWith<ZylAlgorithm::CannotChangeException>(
      [&] { impl->change(ZylSetNumVarBounds(x.getImpl(), 0, 1)); }, text.str()));
}

// --- texts ---------------------------------------------------------------------------------------

TEST_F(ZylAlgorithms, RefusalsListTheirIds) {
  std::ostringstream start;
  start << "ZylAlgorithm " << static_cast<const void*>(engine);
  std::vector<ZylExtractable> e;
  std::vector<std::string> ids;
  for (int n = 0; n <= 4; ++n) {
    SCOPED_TRACE(testing::Message() << n << " objects");
    ZylAlgorithm::CannotExtractException extraction(engine);
    ZylAlgorithm::CannotChangeException change(engine);
    ZylAlgorithm::CannotRemoveException removal(engine);
    // Removals name the last but one twice.
    std::string list = n == 0 ? "" : n == 1 ? " extractable " + ids[0] : " extractables ";
    std::string removed = list;
    for (int i = 0; i < n; ++i) {
      const std::size_t k = static_cast<std::size_t>(i);
      if (n > 1) list += (i == 0 ? "" : i == n - 1 ? " and " : ", ") + ids[k];
      if (n > 1) removed += i == n - 1 ? ids[k - 1] + " and " : ids[k] + ", ";
      extraction.getExtractables().add(e[k]);
      change.getExtractables().add(e[k]);
      removal.getExtractables().add(e[k]);
    }
    EXPECT_EQ(printed(extraction), "ZylAlgorithm cannot extract" + list);
    EXPECT_EQ(printed(change), start.str() + " cannot change" + list);
    EXPECT_EQ(printed(removal).rfind(start.str() + " cannot remove" + removed, 0), 0U)
        << printed(removal);
    EXPECT_STREQ(change.getMessage(), "ZylAlgorithm cannot change extractable");
    EXPECT_STREQ(removal.getMessage(), "ZylAlgorithm cannot remove extractable");
    extraction.end();
    removal.end();
    change.end();
    change.end();
    e.emplace_back(probe(env));
    ids.push_back(id(e.back()));
  }
}

TEST_F(ZylAlgorithms, OtherExceptions) {
  std::ostringstream address;
  address << static_cast<const void*>(engine);
  const ZylAlgorithm::NotExtractedException notExtracted(engine, x.getImpl());
  EXPECT_EQ(printed(notExtracted), "ZylExtractable " + id(x) +
                                       " ZylNumVarI has not been extracted by ZylAlgorithm " +
                                       address.str());
  EXPECT_STREQ(notExtracted.getMessage(),
               "The referenced ZylExtractable has not been extracted by the ZylAlgorithm");
  const ZylAlgorithm::NoObjectiveException noObjective(engine);
  EXPECT_EQ(printed(noObjective),
            " No Objective has been extracted by ZylAlgorithm " + address.str());
  EXPECT_TRUE(
      RaisesWith<ZylAlgorithm::Exception>([&] { engine->makeOpenIterator(nullptr, nullptr); },
                                          "Cannot evaluate forall on dynamic sets."));
  EXPECT_TRUE(RaisesWith<ZylNotImplemented>(
      [&] { engine->getValue(static_cast<const ZylConstraintI*>(nullptr)); },
      "ZylAlgorithm::getValue(ZylConstraint) is not implemented"));
  engine->refuse("ZylNumVarI");
  EXPECT_TRUE(RaisesWith<ZylAlgorithm::ExtractFailure>([&] { engine->extract(x.getImpl()); },
                                                       "ZylNumVarI"));
}

TEST(ZylAlgorithmStatus, PrintsItsName) {
  const char* const names[] = {"Unknown",    "Feasible",  "Optimal",
                               "Infeasible", "Unbounded", "Infeasible or Unbounded",
                               "Error",      "Error"};
  for (int i = -1; i < 8; ++i) {
    std::ostringstream stream;
    stream << static_cast<ZylAlgorithm::Status>(i);
    EXPECT_EQ(stream.str(), i < 0 ? "Error" : names[i]);
  }
}

// --- answers -------------------------------------------------------------------------------------

TEST_F(ZylAlgorithms, IntegerValuesAreRoundedAndBounded) {
  struct Row {
    double value;
    long expected;
  };
  ZylIntVar i(env, 0, 10);
  for (const Row& row : {Row{2.5, 3}, Row{-2.5, -3}, Row{0.4, 0},
                         Row{9007199254740991.0, ZylIntMax}, Row{-9007199254740991.0, ZylIntMin}}) {
    engine->value = row.value;
    EXPECT_EQ(handle.getIntValue(i), row.expected);
  }
  for (const double value :
       {9007199254740992.0, -9007199254740992.0, ZylInfinity, -ZylInfinity, std::nan("")}) {
    engine->value = value;
    EXPECT_TRUE(
        RaisesWith<ZylWrongUsage>([&] { handle.getIntValue(i); },
                                  "overflow occurred during the computation of the variable value"))
        << value;
  }
}

TEST_F(ZylAlgorithms, ArraysOfValuesReplaceTheContents) {
  engine->value = 2.0;
  ZylNumArray values(env, 5);
  handle.getValues(ZylNumVarArray(env, 2, x, y), values);
  ASSERT_EQ(values.getSize(), 2);
  EXPECT_EQ(values[1], 2.0);
  ZylIntArray ints(env, 3);
  handle.getIntValues(ZylIntVarArray(env, 1, ZylIntVar(env)), ints);
  EXPECT_EQ(ints.getSize(), 1);
  handle.getValues(ZylIntVarArray(env, 1, ZylIntVar(env)), values);
  EXPECT_EQ(values.getSize(), 1);
  EXPECT_EQ(handle.getValue(x + 3 * y + 1.0), 9.0);
}

TEST_F(ZylAlgorithms, BaseAnswersAndTime) {
  struct Base : RecordingAlgorithm {
    using RecordingAlgorithm::RecordingAlgorithm;
    bool solve() override { return ZylAlgorithmI::solve(); }
    void initTime() override {
      ++timeInits;
      ZylAlgorithmI::initTime();
    }
    void setOutCallback() override { ++outCallbacks; }
    long timeInits = 0;
    long outCallbacks = 0;
  };
  auto* base = new Base(impl);
  ZylAlgorithm a(base);
  EXPECT_FALSE(a.solve());
  EXPECT_EQ(a.getStatus(), ZylAlgorithm::Error);
  EXPECT_EQ(base->timeInits, 1) << "the question restarts the clock";
  std::ostringstream out;
  a.setOut(out);
  EXPECT_EQ(base->outCallbacks, 1);
  a.setWarning(out);
  EXPECT_EQ(base->outCallbacks, 1);
  a.printTime();
  EXPECT_EQ(out.str().rfind("Elapsed time since last reset : ", 0), 0U);
  a.resetTime();
  EXPECT_EQ(a.getTime(), 0.0) << "reset does not start it";
}

TEST_F(ZylAlgorithms, TheEvaluatorBelongsToIt) {
  ZylModelEvaluatorI* evaluator = engine->getModelEvaluator();
  EXPECT_EQ(engine->getModelEvaluator(), evaluator);
  EXPECT_EQ(evaluator->getAlgorithm(), engine);
  model.add(x);
  model.add(ZylRange(env, 0, ZylSin(y), 1));
  evaluator->load(model.getImpl());
  engine->clear();
  EXPECT_FALSE(evaluator->isInUse(x.getImpl()));
  engine->unlinkEvaluator();
  EXPECT_NE(engine->getModelEvaluator(), evaluator);
}

TEST_F(ZylAlgorithms, Properties) {
  EXPECT_FALSE(handle.hasProperty("p"));
  handle.setIntProperty("p", 4);
  EXPECT_EQ(handle.getIntProperty("p"), 4);
  EXPECT_THROW(handle.getNumProperty("p"), ZylNamedPropertySet::BadType);
  handle.removeAllProperties();
  EXPECT_EQ(handle.getProperties().getImpl(), nullptr);
  EXPECT_THROW(handle.removeProperty("p"), ZylNamedPropertySet::NotPresent);
}

TEST_F(ZylAlgorithms, LifeOnTheStackAndEarlyEnd) {
  { RecordingAlgorithm local(impl); }
  EXPECT_EQ(impl->getAlgorithms(), engine);
  handle.end();
  handle.clear();
  handle.end();
  EXPECT_EQ(impl->getAlgorithms(), nullptr);
}

// --- empty handles -------------------------------------------------------------------------------

TEST_F(ZylAlgorithms, EmptyHandlesRaise) {
  const ZylAlgorithm none;
  ExpectEachRaises<ZylWrongUsage>(
      "accessing ZylAlgorithm through 0 handle",
      {[&] { none.getEnv(); }, [&] { none.getObjValue(); }, [&] { none.getValue(ZylNumVar()); },
       [&] { none.getValue(ZylObjective()); }, [&] { none.getIntValue(ZylIntVar()); },
       [&] { none.getValues(ZylNumVarArray(), ZylNumArray()); },
       [&] { none.isExtracted(ZylExtractable()); }});
  ExpectEachRaises<ZylWrongUsage>(
      {{"Using empty ZylAlgorithm.", [&] { none.getValue(ZylNumExprArg()); }},
       {"Using empty ZylEnv handle.", [&] { none.setOut(std::cout); }},
       {"Using empty ZylEnv handle.", [&] { none.setError(std::cout); }}});
  ExpectEachRaises<ZylEmptyHandleException>("accessing ZylAlgorithm through 0 handle",
                                            {[&] { none.solve(); }, [&] { none.extract(model); }});
  ExpectEachRaises<ZylEmptyHandleException>(
      "ZylAlgorithm: Using empty handle",
      {[&] { none.getTime(); }, [&] { none.out(); }, [&] { none.getName(); },
       [&] { none.getProperties(); }, [&] { none.setNumProperty("x", 1); }});
}

TEST_F(ZylAlgorithms, EmptyArgumentsRaise) {
  const ZylNumArray nums(env);
  const ZylIntArray ints(env);
  ExpectEachRaises<ZylWrongUsage>(
      {{"Using empty ZylNumVar handle.", [&] { handle.getValue(ZylNumVar()); }},
       {"Using empty ZylNumVar handle.", [&] { handle.getValue(ZylIntVar()); }},
       {"Using empty ZylExtractable handle.", [&] { handle.getValue(ZylObjective()); }},
       {"Using empty ZylExtractable handle.", [&] { handle.isExtracted(ZylExtractable()); }},
       {"Using empty ZylExprArg.", [&] { handle.getValue(ZylNumExprArg()); }},
       {"Using empty ZylNumVarArray.", [&] { handle.getValues(ZylNumVarArray(), nums); }},
       {"Using empty ZylNumVarArray.", [&] { handle.getIntValues(ZylIntVarArray(), ints); }},
       {"Using empty ZylNumVar handle.", [&] { handle.getValues(ZylNumVarArray(env, 2), nums); }},
       {"Using empty ZylNumArray.", [&] { handle.getValues(ZylNumVarArray(env), ZylNumArray()); }},
       {"Using empty ZylNumArray.",
        [&] { handle.getIntValues(ZylIntVarArray(env), ZylIntArray()); }}});
  ExpectEachRaises<ZylEmptyHandleException>(
      {{"cannot extract empty model", [&] { handle.extract(ZylModel()); }},
       {"ZylAlgorithm: Using empty string", [&] { handle.hasProperty(nullptr); }},
       {"ZylNamedProperty: Using empty handle", [&] { handle.addProperty(ZylNamedProperty()); }},
       {"ZylNamedPropertySet: Using empty handle",
        [&] { handle.setProperties(ZylNamedPropertySet()); }}});
}

}  // namespace
}  // namespace zyl::test
