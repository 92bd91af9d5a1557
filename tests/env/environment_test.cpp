// Coming up, ids, marks, locks, going down.

#include "vorlane/env/environment.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <sstream>

#include "support/probe.h"
#include "support/recording.h"
#include "support/support.h"
#include "vorlane/vorlane.h"

namespace zyl::test {
namespace {

class ZylEnvironment : public EnvTest {
 protected:
  long newId() { return probe(env)->getId(); }
};

TEST(ZylIdManager, GrowsOnTheFirstIdBeyond) {
  ZylMemory memory(1);
  ZylIdManager ids(&memory);
  for (long i = 0; i < 255; ++i) ASSERT_EQ(ids.bookId(), i);
  {
    FailingAllocator failing(1);
    // The last id of the table needs the next table to chain to.
    EXPECT_THROW(for (int i = 0; i < 2; ++i) ids.bookId(), ZylMemoryException);
  }
  for (long i = ids.getMaxId(); i <= 256; ++i) ASSERT_EQ(ids.bookId(), i);
  EXPECT_EQ(ids.getCapacity(), 512);
  EXPECT_FALSE(ids.isFree(256));
  EXPECT_TRUE(ids.isFree(257));
  ids.end();
}

// Ids against a naive free list.
TEST(ZylIdManager, AgreesWithAStack) {
  for (unsigned seed = 1; seed <= 10; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    srand(seed);
    ZylMemory memory(seed % 2);
    ZylIdManager ids(&memory);
    std::vector<long> used;
    std::vector<long> freed;
    long next = 0;
    long bound = 0;
    for (int step = 0; step < 3000; ++step) {
      if (used.empty() || rand() % 5 < 3) {
        const long expected = freed.empty() ? next++ : freed.back();
        if (!freed.empty()) freed.pop_back();
        const long id = ids.bookId();
        ASSERT_EQ(id, expected);
        used.push_back(id);
        bound = std::max(bound, id + 1);
      } else {
        const std::size_t k = static_cast<std::size_t>(rand()) % used.size();
        ids.freeId(used[k]);
        if (used[k] == bound - 1) --bound;  // a bound, not the highest in use
        freed.push_back(used[k]);
        used.erase(used.begin() + static_cast<long>(k));
      }
      ASSERT_EQ(ids.getMaxId(), bound);
    }
    ids.end();
  }
}

TEST_F(ZylEnvironment, MarksAreZeroAndOnePerUser) {
  impl->useMTSafeNormalization(1);
  void** a = impl->getMarkArray();
  void** b = impl->getMarkArray();
  EXPECT_NE(a, b);
  for (long i = 0; i < impl->getIdManager()->getMaxId() + 1000; ++i) {
    ASSERT_EQ(a[i], nullptr);
    ASSERT_EQ(b[i], nullptr);
  }
  impl->releaseMarkArray(a);
  EXPECT_EQ(impl->getMarkArray(), a) << "the first that is free";
  impl->releaseMarkArray(a);
  impl->releaseMarkArray(b);
  // An array that became too short is replaced.
  const long wanted = impl->getIdManager()->getMaxId() + 1500;
  while (impl->getIdManager()->getMaxId() < wanted) impl->getIdManager()->bookId();
  void** longer = impl->getMarkArray();
  longer[impl->getIdManager()->getMaxId() - 1] = &env;
  longer[impl->getIdManager()->getMaxId() - 1] = nullptr;
  impl->releaseMarkArray(longer);
  impl->useMTSafeNormalization(0);
  EXPECT_THROW(impl->getMarkArray(), ZylNotSupportedOperation);
}

TEST_F(ZylEnvironment, AFailedMarkArrayLeavesTheLockOpen) {
  impl->useMTSafeAllocation(1);
  impl->useMTSafeNormalization(1);
  void** held = impl->getMarkArray();
  {
    FailingAllocator failing(1);
    EXPECT_THROW(impl->getMarkArray(), ZylMemoryException);
  }
  impl->releaseMarkArray(impl->getMarkArray());
  impl->releaseMarkArray(held);
}

TEST_F(ZylEnvironment, SwitchesOfThreadSafety) {
  EXPECT_EQ(impl->getMutex(), nullptr);
  impl->useMTSafeAllocation(1);
  ZylLocalEnvI* local = impl->getLocalEnv();
  ASSERT_NE(local, nullptr);
  EXPECT_NE(impl->getMutex(), nullptr);
  impl->useMTSafeAllocation(2);
  EXPECT_EQ(impl->getLocalEnv(), local) << "on already";
  Probe* p = probe(env, "named");
  const long id = p->getId();
  p->end();
  EXPECT_EQ(newId(), id);
  impl->useMTSafeAllocation(0);
  EXPECT_EQ(impl->getLocalEnv(), nullptr);
  EXPECT_NE(impl->getMutex(), nullptr) << "stays";

  RecordingLocalEnv own(impl);
  impl->setLocalEnv(&own);
  EXPECT_TRUE(RaisesWith<ZylNotSupportedOperation>([&] { impl->useMTSafeAllocation(1); },
                                                   "Operation Not Supported."));
  EXPECT_FALSE(impl->isMTSafeAllocation());
  EXPECT_EQ(impl->getLocalEnv(), &own);
  impl->setLocalEnv(nullptr);
}

TEST_F(ZylEnvironment, TermsAndListsOutliveASwitchOfThreadSafety) {
  const ZylNumVar x(env, 0, 1);
  ZylExpr early(env);
  for (int i = 0; i < 10; ++i) early += i * x;
  ZylModel listed(env);
  ZylTypedListManagerI* lists = ZylTypedListManager::getOrMake(impl->getTypedLists(), impl);
  ASSERT_FALSE(lists->getList(ZylModelI::GetTypeInfo())->isEmpty());
  const long before = impl->getMemoryUsage();
  impl->useMTSafeAllocation(1);
  ZylExpr late(env);
  for (int i = 0; i < 10; ++i) late += i * x;
  early.end();
  listed.end();
  impl->useMTSafeAllocation(0);
  late.end();
  EXPECT_LT(impl->getMemoryUsage(), before);
  EXPECT_TRUE(lists->getList(ZylModelI::GetTypeInfo())->isEmpty());
}

TEST_F(ZylEnvironment, ALocalEnvironmentServesObjectsAndIds) {
  RecordingLocalEnv local(impl);
  probe(env)->end();  // removals keep an array for the next one
  impl->setLocalEnv(&local);
  Probe* p = probe(env, "name");
  EXPECT_GE(local.allocs, 2);
  EXPECT_EQ(impl->getIdManager()->getLive(p->getId()), p);
  long word = 0;
  impl->saveValue(&word);
  EXPECT_EQ(local.saves, 1);
  p->end();
  EXPECT_EQ(local.allocs, local.frees);
  impl->setLocalEnv(nullptr);
}

std::vector<std::string> endOrder;

class Destroyable : public ZylDestroyableI {
  ZYL_TYPE(Destroyable, ZylDestroyableI)
 public:
  Destroyable(ZylEnvI* env, std::string name) : ZylDestroyableI(env), _name(std::move(name)) {}
  ~Destroyable() override { endOrder.push_back(_name); }

