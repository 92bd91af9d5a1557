// Type identity.

#include "vorlane/env/rtti.h"

#include <cxxabi.h>

#include <map>
#include <set>
#include <string>
#include <typeinfo>

#include "support/support.h"
#include "vorlane/vorlane.h"

namespace zyl::test {
namespace {

// Whether a class has engine hooks of its own, not its base's; those that have none at all name
// themselves here.
template <class Class, class Base>
constexpr bool hasOwnHooks() {
  if constexpr (
      requires { &Class::_extractCP; } && requires { &Base::_extractCP; }) {
    return static_cast<void*>(&Class::_extractCP) != static_cast<void*>(&Base::_extractCP);
  } else if constexpr (
      requires { &Class::_applyCP; } && requires { &Base::_applyCP; }) {
    return static_cast<void*>(&Class::_applyCP) != static_cast<void*>(&Base::_applyCP);
  } else if constexpr (std::is_base_of_v<ZylExtractableI, Class>) {
    return requires { &Class::_extractCP; }
    || std::is_same_v<Class, ZylGeneratorI> || std::is_same_v<Class, ZylExtractableI>;
  } else {
    return true;
  }
}

struct ClassFacts {
  const char* name;
  ZylTypeInfo type;
  ZylTypeInfo base;
  const char* ownName;
  const std::type_info& cppType;
  const std::type_info& cppBase;
  bool hasHooks;
};

const ClassFacts Classes[] = {
#define ZYL_CLASS(Class, Base)                                                               \
  {#Class,        Class::GetTypeInfo(), Base::GetTypeInfo(),       Class::GetRttiTypeName(), \
   typeid(Class), typeid(Base),         hasOwnHooks<Class, Base>()},
#include "support/classes.inc"
};

// The base of a class in C++; the first one where there are several. Null for a root.
const std::type_info* baseOf(const std::type_info& type) {
  if (auto* single = dynamic_cast<const abi::__si_class_type_info*>(&type)) {
    return single->__base_type;
  }
  if (auto* several = dynamic_cast<const abi::__vmi_class_type_info*>(&type)) {
    return several->__base_info[0].__base_type;
  }
  return nullptr;
}

TEST(ZylRtti, BasesAreThoseOfTheLanguage) {
  std::set<const std::type_info*> family{&typeid(ZylRtti)};
  for (const ClassFacts& row : Classes) family.insert(&row.cppType);
  for (const ClassFacts& row : Classes) {
    // Templates that carry a family have no type of their own.
    const std::type_info* base = baseOf(row.cppType);
    while (base != nullptr && family.count(base) == 0) base = baseOf(*base);
    ASSERT_NE(base, nullptr) << row.name;
    EXPECT_EQ(*base, row.cppBase) << row.name;
  }
}

TEST(ZylRtti, EachExtractableAndChangeHasHooksOfItsOwn) {
  for (const ClassFacts& row : Classes) EXPECT_TRUE(row.hasHooks) << row.name;
}

TEST(ZylRtti, NoTwoClassesShareAToken) {
  std::map<ZylTypeInfo, std::string> tokens;
  tokens[ZylRtti::GetTypeInfo()] = "ZylRtti";
  for (const ClassFacts& row : Classes) {
    const auto [place, isNew] = tokens.emplace(row.type, row.name);
    EXPECT_TRUE(isNew) << row.name << " has the token of " << place->second;
  }
}

TEST(ZylRtti, EachClassKnowsItsNameAndItsBase) {
  for (const ClassFacts& row : Classes) {
    EXPECT_STREQ(row.name, row.ownName);
    EXPECT_EQ(ZylGetBaseTypeInfo(row.type), row.base) << row.name;
    long depth = 0;
    ZylTypeInfo type = row.type;
    while (type != ZylRtti::GetTypeInfo() && ++depth < 20) type = ZylGetBaseTypeInfo(type);
    EXPECT_LT(depth, 20) << row.name << " does not lead to the root";
  }
  EXPECT_EQ(ZylGetBaseTypeInfo(ZylRtti::GetTypeInfo()), nullptr);
}

// Classes of this test alone, so that nobody else asks for their indices.
#define ZYL_TEST_CLASS(Class, Base, Type)        \
  class Class : public Base {                    \
    Type(Class, Base) public : using Base::Base; \
  };                                             \
  ZYL_TYPE_DEF(Class, Base)
ZYL_TEST_CLASS(Middle, ZylRttiEnvObjectI, ZYL_TYPE)
ZYL_TEST_CLASS(Leaf, Middle, ZYL_TYPE)
ZYL_TEST_CLASS(Sibling, Middle, ZYL_TYPE)
ZYL_TEST_CLASS(Managed, ZylExtensibleRttiMemoryManagerObjectI, ZYL_TYPE_MANAGED)

TEST(ZylRtti, IsTypeHoldsUpTheChainOnly) {
  EnvFixture env;
  auto* leaf = new (env.impl) Leaf(env.impl);
  auto* middle = new (env.impl) Middle(env.impl);
  EXPECT_TRUE(leaf->isType(Leaf::GetTypeInfo()));
  EXPECT_TRUE(leaf->isType(Middle::GetTypeInfo()));
  EXPECT_TRUE(leaf->isType(ZylRtti::GetTypeInfo()));
  EXPECT_FALSE(leaf->isType(Sibling::GetTypeInfo()));
  EXPECT_FALSE(middle->isType(Leaf::GetTypeInfo()));
  EXPECT_FALSE(leaf->isType(nullptr));

  ZylRttiEnvObjectI* asBase = leaf;
  EXPECT_EQ(zyl::as<Leaf>(asBase), leaf);
  EXPECT_EQ(zyl::as<Sibling>(asBase), nullptr);
  EXPECT_EQ(zyl::as<Leaf>(static_cast<ZylRttiEnvObjectI*>(nullptr)), nullptr);
  EXPECT_TRUE(zyl::isExactly<Leaf>(asBase));
  EXPECT_FALSE(zyl::isExactly<Middle>(asBase));
  delete leaf;
  delete middle;
}

TEST(ZylRtti, IndicesComeOnFirstDemand) {
  EnvFixture env;
  auto* sibling = new (env.impl) Sibling(env.impl);
  EXPECT_EQ(sibling->getTypeIndex(), 0);
  const long before = ZylRtti::_counter;
  const long index = Sibling::GetTypeIndex();
  EXPECT_EQ(index, before + 1);
  EXPECT_EQ(sibling->getTypeIndex(), index);
  EXPECT_EQ(sibling->getBaseTypeIndex(), Middle::GetTypeIndex());
  EXPECT_EQ(ZylRtti::GetTypeIndex(), 0);
  delete sibling;
}

TEST(ZylRttiEnvObjectI, HasNoFrontEndClone) {
  EnvFixture env;
  auto* object = new (env.impl) Leaf(env.impl);
  EXPECT_FALSE(object->isKvlRefCounted());
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { env->getKvlClone(object); },
                                        "ZylRttiEnvObjectI::makeKvlClone not implemented"));
  EXPECT_EQ(env->getKvlClone(nullptr), nullptr);
  delete object;
}

