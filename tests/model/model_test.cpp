// Models: ordered bags of extractables.

#include "vorlane/model/model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "support/probe.h"
#include "support/recording.h"
#include "support/support.h"
#include "vorlane/vorlane.h"

namespace zyl::test {
namespace {

class ZylModels : public EnvTest {
 protected:
  using Elements = std::vector<ZylExtractableI*>;
  static Elements elements(const ZylModel& m) {
    Elements result;
    for (ZylModel::Iterator it(m); it.ok(); ++it) result.push_back((*it).getImpl());
    return result;
  }
  // An algorithm that has the model alone.
  RecordingAlgorithm* listener() {
    auto* a = new RecordingAlgorithm(impl);
    a->nested = false;
    a->extract(model.getImpl());
    a->log.clear();
    return a;
  }

  ZylModel model{env, "m"};
};

// Every kind of edit against a plain vector; the model must also stay appendable at its end.
TEST_F(ZylModels, AgreeWithAVector) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    ZylModel bag(env);
    Elements naive;
    Elements pool;
    for (int i = 0; i < 12; ++i) pool.push_back(probe(env));
    for (int step = 0; step < 300; ++step) {
      ZylExtractableI* e = pool[random() % pool.size()];
      switch (random() % 7) {
        case 0: {
          bag.remove(ZylExtractable(e));
          const auto place = std::find(naive.begin(), naive.end(), e);
          if (place != naive.end()) naive.erase(place);
          break;
        }
        case 1: {
          ZylExtractableArray several(env);
          for (std::size_t k = random() % 4; k > 0; --k) {
            ZylExtractableI* one = pool[random() % pool.size()];
            several.addI(random() % 5 == 0 ? nullptr : one);
          }
          bag.remove(several);
          for (long i = 0; i < several.getSize(); ++i) {
            if (several.getI(i) != nullptr) std::erase(naive, several.getI(i));
          }
          break;
        }
        case 2: {
          ZylExtractableArray several(env, 3, ZylExtractable(e), ZylExtractable(),
                                      ZylExtractable(pool[0]));
          bag.add(several);
          naive.push_back(e);
          naive.push_back(pool[0]);
          break;
        }
        case 3:
          if (random() % 3 == 0) {
            const std::size_t k = random() % pool.size();
            std::erase(naive, pool[k]);
            pool[k]->end();
            pool[k] = probe(env);
          }
          break;
        default:
          bag.add(ZylExtractable(e));
          naive.push_back(e);
      }
      ASSERT_EQ(elements(bag), naive) << "step " << step;
    }
    bag.end();
  }
}

TEST_F(ZylModels, EditsSendOneChangeEach) {
  RecordingAlgorithm* a = listener();
  ZylExtractable e(probe(env));
  ZylExtractable f(probe(env));
  EXPECT_EQ(model.add(e).getImpl(), e.getImpl());
  model.add(e);
  model.add(ZylExtractableArray(env, 2, e, f));
  EXPECT_EQ(a->log,
            (Log{"apply ZylAddOneToModel", "apply ZylAddOneToModel", "apply ZylAddToModel"}));
  a->log.clear();
  model.remove(e);
  EXPECT_EQ(elements(model), (Elements{e.getImpl(), e.getImpl(), f.getImpl()}));
  static long removed;
  a->onApply = [](const ZylChange& change) {
    removed = static_cast<const ZylRemoveFromModel&>(change).getElements().getSize();
  };
  model.remove(ZylExtractableArray(env, 1, e));
  EXPECT_EQ(removed, 2) << "all occurrences in one change";
  EXPECT_EQ(a->log, (Log{"apply ZylRemoveFromModel", "apply ZylRemoveFromModel"}));

  a->log.clear();
  model.remove(e);
  model.remove(ZylExtractableArray(env, 1, e));
  model.remove(ZylExtractableArray(env));
  model.add(ZylExtractableArray(env));
  EXPECT_TRUE(a->log.empty()) << "nothing happened";
  a->onApply = nullptr;
}

TEST_F(ZylModels, AnEndedElementIsDroppedSilently) {
  Probe* e = probe(env);
  Probe* f = probe(env);
  for (ZylExtractableI* each : {e, f, e}) model.add(ZylExtractable(each));
  RecordingAlgorithm* a = listener();
  e->end();
  EXPECT_EQ(elements(model), Elements{f});
  EXPECT_EQ(a->log, Log{"apply ZylDestroyExtractableArray"}) << "no change of the model itself";
  model.add(ZylExtractable(f));
  EXPECT_EQ(elements(model), (Elements{f, f}));
}

TEST_F(ZylModels, EndingAModelLeavesItsElements) {
  Probe* e = probe(env);
  model.add(ZylExtractable(e));
  ZylModel outer(env, "outer");
  outer.add(model);
  const long id = e->getId();
  model.end();
  EXPECT_EQ(impl->getIdManager()->getLive(id), e);
  EXPECT_TRUE(elements(outer).empty());
}

TEST_F(ZylModels, DisplayListsTheElements) {
  ZylModel inner(env);
  const std::string innerId = std::to_string(inner.getId());
  auto* bare = new (impl) BareProbe(impl, nullptr);
  inner.add(ZylExtractable(bare));
  model.add(inner);
  const std::string bareText = "ZylExtractable unknow" + std::to_string(bare->getId()) + "\n";
  EXPECT_TRUE(DisplaysAs(inner, "ZylModel model" + innerId + " = {\n" + bareText + "\n}\n"));
  EXPECT_TRUE(DisplaysAs(
      model, "ZylModel m = {\nZylModel model" + innerId + " = {\n" + bareText + "\n}\n\n}\n"));
}

