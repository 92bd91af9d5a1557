// Sequences of extractables.

#include "vorlane/model/extractable_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "support/probe.h"
#include "support/recording.h"
#include "support/support.h"

namespace zyl::test {
namespace {

using Elements = std::vector<ZylExtractableI*>;

class ZylExtractableLists : public EnvTest {
 protected:
  ~ZylExtractableLists() override { list.clear(); }
  Elements elements() const {
    Elements found;
    for (ZylExtractableList::Iterator it(list); it.ok(); ++it) found.push_back(*it);
    return found;
  }
  ZylExtractableArray arrayOf(const Elements& objects) {
    ZylExtractableArray array(env);
    for (ZylExtractableI* object : objects) array.addI(object);
    return array;
  }

  ZylExtractableList list;
};

TEST_F(ZylExtractableLists, AgreeWithVector) {
  std::vector<Probe*> probes;
  for (int i = 0; i < 12; ++i) probes.push_back(probe(env));
  const long usage = impl->getMemoryUsage();
  for (unsigned seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const auto any = [&] { return probes[random() % probes.size()]; };
    Elements model;
    for (int step = 0; step < 300; ++step) {
      switch (random() % 8) {
        case 0: {
          Probe* gone = any();
          const auto found = std::find(model.begin(), model.end(), gone);
          ASSERT_EQ(list.remove(gone), found != model.end());
          if (found != model.end()) model.erase(found);
          break;
        }
        case 1: {
          const Elements gone = {any(), nullptr, any(), any()};
          const auto goes = [&](ZylExtractableI* e) {
            return std::count(gone.begin(), gone.end(), e) > 0;
          };
          Elements expected;
          std::copy_if(model.begin(), model.end(), std::back_inserter(expected), goes);
          model.erase(std::remove_if(model.begin(), model.end(), goes), model.end());
          ZylExtractableArray arguments = arrayOf(gone);
          ZylExtractableArray removed(env);
          list.remove(arguments, removed);
          ASSERT_EQ(removed.getSize(), static_cast<long>(expected.size()));
          for (std::size_t i = 0; i < expected.size(); ++i)
            ASSERT_EQ(removed[i].getImpl(), expected[i]);
          arguments.end();
          removed.end();
          break;
        }
        case 2: {
          ZylExtractableArray more = arrayOf({any(), nullptr, any()});
          list.add(more);
          for (long i : {0, 2}) model.push_back(more.getI(i));
          more.end();
          break;
        }
        case 3:
          if (random() % 20 == 0) {
            list.clear();
            model.clear();
          }
          break;
        default: model.push_back(any()); list.add(model.back());
      }
      ASSERT_EQ(elements(), model);
    }
    for (Probe* p : probes) {
      EXPECT_EQ(impl->getIdManager()->getLive(p->getId()), p) << "slots are restored";
      EXPECT_EQ(list.contains(p), std::count(model.begin(), model.end(), p) > 0);
    }
    list.clear();
    EXPECT_TRUE(list.isEmpty());
    EXPECT_EQ(impl->getMemoryUsage(), usage);
  }
}

TEST_F(ZylExtractableLists, WhatIsMarkedGoes) {
  Probe* a = probe(env);
  Probe* b = probe(env);
  Probe* c = probe(env);
  list.add(arrayOf({a, b, a, c, b}));
  impl->getIdManager()->mark(b->getId());
  list.removeMarked();
  EXPECT_EQ(elements(), (Elements{a, a, c}));
  impl->getIdManager()->mark(c->getId());
  ZylExtractableArray removed(env);
  list.remove(arrayOf({a}), removed);
  EXPECT_EQ(removed.getSize(), 3) << "what is marked for another reason goes along";
  impl->getIdManager()->set(b->getId(), b);
  impl->getIdManager()->set(c->getId(), c);
  list.add(b);
  EXPECT_EQ(elements(), Elements{b}) << "the tail is mended";
}

TEST_F(ZylExtractableLists, ObjectsElsewhereMarkNothing) {
  ZylEnv other;
  Probe* a = probe(env);
  Probe* stranger = probe(other);
  ASSERT_EQ(a->getId(), stranger->getId());
  list.add(a);
  ZylExtractableArray removed(env);
  list.remove(arrayOf({stranger}), removed);
  EXPECT_EQ(elements(), Elements{a});
  EXPECT_EQ(impl->getIdManager()->getLive(a->getId()), a);
  other.end();
}

TEST_F(ZylExtractableLists, ALocalEnvironmentUndoesEveryEdit) {
  Probe* a = probe(env);
  Probe* b = probe(env);
  Probe* c = probe(env);
  const Elements before = {a, b, a, c};
  const ZylExtractableArray extra = arrayOf({b, c});
  ZylExtractableArray removed(env);
  list.add(arrayOf(before));
  RecordingLocalEnv local(impl, /*undoes=*/true);
  const std::vector<std::function<void()>> edits = {
      [&] { list.add(b); },
      [&] { list.remove(a); },
      [&] { list.remove(c); },
      [&] { list.add(extra); },
      [&] { list.clear(); },
      [&] { list.remove(extra, removed); },
      [&] { list.remove(c), list.add(a), list.remove(a), list.add(c); }};
  for (std::size_t i = 0; i < edits.size(); ++i) {
    SCOPED_TRACE(testing::Message() << "edit " << i);
    impl->setLocalEnv(&local);
    edits[i]();
    local.undo();
    impl->setLocalEnv(nullptr);
    EXPECT_EQ(elements(), before);
    list.add(b);
    EXPECT_EQ(elements().back(), b) << "the tail is undone too";
    removed.clear();
    list.clear();
    list.add(arrayOf(before));
  }
}

}  // namespace
}  // namespace zyl::test