// A constructor that raises gives its block back, and one that runs gives it back by `delete`.
class Thrower : public Middle {
  ZYL_TYPE(Thrower, Middle)
 public:
  explicit Thrower(ZylEnvI* env, bool raises) : Middle(env) {
    if (raises) throw ZylWrongUsage("raised");
  }

 private:
  [[maybe_unused]] char _bulk[200] = {};
};
ZYL_TYPE_DEF(Thrower, Middle)

TEST(ZylRttiEnvObjectI, BlocksGoBackAtTheirOwnSize) {
  EnvFixture env;
  const long before = env->getMemoryUsage();
  EXPECT_THROW(new (env.impl) Thrower(env.impl, true), ZylWrongUsage);
  EXPECT_EQ(env->getMemoryUsage(), before);
  ZylRtti* object = new (env.impl) Thrower(env.impl, false);
  EXPECT_GE(env->getMemoryUsage(), before + 200);
  delete static_cast<ZylRttiEnvObjectI*>(object);
  EXPECT_EQ(env->getMemoryUsage(), before);
}

TEST(ZylRttiMemoryManagerObjectI, LivesInItsManager) {
  EnvFixture env;
  const long before = env->getMemoryUsage();
  auto* object = new (env->getGenAlloc()) Managed(env->getGenAlloc());
  EXPECT_EQ(object->getEnv(), env.impl);
  object->setIntProperty("n", 3);
  delete object;
  // The property's name stays interned.
  env->intern("n");
  EXPECT_LE(env->getMemoryUsage() - before, 400);

  ZylAllocationStack stack;
  ZylStackGenAlloc alloc(&stack, env->getSymbolTable());
  auto* stacked = new (static_cast<ZylGenAlloc*>(&alloc)) Managed(&alloc);
  EXPECT_TRUE(RaisesWith<ZylEnv::IncompatibleMemoryManagerException>(
      [&] { static_cast<void>(stacked->getEnv()); }, "Incompatible memory manager"));
  delete stacked;
  EXPECT_EQ(stack.getFreed(), static_cast<long>(sizeof(Managed)));
}

}  // namespace
}  // namespace zyl::test