 private:
  std::string _name;
};
ZYL_TYPE_DEF(Destroyable, ZylDestroyableI)

class EndingAlgorithm : public RecordingAlgorithm {
 public:
  using RecordingAlgorithm::RecordingAlgorithm;
  ~EndingAlgorithm() override { endOrder.push_back(log[0]); }
};

class EndingPlugIn : public ZylPlugIn {
  ZYL_TYPE(EndingPlugIn, ZylPlugIn)
 public:
  using ZylPlugIn::ZylPlugIn;
  ~EndingPlugIn() override { endOrder.push_back("plug-in"); }
};
ZYL_TYPE_DEF(EndingPlugIn, ZylPlugIn)

class EndingDisplay : public ZylKvlDisplayI {
 public:
  ~EndingDisplay() override { endOrder.push_back("display"); }
};

TEST(ZylEnvEnd, GoesDownInOrder) {
  for (const bool pools : {true, false}) {
    SCOPED_TRACE(pools ? "pools" : "no pools");
    if (pools && std::getenv("ZYL_NO_MEMORY_MANAGER") != nullptr) continue;
    std::optional<ScopedVariable> variable;
    if (!pools) variable.emplace("ZYL_NO_MEMORY_MANAGER", "");
    endOrder.clear();
    Probe::Died.clear();
    ZylEnv env;
    EXPECT_EQ(env.getImpl()->usesMemoryManager(), pools);
    EXPECT_EQ(env.getImpl()->getFlags() & ZylEnvI::MemoryManagerFlag, pools ? 1 : 0);
    ZylEnvI* impl = env.getImpl();
    for (const char* name : {"a", "b"}) {
      probe(env, name)->onDeath = [] { endOrder.push_back("extractable"); };
    }
    impl->getPlugInManager()->add(new (impl) EndingPlugIn(impl), "name");
    for (const char* name : {"first", "second"}) {
      (new EndingAlgorithm(impl))->log.push_back(std::string(name) + " algorithm");
    }
    new (impl) Destroyable(impl, "first destroyable");
    delete new (impl) Destroyable(impl, "deleted early");
    new (impl) Destroyable(impl, "second destroyable");
    ZylKvlDisplayI::Register(impl, new EndingDisplay);
    env.end();
    EXPECT_EQ(env.getImpl(), nullptr);
    std::vector<std::string> expected = {"deleted early",      "display",
                                         "second destroyable", "first destroyable",
                                         "second algorithm",   "first algorithm"};
    if (!pools) expected.insert(expected.end(), 2, "extractable");
    expected.push_back("plug-in");
    EXPECT_EQ(endOrder, expected);
    EXPECT_EQ(Probe::Died,
              pools ? std::vector<std::string>() : (std::vector<std::string>{"a", "b"}));
  }
}

// A destroyable enters the list without a local environment, and may die under one.
TEST(ZylEnvEnd, DestroyablesDieOnceUnderALocalEnvironment) {
  endOrder.clear();
  ZylEnv env;
  ZylEnvI* impl = env.getImpl();
  new (impl) Destroyable(impl, "left");
  auto* early = new (impl) Destroyable(impl, "early");
  impl->useMTSafeAllocation(1);
  impl->useMTSafeNormalization(1);
  delete early;
  new (impl) Destroyable(impl, "unlisted");
  probe(env, "left");
  env.setName("env");
  env.end();
  EXPECT_EQ(endOrder, (std::vector<std::string>{"early", "left"}));
}

TEST(ZylDestroyableList, HoldsEachOnceWhileItGrows) {
  EnvFixture env;
  ZylDestroyableList list(env.impl, 1, &ZylDestroyableList::HashPointer,
                          &ZylDestroyableList::ComparePointers);
  std::vector<Destroyable*> objects;
  for (int i = 0; i < 9; ++i) objects.push_back(new (env.impl) Destroyable(env.impl, "d"));
  for (int round = 0; round < 2; ++round) {
    for (Destroyable* object : objects) list.add(object);
    EXPECT_EQ(list.getSize(), 9);
  }
  EXPECT_EQ(list.getBucketCount(), 8);
  EXPECT_EQ(list.getHead(), objects[8]);
  list.remove(objects[2]);
  list.remove(objects[2]);
  EXPECT_EQ(list.getSize(), 8);
  for (Destroyable* object : objects) list.remove(object);
  EXPECT_EQ(list.getHead(), nullptr);
}

TEST(ZylDestroyableList, AGrowthThatIsRefusedLosesNothing) {
  EnvFixture env;
  // Good for one bucket only.
  const auto hash = [](const ZylDestroyableI*, long n) { return n == 1 ? 0 : n; };
  ZylDestroyableList list(env.impl, 1, hash, &ZylDestroyableList::ComparePointers);
  std::vector<Destroyable*> objects;
  for (int i = 0; i < 3; ++i) objects.push_back(new (env.impl) Destroyable(env.impl, "d"));
  list.add(objects[0]);
  list.add(objects[1]);
  EXPECT_TRUE(
      RaisesWith<ZylWrongUsage>([&] { list.add(objects[2]); }, "Hash function returned bad index"));
  EXPECT_EQ(list.getBucketCount(), 1);
  EXPECT_EQ(list.getHead(), objects[1]);
  for (Destroyable* object : objects) list.remove(object);
  EXPECT_EQ(list.getSize(), 0);
}

TEST(ZylEnvCreation, EachFailureIsTheMemoryExceptionAndLeavesNothing) {
  for (const bool pools : {true, false}) {
    std::optional<ScopedVariable> variable;
    if (!pools) variable.emplace("ZYL_NO_MEMORY_MANAGER", "1");
    const auto nothing = [] { return std::make_unique<int>(0); };
    const auto create = [](int&) {
      ZylEnv env;
      zyl::detail::failAllocation = nullptr;
      env.end();
    };
    EXPECT_GT(FailEachAllocation(nothing, create, [](int&) {}), 20);
  }
}

TEST_F(ZylEnvironment, ExtensionComesWithFirstUse) {
  const long before = impl->getMemoryUsage();
  EXPECT_EQ(env.getName(), nullptr);
  env.setName(nullptr);
  env.setObject(nullptr);
  EXPECT_FALSE(env.hasProperty("p"));
  EXPECT_EQ(impl->getMemoryUsage(), before);
  char name[] = "name";
  env.setName(name);
  name[0] = 'N';
  EXPECT_STREQ(env.getName(), "name");
  env.setName(nullptr);
  EXPECT_EQ(env.getName(), nullptr);
}

TEST_F(ZylEnvironment, MemoryManagersLeadBack) {
  EXPECT_EQ(ZylEnv(env.getMemoryManager()).getImpl(), impl);
  EXPECT_EQ(ZylGetEnv(env.getMemoryManager()), impl);
  ZylAllocationStack stack;
  ZylStackGenAlloc alloc(&stack, impl->getSymbolTable());
  EXPECT_TRUE(RaisesWith<ZylEnv::IncompatibleMemoryManagerException>(
      [&] { ZylEnv other{ZylMemoryManager(&alloc)}; }, "Incompatible memory manager"));
  EXPECT_THROW(ZylEnv other{ZylMemoryManager()}, ZylEnv::IncompatibleMemoryManagerException);
}

TEST_F(ZylEnvironment, OneDisplayCallback) {
  auto* first = new ZylKvlDisplayI;
  ZylKvlDisplayI second;
  EXPECT_EQ(ZylKvlDisplayI::Register(impl, first), nullptr);
  EXPECT_EQ(ZylKvlDisplayI::Register(impl, first), first);
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { ZylKvlDisplayI::Register(impl, &second); },
                                        "ZylKvlDisplayI::Register : callback is already set"));
  EXPECT_EQ(impl->getKvlDisplay(), first);
  ZylKvlDisplayI::Unregister(impl, first);
  EXPECT_EQ(ZylKvlDisplayI::Register(impl, &second), nullptr);
  ZylKvlDisplayI::Unregister(impl, &second);
  delete first;
}

