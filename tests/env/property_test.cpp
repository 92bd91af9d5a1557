// Named properties.

#include "vorlane/env/property.h"

#include <cstring>
#include <string>

#include "support/probe.h"
#include "support/support.h"
#include "vorlane/env/allocation_stack.h"

namespace zyl::test {
namespace {

class ZylProperties : public EnvTest {
 protected:
  ZylNamedIntPropertyI* makeInt(const char* name, long value) {
    return new (alloc) ZylNamedIntPropertyI(alloc, name, value);
  }
  static std::string names(const ZylNamedPropertySetI* set) {
    std::string text;
    for (auto* cell = set->getFirst(); cell != nullptr; cell = cell->next) {
      text += cell->property->getName();
    }
    return text;
  }

  ZylGenAlloc* alloc = impl->getGenAlloc();
};

TEST_F(ZylProperties, ValuesOfEachKind) {
  Probe* owner = probe(env);
  int target = 0;
  char text[] = "text";
  owner->setIntProperty("i", 1);
  owner->setNumProperty("n", 2.5);
  owner->setAnyProperty("a", &target);
  owner->setStringProperty("s", text);
  text[0] = 'T';
  EXPECT_EQ(owner->getIntProperty("i"), 1);
  EXPECT_EQ(owner->getNumProperty("n"), 2.5);
  EXPECT_EQ(owner->getAnyProperty("a"), &target);
  EXPECT_STREQ(owner->getStringProperty("s"), "text");
  EXPECT_EQ(names(owner->getProperties()), "sani") << "the newest stands first";

  ZylNamedPropertyI* before = owner->getProperty("i");
  owner->setIntProperty("i", 7);
  EXPECT_EQ(owner->getIntProperty("i"), 7);
  EXPECT_EQ(owner->getProperty("i"), before);
  owner->setStringProperty("s", owner->getStringProperty("s"));
  EXPECT_STREQ(owner->getStringProperty("s"), "text") << "copied before the old one is freed";
  EXPECT_TRUE(DisplaysAs(owner->getProperty("s"), "s(text)"));
  EXPECT_TRUE(DisplaysAs(owner->getProperty("n"), "n(2.5)"));
}

TEST_F(ZylProperties, WrongKindAndAbsence) {
  Probe* owner = probe(env);
  EXPECT_FALSE(owner->hasProperty("i"));
  const auto absent = [&] {
    ExpectEachRaises<ZylNamedPropertySet::NotPresent>(
        "Named property <j> not present",
        {[&] { owner->getIntProperty("j"); }, [&] { owner->getProperty("j"); },
         [&] { owner->removeProperty("j"); }});
  };
  absent();
  owner->setIntProperty("i", 1);
  absent();
  ExpectEachRaises<ZylNamedPropertySet::BadType>(
      "Named property <i> has wrong type",
      {[&] { owner->getNumProperty("i"); }, [&] { owner->setStringProperty("i", "x"); }});
  EXPECT_TRUE(RaisesWith<ZylNamedPropertySet::NotPresent>(
      [&] { owner->getIntProperty(std::string("that goes before the catch").c_str()); },
      "Named property <that goes before the catch> not present"));
  EXPECT_EQ(owner->getIntProperty("i"), 1);
  EXPECT_FALSE(owner->hasProperty(nullptr));
  owner->removeProperty("i");
  EXPECT_FALSE(owner->hasProperty("i"));
}

TEST_F(ZylProperties, OnePropertyInTwoSets) {
  auto* first = new (alloc) ZylNamedPropertySetI(alloc);
  auto* second = new (alloc) ZylNamedPropertySetI(alloc);
  env.makeSymbol("p");
  const long before = impl->getMemoryUsage();
  ZylNamedIntPropertyI* shared = makeInt("p", 3);
  first->addProperty(shared);
  second->addProperty(shared);
  EXPECT_THROW(second->addProperty(shared), ZylNamedPropertySet::AlreadyPresent);
  EXPECT_EQ(shared->getUseCount(), 2);
  delete first;
  EXPECT_EQ(shared->getUseCount(), 1);
  EXPECT_EQ(second->getProperty("p"), shared);
  second->removeProperty("p");
  EXPECT_LE(impl->getMemoryUsage(), before + 200);
  delete second;
}

TEST_F(ZylProperties, DeletionOfAUsedPropertyIsRefused) {
  // The storage goes with the refusal, so the set is left to the environment's pools.
  auto* set = new (alloc) ZylNamedPropertySetI(alloc);
  ZylNamedProperty handle(makeInt("p", 3));
  set->addProperty(handle.getImpl());
  const long before = impl->getMemoryUsage();
  EXPECT_TRUE(
      RaisesWith<ZylWrongUsage>([&] { handle.end(); }, "Dangerous deletion of named property"));
  EXPECT_LT(impl->getMemoryUsage(), before);
  EXPECT_EQ(handle.getImpl(), nullptr);
}

// Keeps a unit beside its value, and is read as a number all the same.
class Measured final : public ZylNamedNumPropertyI {
  ZYL_TYPE_MANAGED(Measured, ZylNamedNumPropertyI)
 public:
  using ZylNamedNumPropertyI::ZylNamedNumPropertyI;
  char unit = 'm';
};
ZYL_TYPE_DEF(Measured, ZylNamedNumPropertyI)

TEST_F(ZylProperties, ValueClassesMayBeExtended) {
  auto* width = new (env.getMemoryManager()) Measured(alloc, "width", 2.5);
  env.addProperty(ZylNamedProperty(width));
  EXPECT_EQ(env.getNumProperty("width"), 2.5);
  env.setNumProperty("width", 3.0);
  EXPECT_EQ(width->getValue(), 3.0);
}

TEST_F(ZylProperties, SetsAreCloned) {
  EnvFixture other;
  auto* set = new (alloc) ZylNamedPropertySetI(alloc);
  set->addProperty(makeInt("a", 1));
  set->addProperty(new (alloc) ZylPreNamedPropertyI(alloc, "c"));
  set->fastAdd(makeInt("a", 2));
  set->addProperty(new (alloc) ZylNamedStringPropertyI(alloc, "b", "text"));
  ZylNamedPropertySetI* clone = set->makeClone(other.env.getMemoryManager());
  EXPECT_EQ(names(clone), names(set));
  for (auto* cell = clone->getFirst(); cell != nullptr; cell = cell->next) {
    EXPECT_EQ(cell->property->getUseCount(), 1);
    EXPECT_EQ(cell->property->getManager(), other.impl->getGenAlloc());
  }
  delete set;
  EXPECT_STREQ(ZylGetPropertyI<ZylNamedStringPropertyI>(clone, "b")->getValue(), "text");
  delete clone;
}

TEST_F(ZylProperties, OwnersTakeSetsOver) {
  Probe* owner = probe(env);
  ZylNamedPropertySet set(env.getMemoryManager());
  set.addProperty(ZylNamedProperty(makeInt("a", 1)));
  owner->setProperties(set.getImpl());
  EXPECT_EQ(owner->getIntProperty("a"), 1);
  owner->setProperties(set.getImpl());
  EXPECT_EQ(owner->getIntProperty("a"), 1) << "the set already held";
  Probe* second = probe(env);
  second->addProperties(owner->getProperties());
  EXPECT_NE(second->getProperty("a"), owner->getProperty("a"));
  owner->removeAllProperties();
  EXPECT_EQ(owner->getProperties(), set.getImpl()) << "only emptied";
  EXPECT_FALSE(owner->hasProperty("a"));
  EXPECT_EQ(second->getIntProperty("a"), 1);
}

TEST_F(ZylProperties, EnvironmentsDoNotMix) {
  EnvFixture other;
  ZylNamedIntProperty foreign(other.env, "a", 4);
  EXPECT_TRUE(RaisesWith<ZylEnvironmentMismatch>([&] { env.addProperty(foreign); },
                                                 "Environment mismatch"));
  env.addClonedProperty(foreign);
  EXPECT_EQ(env.getIntProperty("a"), 4);
  EXPECT_EQ(foreign.getImpl()->getUseCount(), 0);
  EXPECT_TRUE(RaisesWith<ZylNamedPropertySet::AlreadyPresent>(
      [&] { env.addClonedProperty(foreign); }, "Named property <a> already present"));
  foreign.end();
}

// The record that leads to the set belongs to the owner, whoever made the set.
TEST_F(ZylProperties, ASetMayComeFromAnotherManager) {
  ZylAllocationStack stack;
  ZylStackGenAlloc manager(&stack, impl->getSymbolTable());
  Probe* owner = probe(env);
  owner->setProperties(new (&manager) ZylNamedPropertySetI(&manager));
  owner->setProperties(nullptr);
  stack.reset();
  std::memset(stack.allocate(4000), 0xff, 4000);
  int target = 0;
  owner->setObject(&target);
  EXPECT_EQ(owner->getObject(), &target);
  EXPECT_EQ(owner->getProperties(), nullptr);
  owner->setIntProperty("i", 1);
  EXPECT_EQ(owner->getIntProperty("i"), 1);
}

TEST_F(ZylProperties, APropertyWithoutANameIsFoundByNone) {
  env.addProperty(ZylNamedIntProperty(env, nullptr, 1));
  EXPECT_FALSE(env.hasProperty("i"));
  env.setIntProperty("i", 2);
  EXPECT_EQ(env.getIntProperty("i"), 2);
  EXPECT_TRUE(DisplaysAs(ZylNamedIntProperty(env, nullptr, 1), "(1)"));
}

class Unclonable : public ZylNamedPropertyI {
  ZYL_TYPE_MANAGED(Unclonable, ZylNamedPropertyI)
 public:
  using ZylNamedPropertyI::ZylNamedPropertyI;
  const char* getName() const override { return "unclonable"; }
};
ZYL_TYPE_DEF(Unclonable, ZylNamedPropertyI)

TEST_F(ZylProperties, CloningIsForbiddenUnlessDefined) {
  ZylNamedProperty property(new (alloc) Unclonable(alloc));
  EXPECT_TRUE(RaisesWith<ZylNamedPropertyI::Exception>(
      [&] { env.addClonedProperty(property); },
      "Cloning of ZylNamedProperty forbidden - makeClone(ZylEnv) has not been defined"));
  EXPECT_TRUE(DisplaysAs(property, "unclonable"));
  property.end();
  EXPECT_TRUE(RaisesWith<ZylEmptyHandleException>([&] { property.getName(); },
                                                  "ZylNamedProperty: Using empty handle"));
}

}  // namespace
}  // namespace zyl::test
