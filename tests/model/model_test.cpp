// Models: ordered bags of extractables.

#include "vorlane/model/model.h"

#include <gtest/gtest.h>

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

TEST_F(ZylModels, EditsSendOneChangeEach) {
  RecordingAlgorithm* a = listener();
  ZylExtractable e(probe(env));
  ZylExtractable f(probe(env));
  EXPECT_EQ(model.add(e).getImpl(), e.getImpl());
  model.add(e);
  model.add(ZylExtractableArray(env, 3, e, ZylExtractable(), f));
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

TEST_F(ZylModels, Texts) {
  EnvFixture other;
  const ZylModel none;
  const ZylExtractable nothing;
  const ZylExtractable own(probe(env));
  const ZylExtractable foreign(probe(other.env));
  const ZylExtractableArray array(env, 1, own);
  const ZylExtractableArray mixed(env, 2, own, foreign);
  ExpectEachRaises<ZylEmptyHandleException>(
      {{"trying to add to an empty handle ZylModel", [&] { none.add(own); }},
       {"trying to add an empty handle extractable", [&] { model.add(nothing); }},
       {"trying to remove 0 extractor handle", [&] { none.remove(own); }},
       {"trying to remove 0 extractable handle", [&] { model.remove(nothing); }},
       {"trying to add 0 extractor handle", [&] { none.add(array); }},
       {"trying to remove 0 extractor handle", [&] { none.remove(array); }},
       {"Using empty ZylExtractableArray handle.", [&] { model.add(ZylExtractableArray()); }},
       {"Expanding to an empty ZylModel handle.", [&] { none.expand(own); }},
       {"trying to expand an empty extractable handle", [&] { model.expand(nothing); }},
       {"Using empty handle.",
        [&] { static_cast<void>(model.getClone(ZylEnv(static_cast<ZylEnvI*>(nullptr)))); }}});
  const std::string added = "extractables can only be added to ZylModel of the same env";
  ExpectEachRaises<ZylWrongUsage>(
      {{added, [&] { model.add(foreign); }},
       {added, [&] { model.add(mixed); }},
       {"extractables can only be ZylRemoved from ZylModel of the same env",
        [&] { model.remove(foreign); }},
       {"extractables can only be expanded to ZylModel of the same env",
        [&] { model.expand(foreign); }},
       {"can not call expand", [&] { model.expand(own); }}});
  EXPECT_TRUE(elements(model).empty());
}

}  // namespace
}  // namespace zyl::test
