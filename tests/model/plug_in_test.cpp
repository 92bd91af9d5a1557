// Plug-ins and their add-ons.

#include "vorlane/model/plug_in.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "support/support.h"
#include "vorlane/vorlane.h"

namespace zyl::test {
namespace {

std::vector<std::string> events;

class Named : public ZylPlugIn {
  ZYL_TYPE(Named, ZylPlugIn)
 public:
  Named(ZylEnvI* env, const char* text) : ZylPlugIn(env), name(text) {}
  ~Named() override { events.push_back(std::string("end ") + name); }
  const char* name;
};
ZYL_TYPE_DEF(Named, ZylPlugIn)

class Addon : public ZylPlugInAddon {
  ZYL_TYPE(Addon, ZylPlugInAddon)
 public:
  Addon(ZylEnvI* env, const char* name) : ZylPlugInAddon(env), _name(name) {}
  ~Addon() override { events.push_back(std::string("end ") + _name); }
  void plugInAdded(ZylPlugIn* plugIn) override { note("added", plugIn); }
  void plugInRemoved(ZylPlugIn* plugIn) override { note("removed", plugIn); }

 private:
  void note(const char* what, ZylPlugIn* plugIn) {
    events.push_back(std::string(_name) + " " + what + " " + static_cast<Named*>(plugIn)->name);
  }
  const char* _name;
};
ZYL_TYPE_DEF(Addon, ZylPlugInAddon)

class ZylPlugIns : public EnvTest {
 protected:
  ZylPlugIns() { events.clear(); }
  Named* plugIn(const char* name) { return new (impl) Named(impl, name); }
  Addon* addon(const char* name) { return new (impl) Addon(impl, name); }

  ZylPlugInManager* manager = impl->getPlugInManager();
};

using Events = std::vector<std::string>;

TEST_F(ZylPlugIns, CounterpartsMeetInEitherOrder) {
  Addon* a = addon("a");
  manager->add(a, "service");
  Named* p = plugIn("p");
  manager->add(p, "service");
  EXPECT_EQ(events, (Events{"a added p"}));
  Addon* b = addon("b");
  manager->add(b, "service");
  manager->add(plugIn("elsewhere"), "other service");
  EXPECT_EQ(events, (Events{"a added p", "b added p"}));

  events.clear();
  manager->remove(a, "service");
  manager->remove(a, "service");
  manager->remove(b, "no such service");
  EXPECT_EQ(events, (Events{"a removed p"}));
  delete a;
  manager->remove(p, "service");
  EXPECT_EQ(events, (Events{"a removed p", "end a", "b removed p"}));
  delete p;
}

TEST_F(ZylPlugIns, AreFoundByNameAndExactType) {
  EXPECT_FALSE(manager->isCreated(Named::GetTypeInfo(), "service"));
  EXPECT_EQ(manager->findCell("service"), nullptr);
  Named* p = plugIn("p");
  manager->add(p, "service");
  EXPECT_TRUE(manager->isCreated(Named::GetTypeInfo(), "service"));
  EXPECT_FALSE(manager->isCreated(ZylPlugIn::GetTypeInfo(), "service"));
  EXPECT_FALSE(manager->isCreated(Named::GetTypeInfo(), "other"));
  EXPECT_EQ(manager->findOrCreateCell("service"), manager->findCell("service"));
  manager->remove(p, "service");
  EXPECT_FALSE(manager->isCreated(Named::GetTypeInfo(), "service"));
  delete p;
}

// Takes itself off when a plug-in comes, and does something once when one goes.
class Leaving : public Addon {
 public:
  Leaving(ZylEnvI* env, ZylPlugInManager* manager) : Addon(env, "leaving"), _manager(manager) {}
  void plugInAdded(ZylPlugIn* plugIn) override {
    Addon::plugInAdded(plugIn);
    if (leaves) _manager->remove(this, "service");
  }
  void plugInRemoved(ZylPlugIn* plugIn) override {
    Addon::plugInRemoved(plugIn);
    if (const auto action = std::exchange(onRemoved, nullptr)) action();
  }
  bool leaves = false;
  std::function<void()> onRemoved;

 private:
  ZylPlugInManager* _manager;
};

TEST_F(ZylPlugIns, AddonsMayLeaveAndRemoveOthersWhileTheyHear) {
  auto* leaving = new (impl) Leaving(impl, manager);
  manager->add(addon("a"), "service");
  manager->add(leaving, "service");
  Named* p = plugIn("p");
  Named* q = plugIn("q");
  manager->add(p, "service");
  manager->add(q, "service");
  events.clear();
  leaving->onRemoved = [&] {
    manager->remove(q, "service");
    delete q;
  };
  manager->remove(p, "service");
  EXPECT_FALSE(manager->isCreated(Named::GetTypeInfo(), "service"));
  delete p;

  leaving->leaves = true;
  events.clear();
  manager->add(plugIn("r"), "service");
  EXPECT_EQ(events, (Events{"leaving added r", "leaving removed r", "a added r"}));
  delete leaving;
}

TEST_F(ZylPlugIns, ACallMayDeleteTheOneThatWouldBeCalledNext) {
  auto* leaving = new (impl) Leaving(impl, manager);
  Addon* next = addon("next");
  for (Addon* each : {addon("last"), next, static_cast<Addon*>(leaving)}) {
    manager->add(each, "service");
  }
  Named* p = plugIn("p");
  manager->add(p, "service");
  events.clear();
  leaving->onRemoved = [&] {
    manager->remove(next, "service");
    delete next;
  };
  manager->remove(p, "service");
  EXPECT_EQ(events, (Events{"leaving removed p", "next removed p", "end next", "last removed p"}));

  manager->add(p, "service");
  Named* q = plugIn("q");
  manager->add(q, "service");
  events.clear();
  leaving->onRemoved = [&] {
    manager->remove(p, "service");
    delete p;
  };
  manager->remove(leaving, "service");
  EXPECT_EQ(events, (Events{"leaving removed q", "leaving removed p", "last removed p", "end p"}));
  delete leaving;
}

TEST(ZylPlugInManager, EndsWhatIsLeft) {
  ZylEnv env;
  events.clear();
  ZylEnvI* impl = env.getImpl();
  impl->getPlugInManager()->add(new (impl) Named(impl, "p"), "first");
  impl->getPlugInManager()->add(new (impl) Addon(impl, "a"), "first");
  impl->getPlugInManager()->add(new (impl) Named(impl, "q"), "second");
  events.clear();
  env.end();
  EXPECT_EQ(events, (Events{"end q", "end p", "end a"}));
}

TEST_F(ZylPlugIns, AFailedRegistrationChangesNothing) {
  Named* p = plugIn("p");
  const char* name = "a name of some length, so that it needs a block of a size of its own";
  FailEachAllocation(
      impl, [&] { manager->add(p, name); },
      [&] { EXPECT_FALSE(manager->isCreated(Named::GetTypeInfo(), name)); });
}

}  // namespace
}  // namespace zyl::test
