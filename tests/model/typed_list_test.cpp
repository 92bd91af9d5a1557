// Extractables by class.

#include "vorlane/model/typed_list.h"

#include <algorithm>
#include <vector>

#include "support/probe.h"
#include "support/support.h"
#include "vorlane/vorlane.h"

namespace zyl::test {
namespace {

class ZylTypedLists : public EnvTest {
 protected:
  std::vector<ZylExtractableI*> listed(ZylTypeInfo type) {
    ZylTypedList* list = ZylTypedListManager::getOrMake(impl->getTypedLists(), impl)->getList(type);
    std::vector<ZylExtractableI*> elements;
    if (list == nullptr) return elements;
    for (ZylExtractableList::Iterator it(*list); it.ok(); ++it) elements.push_back(*it);
    return elements;
  }
  using Elements = std::vector<ZylExtractableI*>;
};

TEST_F(ZylTypedLists, FollowCreationAndDeath) {
  Probe* a = probe(env);
  auto* bare = new (impl) BareProbe(impl, nullptr);
  Probe* b = probe(env);
  EXPECT_EQ(listed(Probe::GetTypeInfo()), (Elements{a, b})) << "what was there before the question";
  EXPECT_EQ(listed(BareProbe::GetTypeInfo()), Elements{bare});
  Probe* c = probe(env);
  Probe* shortLived = probe(env);
  shortLived->end();
  a->end();
  EXPECT_EQ(listed(Probe::GetTypeInfo()), (Elements{b, c}));
  b->end();
  c->end();
  EXPECT_TRUE(listed(Probe::GetTypeInfo()).empty());
}

TEST_F(ZylTypedLists, MirrorTheHierarchy) {
  probe(env);
  ZylTypedListManagerI* manager = ZylTypedListManager::getOrMake(impl->getTypedLists(), impl);
  ZylTypedList* list = manager->getList(Probe::GetTypeInfo());
  ASSERT_NE(list, nullptr);
  ZylTypedList* root = list->getFather();
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(root->getType(), ZylExtractableI::GetTypeInfo());
  EXPECT_EQ(root->getFather(), nullptr);
  EXPECT_EQ(manager->getList(ZylModelI::GetTypeInfo()), nullptr);
  new (impl) BareProbe(impl, nullptr);
  ZylTypedList* second = manager->getList(BareProbe::GetTypeInfo());
  EXPECT_EQ(root->getFirstSubType(), list);
  EXPECT_EQ(list->getNext(), second) << "newer classes stand behind";
}

TEST_F(ZylTypedLists, StartAfreshAndEnd) {
  EXPECT_TRUE(impl->getTypedLists().isEmpty());
  Probe* a = probe(env);
  EXPECT_EQ(listed(Probe::GetTypeInfo()), Elements{a});
  impl->getTypedLists().getImpl()->clear();
  Probe* b = probe(env);
  EXPECT_EQ(listed(Probe::GetTypeInfo()), (Elements{a, b}));
  impl->getTypedLists().end(impl);
  EXPECT_TRUE(impl->getTypedLists().isEmpty());
  b->end();
  EXPECT_EQ(listed(Probe::GetTypeInfo()), Elements{a});
}

TEST_F(ZylTypedLists, AnInterruptedClassificationListsNothingTwice) {
  for (const bool asked : {false, true}) {
    SCOPED_TRACE(asked ? "pending objects" : "all objects");
    const auto all = [&] {
      Elements elements = listed(Probe::GetTypeInfo());
      std::sort(elements.begin(), elements.end());
      return elements;
    };
    Elements made = all();
    if (!asked) impl->getTypedLists().end(impl);
    for (int i = 0; i < 300; ++i) made.push_back(probe(env));
    FailEachAllocation(
        impl, [&] { listed(Probe::GetTypeInfo()); }, [] {});
    std::sort(made.begin(), made.end());
    EXPECT_EQ(all(), made);
  }
}

}  // namespace
}  // namespace zyl::test