TEST_F(ZylEnvironment, StreamsAndTime) {
  std::ostringstream out;
  env.setOut(out);
  env.printTime();
  EXPECT_EQ(out.str().rfind("Elapsed time since creation : ", 0), 0U);
  env.getNullStream() << "nothing" << 1.0 << std::endl;
  EXPECT_TRUE(env.getNullStream().good());
  EXPECT_EQ(std::string(env.getVersion()).rfind("@(#)", 0), 0U);
}

TEST_F(ZylEnvironment, DeleterOperationsWithoutOne) {
  Probe* p = probe(env);
  impl->removeAndDelete(p, 0);
  EXPECT_THROW(impl->inhibitDeleter(1), ZylWrongUsage);
  impl->removeVerticalEnv(nullptr);
  const long living = Probe::Living;
  impl->removeVerticalEnv(p);
  EXPECT_EQ(Probe::Living, living - 1);
}

TEST_F(ZylEnvironment, AFinishedObjectHasNoIdToGiveBack) {
  for (const bool vertical : {false, true}) {
    Probe* finished = probe(env);
    impl->destroy(finished, /*keep=*/1, /*notify=*/0);
    impl->finit(finished);
    vertical ? impl->removeVerticalEnv(finished) : impl->destroy(finished, 0, 0);
    EXPECT_GE(probe(env)->getId(), 0);
  }
}

