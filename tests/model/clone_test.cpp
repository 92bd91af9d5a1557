// The memo of deep copies.

#include "vorlane/model/clone_manager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <vector>

#include "support/probe.h"
#include "support/support.h"
#include "vorlane/vorlane.h"

namespace zyl::test {
namespace {

class ZylCloning : public EnvTest {
 protected:
  ~ZylCloning() override { other.end(); }
  Probe* cloneOf(Probe* p) { return static_cast<Probe*>(target->getClone(p)); }

  ZylEnv other;
  ZylEnvI* target = other.getImpl();
};

TEST_F(ZylCloning, SharedPartsStayShared) {
  Probe* leaf = probe(env, "leaf");
  Probe* left = probe(env, "left", leaf);
  Probe* right = probe(env, "right", leaf, leaf);
  Probe* top = probe(env, "top", left, right);
  Probe* clone = cloneOf(top);
  EXPECT_EQ(clone->getEnv(), target);
  EXPECT_STREQ(clone->getName(), "top");
  auto* cloneLeft = static_cast<Probe*>(clone->left);
  auto* cloneRight = static_cast<Probe*>(clone->right);
  EXPECT_EQ(cloneLeft->left, cloneRight->left);
  EXPECT_EQ(cloneRight->left, cloneRight->right);
  EXPECT_NE(cloneLeft->left, leaf);
  EXPECT_NE(cloneOf(top), clone) << "the memo lasts for the outermost call";
  EXPECT_FALSE(target->hasClone(top));
  EXPECT_EQ(target->getClone(nullptr), nullptr);
  EXPECT_EQ(target->substitute(nullptr), nullptr);
  EXPECT_FALSE(target->hasClone(nullptr));
}

// Deaths of originals and of clones, several originals with one clone, originals with a second
// clone, and levels, against a plain list.
TEST_F(ZylCloning, ALockedMemoAgreesWithAList) {
  struct Entry {
    Probe* original;
    ZylExtractableI* clone;
  };
  const auto isOf = [](const Probe* object) {
    return [object](const Entry& e) { return e.original == object || e.clone == object; };
  };
  for (unsigned seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const auto pick = [&](auto& from) {
      return std::next(from.begin(), static_cast<long>(random() % from.size()));
    };
    std::vector<Probe*> originals;
    std::vector<Probe*> clones;
    std::vector<Entry> known;
    std::vector<std::pair<long, std::vector<Entry>>> levels;
    target->lockCloning();
    for (int step = 0; step < 600; ++step) {
      // Every other original is of the memo's own environment, where it may die.
      while (originals.size() < 20) originals.push_back(probe(random() % 2 == 0 ? env : other));
      Probe* original = *pick(originals);
      const long action = static_cast<long>(random() % 8);
      if (action < 4) {
        const auto entry = std::find_if(known.begin(), known.end(),
                                        [&](const Entry& e) { return e.original == original; });
        const bool given = action == 3 && !clones.empty();
        if (given || entry == known.end()) {
          // One entry for each id; a level does not bring back what was displaced.
          const auto sameId = [&](const Entry& e) {
            return e.original->getId() == original->getId();
          };
          if (std::erase_if(known, sameId) != 0) levels.clear();
          if (given) {
            known.push_back({original, *pick(clones)});
            target->setClone(original, known.back().clone);
          } else {
            known.push_back({original, cloneOf(original)});
            clones.push_back(static_cast<Probe*>(known.back().clone));
          }
        }
      } else if (action == 4 || (action == 5 && !clones.empty())) {
        auto& from = action == 4 ? originals : clones;
        const auto dead = pick(from);
        if ((*dead)->getEnv() != target) continue;  // those must live as long as the memo
        std::erase_if(known, isOf(*dead));
        for (auto& level : levels) std::erase_if(level.second, isOf(*dead));
        (*dead)->end();
        from.erase(dead);
      } else if (action == 6) {
        levels.emplace_back(target->lockCloningLevel(), known);
      } else if (!levels.empty()) {
        target->unlockCloningLevel(levels.back().first);
        known = levels.back().second;
        levels.pop_back();
      }
      for (Probe* o : originals) {
        const auto entry = std::find_if(known.begin(), known.end(),
                                        [o](const Entry& e) { return e.original == o; });
        ASSERT_EQ(target->hasClone(o), entry != known.end()) << "step " << step;
        if (entry != known.end()) {
          ASSERT_EQ(target->getClone(o), entry->clone);
        }
      }
    }
    target->unlockCloning();
    for (Probe* o : originals) EXPECT_FALSE(target->hasClone(o));
  }
}

TEST_F(ZylCloning, OriginalsAreKnownByMoreThanTheirIds) {
  Probe* a = probe(env, "a");
  Probe* sameId = probe(other, "same id");
  ZylEnv third;
  Probe* stranger = probe(third, "stranger");
  ASSERT_EQ(sameId->getId(), a->getId());
  ASSERT_EQ(stranger->getId(), a->getId());
  target->lockCloning();
  Probe* clone = cloneOf(a);
  EXPECT_FALSE(target->hasClone(stranger));
  sameId->end();
  EXPECT_EQ(cloneOf(a), clone) << "the end of another object with this id is no matter";
  EXPECT_STREQ(cloneOf(stranger)->getName(), "stranger");
  target->unlockCloningLevel(-1);
  EXPECT_FALSE(target->hasClone(stranger));
  target->unlockCloning();
  third.end();
}

TEST_F(ZylCloning, AFailureGivesTheLockBack) {
  auto* bare = new (impl) BareProbe(impl, nullptr);
  Probe* user = probe(env, "user", bare);
  const std::string text =
      "Extractable with id " + std::to_string(bare->getId()) + " do not have clone mechanism";
  EXPECT_TRUE(RaisesWith<ZylExtractable::NoCloneMechanismException>([&] { cloneOf(user); }, text));
  EXPECT_FALSE(target->isCloningLocked());
  EXPECT_TRUE(
      RaisesWith<ZylWrongUsage>([&] { target->substitute(user); }, "can not call substitute"));
  EXPECT_FALSE(target->isCloningLocked());
  EXPECT_THROW(cloneOf(user), ZylExtractable::NoCloneMechanismException) << "no expander is left";
  EXPECT_EQ(target->lockCloning(), 1);
  EXPECT_THROW(cloneOf(user), ZylExtractable::NoCloneMechanismException);
  EXPECT_TRUE(target->isCloningLocked()) << "the client's lock stays the client's";
  target->unlockCloning();
}

class Substituting : public ZylExpanderI {
 public:
  explicit Substituting(ZylEnvI* env) : ZylExpanderI(env) {}
  ZylExtractableI* substitute(ZylExtractableI* object) override {
    return object->getName() != nullptr && object->getName()[0] == '*' ? Stand : nullptr;
  }
  static inline ZylExtractableI* Stand = nullptr;
};

TEST_F(ZylCloning, TheExpanderDecidesOnlyInSubstitute) {
  Probe* special = probe(env, "*");
  Probe* user = probe(env, "user", special);
  Substituting::Stand = probe(other, "stand-in");
  target->setExpanderPop([](ZylEnvI* e) -> ZylExpanderI* { return new Substituting(e); });
  EXPECT_NE(cloneOf(user)->left, Substituting::Stand);
  EXPECT_EQ(static_cast<Probe*>(target->substitute(user))->left, Substituting::Stand);
  EXPECT_NE(cloneOf(user)->left, Substituting::Stand) << "taken back behind the call";
}

}  // namespace
}  // namespace zyl::test
