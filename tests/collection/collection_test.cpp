// The tree of collections: what each class answers, refuses and says, and news of changes.

#include <functional>
#include <limits>
#include <string>
#include <utility>

#include "collection/samples.h"
#include "support/support.h"
#include "vorlane/collection/data_change.h"

namespace zyl::test {
namespace {

class ZylCollections : public EnvTest {
 protected:
  template <class Base>
  Sample<Base>* make(std::initializer_list<typename Base::ElementType> values) {
    return new (impl) Sample<Base>(impl, values);
  }
};

/// A discrete collection that answers nothing of its own.
class Bare : public ZylDiscreteDataCollectionI {
 public:
  using ZylDiscreteDataCollectionI::ZylDiscreteDataCollectionI;
  Bare* copy() const override { return nullptr; }
  long getDataType() const override { return 0; }
  void display(std::ostream&) const override {}
  Bare* makeClone(ZylEnvI* env) const override { return new (env) Bare(env); }
  long getSize() const override { return 0; }
  ZylObjectBase getMapItem(long) const override { return ZylObjectBase(); }
};

// Each operation with the text behind "<class>::", and the classes that serve it.
TEST_F(ZylCollections, AnswerForTheirOwnTypeOnly) {
  struct Row {
    const char* operation;
    std::function<void(const ZylDiscreteDataCollectionI*)> call;
    std::string servedBy;
  };
  const Row rows[] = {
      {"getIndex(ZylInt)", [](auto* c) { c->getIndex(1L); }, "I"},
      {"getIndex(ZylNum)", [](auto* c) { c->getIndex(1.0); }, "IN"},
      {"getIndex(ZylAny)", [](auto* c) { c->getIndex(static_cast<void*>(nullptr)); }, "A"},
      {"getIndex(ZylSymbol)", [](auto* c) { c->getIndex(ZylSymbol()); }, "A"},
      {"getIntValue(ZylInt)", [](auto* c) { c->getIntValue(0); }, "I"},
      {"getNumValue(ZylInt)", [](auto* c) { c->getNumValue(0); }, "N"},
      {"getAnyValue(ZylInt)", [](auto* c) { c->getAnyValue(0); }, "A"},
  };
  const std::pair<std::string, ZylDiscreteDataCollectionI*> collections[] = {
      {"ZylDiscreteDataCollectionI", new (impl) Bare(impl)},
      {"ZylIntCollectionI", make<ZylIntAbstractSetI>({1})},
      {"ZylNumCollectionI", make<ZylNumAbstractSetI>({1.0})},
      {"ZylAnyCollectionI", make<ZylAnyAbstractSetI>({nullptr})}};
  for (const auto& [name, collection] : collections) {
    for (const Row& row : rows) {
      const std::string text = name + "::" + row.operation + " is not implemented";
      const auto call = [&row, c = collection] { row.call(c); };
      if (row.servedBy.find(name[3]) != std::string::npos) {
        EXPECT_NO_THROW(call()) << text;
      } else {
        EXPECT_TRUE(RaisesWith<ZylNotImplemented>(call, text));
      }
    }
  }
  const ZylDiscreteDataCollectionI* bare = collections[0].second;
  ExpectEachRaises<ZylNotImplemented>(
      {{"ZylDiscreteDataCollectionI::iterator(ZylGenAlloc*) is not implemented",
        [bare] { static_cast<void>(bare->iterator(nullptr)); }},
       {"not Implemented", [bare] { bare->getMapItemIndex(ZylObjectBase(1)); }}});
}

TEST_F(ZylCollections, DuplicatesAndSenseOfTheOrder) {
  EXPECT_TRUE(make<ZylNumAbstractDataColumnI>({})->supportDuplicates());
  auto* set = make<ZylAnyAbstractSetI>({});
  EXPECT_FALSE(set->supportDuplicates());
  EXPECT_EQ(set->getSortSense(), 10);
  set->isDescending = true;
  EXPECT_EQ(set->getSortSense(), 12);
  set->isAscending = true;
  EXPECT_EQ(set->getSortSense(), 11);
}

TEST_F(ZylCollections, ItemsKnowTheirKind) {
  int object = 0;
  ZylSymbol symbol(impl->makeSymbol("red"));
  auto* ints = make<ZylIntAbstractSetI>({7, 8});
  auto* nums = make<ZylNumAbstractSetI>({1.5, 8.0});
  auto* anys = make<ZylAnyAbstractSetI>({&object, symbol.getImpl()});
  const ZylDiscreteDataCollection handle(anys);
  EXPECT_EQ(ints->getMapItem(1).getInt(), 8);
  EXPECT_EQ(ints->getMapItemIndex(ZylObjectBase(8)), 1);
  EXPECT_EQ(nums->getMapItemIndex(nums->getMapItem(1)), 1);
  EXPECT_TRUE(RaisesWith<ZylWrongUsage>([&] { nums->getMapItemIndex(ZylObjectBase(8)); },
                                        "ZylObjectBase::getNum: the value is no number"));
  EXPECT_EQ(handle.getMapItem(0).getAny(), &object);
  EXPECT_EQ(anys->getMapItemIndex(ZylObjectBase(symbol)), 1);
  EXPECT_EQ(anys->getMapItemIndex(ZylObjectBase("red")), 1);
  EXPECT_EQ(handle.getIndex("red"), 1);
  EXPECT_EQ(handle.getIndex("blue"), -1);
  EXPECT_EQ(handle.getIndex(&object), 0);
  EXPECT_TRUE(DisplaysAs(ZylObjectBase(symbol), "red"));
  EXPECT_TRUE(DisplaysAs(ZylObjectBase(), ""));
}

TEST_F(ZylCollections, DoublesAreTruncatedToPositionsOfIntegers) {
  ZylIntRange range(env, -3, 3);
  auto* set = make<ZylIntAbstractSetI>({0, 2});
  EXPECT_EQ(set->getIndex(2.9), 1);
  EXPECT_EQ(set->getIndex(-0.9), 0);
  EXPECT_EQ(range.getIndex(-2.5), 1);
  EXPECT_EQ(range.getIndex(3), 6);
  for (double nowhere : {1e300, -1e300, ZylInfinity, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(range.getIndex(nowhere), -1);
    EXPECT_EQ(set->getIndex(nowhere), -1);
  }
}

TEST_F(ZylCollections, StepsOfSets) {
  auto* set = make<ZylIntAbstractSetI>({5, 9, 1});
  EXPECT_EQ(set->getNext(5, 2), 1);
  EXPECT_EQ(set->getPrevious(1, 1), 9);
  EXPECT_EQ(set->getNextC(1, 1), 5);
  EXPECT_EQ(set->getPreviousC(5, 1), 1);
  EXPECT_EQ(set->getNextC(9, -7), 5);
  EXPECT_EQ(set->getPreviousC(9, 6000000000000000001L), 5);
  EXPECT_EQ(set->getFirst(), 5);
  EXPECT_EQ(set->getLast(), 1);
  EXPECT_EQ(set->getLB(), 1);
  EXPECT_EQ(set->getUB(), 9);
  ExpectEachRaises<ZylCollectionElementNotFoundException>({
      {"next(): the element is not in the set: 7", [&] { set->getNext(7, 1); }},
      {"prev(): the element is not in the set: 7", [&] { set->getPrevious(7, 1); }},
      {"nextc(): the element is not in the set: 7", [&] { set->getNextC(7, 1); }},
      {"prevc(): the element is not in the set: 7", [&] { set->getPreviousC(7, 1); }},
  });
  ExpectEachRaises<ZylOperatorNextElementNotFoundException>({
      {"next(): the step leaves the set: 1", [&] { set->getNext(1, 1); }},
      {"next(): the step leaves the set: 5", [&] { set->getNext(5, -1); }},
      {"prev(): the step leaves the set: 9", [&] { set->getPrevious(9, 2); }},
      {"prev(): the step leaves the set: 9",
       [&] { set->getPrevious(9, std::numeric_limits<long>::min()); }},
  });
  EXPECT_STREQ(ZylOperatorException(ZylObjectBase(1), 0, 1).getMessage(), "prevc()");

  auto* empty = make<ZylNumAbstractSetI>({});
  ExpectEachRaises<ZylFirstLastElementNotFoundException>(
      {{" : first() element does not exist", [&] { empty->getFirst(); }},
       {" : last() element does not exist", [&] { empty->getLast(); }}});
  EXPECT_EQ(empty->getLB(), ZylInfinity);
  EXPECT_EQ(make<ZylIntAbstractSetI>({})->getLB(), ZylIntMax);
  EXPECT_EQ(make<ZylIntAbstractSetI>({ZylIntMax + 1})->getLB(), ZylIntMax);
  EXPECT_EQ(make<ZylIntAbstractSetI>({ZylIntMin - 1})->getUB(), ZylIntMin);
}

TEST_F(ZylCollections, FailuresNameTheCollection) {
  auto* set = make<ZylIntAbstractSetI>({4});
  EXPECT_TRUE(RaisesWith<ZylIndexOutOfBoundsException>(
      [&] { set->getValue(-1); }, "Index out of bounds for unamed collection :-1"));
  EXPECT_EQ(printed(ZylDataCollection::ImmutableException(set)),
            "the Collection unamed collection is referenced by another and is immutable");
  set->setName("S");
  EXPECT_TRUE(RaisesWith<ZylIndexOutOfBoundsException>([&] { set->getMapItem(1); },
                                                       "Index out of bounds for S :1"));
  const ZylDataCollection::ImmutableException immutable(set);
  EXPECT_EQ(printed(immutable), "the Collection  S is referenced by another and is immutable");
  EXPECT_STREQ(immutable.getMessage(), "the Collection is referenced by another and is immutable");
  // The text is the exception's own, and its copies'.
  const ZylIndexOutOfBoundsException first(set, 3);
  EXPECT_STREQ(first.getMessage(), "Index out of bounds for S :3");
  const ZylIndexOutOfBoundsException copy(first);
  delete set;
  EXPECT_STREQ(copy.getMessage(), "Index out of bounds for S :3");
}

TEST_F(ZylCollections, Equality) {
  const auto ints = [&](std::initializer_list<long> values) {
    return ZylIntCollection(make<ZylIntAbstractSetI>(values));
  };
  const ZylIntRange range(env, 1, 3);
  EXPECT_TRUE(ints({1, 2}) == ints({1, 2}));
  EXPECT_FALSE(ints({1, 2}) == ints({2, 1}));
  EXPECT_TRUE(ints({1, 2}) != ints({1, 2, 3}));
  EXPECT_TRUE(range == ZylIntRange(env, 1, 3));
  EXPECT_FALSE(range == ZylIntRange(env, 2, 4));
  EXPECT_TRUE(ZylIntRange(env) == ZylIntRange(env));
  // A range in front looks at bounds alone, a set in front at each value.
  EXPECT_TRUE(range == ints({3, 1, 2}));
  EXPECT_FALSE(ints({3, 1, 2}) == range);
  EXPECT_TRUE(ints({1, 2, 3}) == range);
  EXPECT_TRUE(range == ZylIntCollection(make<ZylIntAbstractDataColumnI>({3, 1, 1})));
  constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
  const ZylNumCollection nan(make<ZylNumAbstractSetI>({NaN}));
  EXPECT_TRUE(nan == ZylNumCollection(nan.getImpl()));
  EXPECT_FALSE(nan == ZylNumCollection(make<ZylNumAbstractSetI>({NaN})));
}

TEST_F(ZylCollections, EmptyHandles) {
  ExpectEachRaises<ZylEmptyHandleException>({
      {"ZylDataCollection: Using empty handle", [] { ZylIntRange().getIntProperty("p"); }},
      {"ZylDataCollection: Using empty string",
       [this] { ZylIntRange(env).getIntProperty(nullptr); }},
      {"ZylNamedProperty: Using empty handle",
       [this] { ZylIntRange(env).addProperty(ZylNamedProperty()); }},
      {"ZylDiscreteDataCollection: Using empty handle", [] { ZylIntRange().getIndex("a"); }},
      {"ZylIntCollection: Using empty handle",
       [this] { static_cast<void>(ZylIntRange(env) == ZylIntCollection()); }},
      {"ZylNumCollection: Using empty handle", [] { ZylNumCollection().getValue(1); }},
      {"ZylAnyCollection: Using empty handle", [] { ZylAnyCollection().contains(nullptr); }},
      {"ZylDataCollection: Using empty handle",
       [] { ZylCollectionHelper::asIntRange(ZylDiscreteDataCollection()); }},
  });
}

TEST_F(ZylCollections, HelperConvertsWhatItKnows) {
  const ZylIntRange range(env, 1, 2);
  EXPECT_EQ(ZylCollectionHelper::asIntRange(range).getImpl(), range.getImpl());
  // A front end's own range answers the test of the kind without being ours.
  class OwnRange : public IntSample {
   public:
    using IntSample::IntSample;
    bool isIntRange() const override { return true; }
  };
  const ZylIntCollection own(new (impl) OwnRange(impl, {1}));
  ExpectEachRaises<ZylWrongUsage>("Collection is not of the correct type",
                                  {[&] { ZylCollectionHelper::asNumRange(range); },
                                   [&] { ZylCollectionHelper::asIntRange(own); }});
}

class Listener : public ZylDataChangeListenerI {
 public:
  Listener(ZylEnvI* env, char name, std::string* log)
      : ZylDataChangeListenerI(env), _name(name), _log(log) {}
  void change() override {
    if (_name == '!') throw ZylWrongUsage("no");
    *_log += _name;
  }

 private:
  char _name;
  std::string* _log;
};

TEST_F(ZylCollections, NewsReachTheNewestListenerFirst) {
  std::string log;
  Listener a(impl, 'a', &log), b(impl, 'b', &log), refuses(impl, '!', &log);
  auto* notifier = new (impl) ZylDataChangeNotifierI(impl);
  notifier->change();
  for (Listener* each : {&a, &b, &a}) notifier->registerListener(each);
  notifier->change();
  EXPECT_EQ(log, "aba");
  notifier->unregisterListener(&a);
  notifier->unregisterListener(&refuses);
  notifier->change();
  EXPECT_EQ(log, "abab");
  notifier->registerListener(&refuses);
  notifier->registerListener(&a);
  EXPECT_THROW(notifier->change(), ZylWrongUsage);
  EXPECT_EQ(log, "ababa");
  EXPECT_THROW(notifier->registerListener(nullptr), ZylWrongUsage);
  delete notifier;
}

}  // namespace
}  // namespace zyl::test