TEST_F(ZylModels, ClonesKeepOrderAndSharing) {
  ZylEnv other;
  Probe* shared = probe(env, "shared");
  Probe* user = probe(env, "user", shared);
  for (ZylExtractableI* e :
       {static_cast<ZylExtractableI*>(shared), static_cast<ZylExtractableI*>(user),
        static_cast<ZylExtractableI*>(shared)}) {
    model.add(ZylExtractable(e));
  }
  ZylModel clone = model.getClone(other);
  const Elements cloned = elements(clone);
  ASSERT_EQ(cloned.size(), 3U);
  EXPECT_EQ(cloned[0], cloned[2]);
  EXPECT_EQ(static_cast<Probe*>(cloned[1])->left, cloned[0]);
  EXPECT_EQ(cloned[0]->getEnv(), other.getImpl());
  EXPECT_EQ(clone.getName(), nullptr);
  EXPECT_EQ(elements(model).size(), 3U);
  other.end();
}

TEST_F(ZylModels, FailedAllocationsChangeNothing) {
  ZylExtractableArray several(env);
  for (int i = 0; i < 10; ++i) several.addI(probe(env));
  for (int form = 0; form < 3; ++form) {
    SCOPED_TRACE(testing::Message() << "form " << form);
    ZylModel bag(env);
    bag.add(several);
    const Elements before = elements(bag);
    FailEachAllocation(
        [&] {
          useUpPools(impl);
          return &bag;
        },
        [&](ZylModel& m) {
          if (form == 0) m.add(ZylExtractable(several.getI(0)));
          if (form == 1) m.remove(ZylExtractable(several.getI(3)));
          if (form == 2) m.remove(several);
        },
        [&](ZylModel& m) {
          // A removal has happened when its change finds no storage.
          if (form == 0) {
            EXPECT_EQ(elements(m), before);
          }
          const ZylIdManager& ids = *impl->getIdManager();
          for (ZylIdManager::Iterator it(ids); it.ok(); ++it) ASSERT_FALSE(ids.isMarked(*it));
          ZylExtractable extra(probe(env));
          m.add(extra);
          EXPECT_EQ(elements(m).back(), extra.getImpl());
          m.remove(extra);
        });
  }
}

struct TextCase {
  const char* name;
  void (*call)(ZylModel model, ZylExtractable own, ZylExtractable foreign);
  const char* text;
  bool wrongUsage = false;
};
void PrintTo(const TextCase& row, std::ostream* stream) { *stream << row.name; }
class ZylModelFailure : public testing::TestWithParam<TextCase> {};

TEST_P(ZylModelFailure, HasItsText) {
  EnvFixture env;
  EnvFixture other;
  const auto call = [&] {
    GetParam().call(ZylModel(env.env), ZylExtractable(probe(env.env)),
                    ZylExtractable(probe(other.env)));
  };
  if (GetParam().wrongUsage) {
    EXPECT_TRUE(RaisesWith<ZylWrongUsage>(call, GetParam().text));
  } else {
    EXPECT_TRUE(RaisesWith<ZylEmptyHandleException>(call, GetParam().text));
  }
}

using M = ZylModel;
using E = ZylExtractable;
using A = ZylExtractableArray;
INSTANTIATE_TEST_SUITE_P(
    Texts, ZylModelFailure,
    testing::Values(
        TextCase{"addToEmpty", [](M, E e, E) { M().add(e); },
                 "trying to add to an empty handle ZylModel"},
        TextCase{"addEmpty", [](M m, E, E) { m.add(E()); },
                 "trying to add an empty handle extractable"},
        TextCase{"addForeign", [](M m, E, E f) { m.add(f); },
                 "extractables can only be added to ZylModel of the same env", true},
        TextCase{"addForeignArray", [](M m, E e, E f) { m.add(A(m.getEnv(), 2, e, f)); },
                 "extractables can only be added to ZylModel of the same env", true},
        TextCase{"removeFromEmpty", [](M, E e, E) { M().remove(e); },
                 "trying to remove 0 extractor handle"},
        TextCase{"removeEmpty", [](M m, E, E) { m.remove(E()); },
                 "trying to remove 0 extractable handle"},
        TextCase{"removeForeign", [](M m, E, E f) { m.remove(f); },
                 "extractables can only be ZylRemoved from ZylModel of the same env", true},
        TextCase{"addArrayToEmpty", [](M m, E e, E) { M().add(A(m.getEnv(), 1, e)); },
                 "trying to add 0 extractor handle"},
        TextCase{"removeArrayFromEmpty", [](M m, E e, E) { M().remove(A(m.getEnv(), 1, e)); },
                 "trying to remove 0 extractor handle"},
        TextCase{"addEmptyArray", [](M m, E, E) { m.add(A()); },
                 "Using empty ZylExtractableArray handle."},
        TextCase{"removeEmptyArray", [](M m, E, E) { m.remove(A()); },
                 "Using empty ZylExtractableArray handle."},
        TextCase{"expandToEmpty", [](M, E e, E) { M().expand(e); },
                 "Expanding to an empty ZylModel handle."},
        TextCase{"expandEmpty", [](M m, E, E) { m.expand(E()); },
                 "trying to expand an empty extractable handle"},
        TextCase{"expandForeign", [](M m, E, E f) { m.expand(f); },
                 "extractables can only be expanded to ZylModel of the same env", true},
        TextCase{"expand", [](M m, E e, E) { m.expand(e); }, "can not call expand", true}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace zyl::test