TEST(ZylEnvHandle, RaisesIfItIsEmpty) {
  const ZylEnv e(static_cast<ZylEnvI*>(nullptr));
  ExpectEachRaises<ZylEmptyHandleException>(
      "ZylEnv: Using empty handle",
      {[&] { e.getName(); }, [&] { e.setObject(nullptr); }, [&] { e.getProperties(); },
       [&] { e.setProperties(ZylNamedPropertySet()); }, [&] { e.removeAllProperties(); },
       [&] { e.addClonedProperty(ZylNamedProperty()); }, [&] { e.getPropertyI("x"); },
       [&] { e.getAnyProperty("x"); }, [&] { e.setNumProperty("x", 0); },
       [&] { e.removeProperty("x"); }});
  ExpectEachRaises<ZylEmptyHandleException>(
      "Using empty handle.", {[&] { e.getSymbol("x"); }, [&] { e.makeSymbol("x"); }});
}

TEST_F(ZylEnvironment, ArgumentsThatAreMissing) {
  ExpectEachRaises<ZylEmptyHandleException>(
      {{"ZylEnv: Using empty string", [&] { env.hasProperty(nullptr); }},
       {"ZylEnv: Using empty string", [&] { env.setIntProperty(nullptr, 1); }},
       {"ZylEnv: Using empty string", [&] { env.removeProperty(nullptr); }},
       {"ZylNamedProperty: Using empty handle", [&] { env.addProperty(ZylNamedProperty()); }},
       {"ZylNamedPropertySet: Using empty handle",
        [&] { env.addProperties(ZylNamedPropertySet()); }}});
  EXPECT_FALSE(impl->hasProperty(nullptr));
}

class CountingMutex : public ZylBaseEnvMutex {
 public:
  explicit CountingMutex(bool* deleted) : _deleted(deleted) {}
  ~CountingMutex() override { *_deleted = true; }
  void lock() override { ++held; }
  void unlock() override { --held; }
  long held = 0;

 private:
  bool* _deleted;
};

TEST(ZylMT, TheProcessWideLockMayBeHandedOver) {
  bool deleted = false;
  CountingMutex kept(&deleted);
  EXPECT_FALSE(ZylIsMTEnabled());
  *ZylInitMT(&kept) = 0;
  EXPECT_TRUE(ZylIsMTEnabled());
  EXPECT_GT(ZylNumSquareI::GetTypeIndex(), 0);
  EXPECT_EQ(kept.held, 0);
  ZylEndMT();
  EXPECT_FALSE(deleted);
  EXPECT_FALSE(ZylIsMTEnabled());
  *ZylInitMT(new CountingMutex(&deleted)) = 1;
  ZylEndMT();
  EXPECT_TRUE(deleted);
  EXPECT_EQ(ZylEnvI::DeleteMutex, 0);
}

}  // namespace
}  // namespace zyl::test
