// Allocations that fail, at each request of an edit in turn: the edit has not happened, nothing
// leaks, and the same edit goes through afterwards.

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

#include "support/recording.h"
#include "support/support.h"
#include "vorlane/vorlane.h"

namespace zyl::test {
namespace {

constexpr const char* LongText = "a text that needs a block of a size class of its own, to be sure";

/// A model with an engine on it, and an environment for clones. All has a name, as ids show in
/// texts.
struct World {
  World() {
    x.setStringProperty("unit", "kg");
    properties.addProperty(ZylNamedIntProperty(env, "batch", 7));
    properties.addProperty(ZylNamedStringProperty(env, "maker", LongText));
    model.add(range);
    model.add(objective);
    engine->load(model.getImpl());
    // The table of ids is full, or nearly so.
    for (ZylEnvI* impl : {env.getImpl(), other.getImpl()}) {
      while (impl->getIdManager()->getMaxId() < 254) impl->getIdManager()->bookId();
    }
    useUp();
  }
  ~World() {
    other.end();
    env.end();
  }
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  void useUp() const {
    useUpPools(env.getImpl());
    useUpPools(other.getImpl());
  }
  // The table of ids keeps its size once it has grown.
  long usage() const {
    long bytes = 0;
    for (const ZylEnvI* impl : {env.getImpl(), other.getImpl()}) {
      bytes += impl->getMemoryUsage() - impl->getIdManagerMemoryUsage();
    }
    return bytes;
  }
  /// All that a client could see of it.
  std::string picture() const {
    std::ostringstream stream;
    stream << model << ' ' << sum << ' ' << shared << ' ' << integers << ' ' << product << ' '
           << ofObjective;
    for (const ZylExtractable& object :
         {ZylExtractable(x), ZylExtractable(free), ZylExtractable(values), ZylExtractable(range)}) {
      stream << (object.getName() != nullptr ? object.getName() : "-") << ' ' << object << '\n';
    }
    for (const char* name : {"unit", "maker", "batch"}) stream << x.hasProperty(name);
    stream << x.getStringProperty("unit") << " sizes " << variables.getSize() << ' '
           << sums.getSize() << ' ' << numbers.getSize() << " made " << (made.getImpl() != nullptr)
           << " counts " << sum.getImpl()->getCount() << product.getImpl()->getCount();
    return stream.str();
  }

  ZylEnv env;
  ZylEnv other;
  ZylNumVar x{env, 0, 9, "x"}, y{env, 0, 9, "y"}, z{env, 0, 9, "z"};
  ZylNumVar free{env, 0, ZylInfinity, "free"};
  ZylIntVar i{env, 0, 9, "i"}, j{env, 0, 9, "j"};
  ZylIntVar values{env, ZylIntArray(env, 4, 3, 5, 7, 9), "values"};
  ZylExpr sum{2 * x + 1};
  ZylExpr shared{3 * y + ZylAbs(x)};
  ZylExpr alsoShared = shared;
  ZylExprArray sums{env, 1, alsoShared};
  ZylIntExpr integers{i + 2 * j};
  ZylNumExpr product{x * y};
  ZylNumVarArray variables{env, 4, x, free, ZylNumVar(values.getImpl()), z};
  ZylNumExprArray expressions{env, 3, x, product, integers};
  ZylNumArray numbers{env, 4, 1.0, 2.0, 3.0, 4.0};
  ZylNumArray larger{env, 4, 5.0, 6.0, 11.0, 8.0};
  ZylIntArray integral{env, 5, 2, 4, 6, 8, 10};
  ZylAnyArray addresses{env, 3};
  ZylNamedPropertySet properties{env.getMemoryManager()};
  ZylRange range{env, 0, 3 * y + 2 * x, 5, "range"};
  ZylNumExpr ofRange{range.getExpr()};
  ZylObjective objective = ZylMinimize(env, 3 * x + y, "objective");
  ZylNumExpr ofObjective{objective.getExpr()};
  ZylExtractableArray modelled{env, 2, range, objective};
  ZylModel model{env, "model"};
  RecordingAlgorithm* engine = new RecordingAlgorithm(env.getImpl());
  /// What an operation made last, for those that only make something.
  ZylExtractable made;
};

struct Edit {
  const char* name;
  void (*run)(World& w);
  /// Operands that an operator raised on are lost until their environment ends.
  bool losesTemporaries = false;
};

void PrintTo(const Edit& edit, std::ostream* stream) { *stream << edit.name; }

bool fails(const Edit& edit, World& w, long request) {
  try {
    const FailingAllocator failing(request);
    edit.run(w);
    return false;
  } catch (const ZylMemoryException&) {
    return true;
  }
}

class FailedAllocations : public testing::TestWithParam<Edit> {};

TEST_P(FailedAllocations, ChangeNothing) {
  const Edit& edit = GetParam();
  const std::string before = World().picture();
  std::string behind;
  {
    World whole;
    edit.run(whole);
    behind = whole.picture();
  }
  long request = 0;
  const auto run = [&](World& w) {
    ++request;
    edit.run(w);
  };
  const auto check = [&](World& w) {
    EXPECT_EQ(w.picture(), before);
    // A failure may leave something ready for the next attempt, but not each time.
    long growth = 0;
    bool failed = true;
    for (int again = 0; failed && again < 10; ++again) {
      w.useUp();
      const long usage = w.usage();
      failed = fails(edit, w, request);
      growth = w.usage() - usage;
    }
    if (failed) {
      EXPECT_EQ(w.picture(), before);
      if (!edit.losesTemporaries) {
        EXPECT_EQ(growth, 0);
      }
      edit.run(w);
    }
    EXPECT_EQ(w.picture(), behind);
  };
  FailEachAllocation([] { return std::make_unique<World>(); }, run, check);
}

// An array that goes again leaves what it made.
template <class Array>
void drop(Array array) {
  array.end();
}

constexpr bool Loses = true;

const Edit Edits[] = {
    {"Variable", [](World& w) { w.made = ZylNumVar(w.env, 0, 77, LongText); }},
    {"IntegerVariable", [](World& w) { w.made = ZylIntVar(w.env, 0, 77, LongText); }},
    {"VariableOnValues", [](World& w) { w.made = ZylIntVar(w.env, w.integral, LongText); }},
    {"Variables", [](World& w) { drop(ZylNumVarArray(w.env, 20, 0.0, 77.0)); }},
    {"VariablesOnArrays", [](World& w) { drop(ZylNumVarArray(w.env, w.numbers, w.larger)); }},
    {"VariablesOfPositions",
     [](World& w) { drop(ZylIntVarArray(w.env, 3, ZylAnyArray(w.addresses))); }},
    {"SemiContinuousVariables", [](World& w) { drop(ZylSemiContVarArray(w.env, 5, 3.0, 77.0)); }},
    {"Name", [](World& w) { w.x.setName(LongText); }},
    {"Names", [](World& w) { w.variables.setNames(LongText); }},
    {"ArrayOfNumbers", [](World& w) { drop(ZylNumArray(w.env, 6, 1, 2, 3, 4, 5, 6)); }},
    {"ArrayElement", [](World& w) { w.variables.add(w.y); }},
    {"ArrayCopies", [](World& w) { w.numbers.add(100, 1.0); }},
    {"ArrayArray", [](World& w) { w.variables.add(w.variables); }},
    {"ArraySums", [](World& w) { w.sums.add(5, w.sum); }},
    {"ArrayArrayOfSums", [](World& w) { w.sums.add(w.sums); }},
    {"AddTerm", [](World& w) { w.sum += 3 * w.y; }},
    {"AddTermToShared", [](World& w) { w.shared += 3 * w.y; }},
    {"SubtractTermFromShared", [](World& w) { w.shared -= 3 * w.y; }},
    {"AddVariable", [](World& w) { w.sum += w.y; }},
    {"AddConstantToShared", [](World& w) { w.shared += 5; }},
    {"AddFunction", [](World& w) { w.sum += ZylSin(w.y); }, Loses},
    {"AddProduct", [](World& w) { w.sum += w.product; }},
    {"AddSum", [](World& w) { w.sum += w.integers; }},
    {"AddFormula", [](World& w) { w.sum += w.x * w.y + 2; }, Loses},
    {"SubtractProduct", [](World& w) { w.sum -= w.product; }},
    {"SubtractSum", [](World& w) { w.sum -= w.integers; }},
    {"MultiplyShared", [](World& w) { w.shared *= 3; }},
    {"AddSumToIntegers", [](World& w) { w.integers += w.integers; }},
    {"MultiplyProduct", [](World& w) { w.product *= 3; }},
    {"AddToProduct", [](World& w) { w.product += 3; }},
    {"SubtractFromProduct", [](World& w) { w.product -= w.shared; }},
    {"SubtractProductFromItself", [](World& w) { w.product -= w.product; }},
    {"SubtractSumFromItself", [](World& w) { w.integers -= w.integers; }},
    {"SumCoefs", [](World& w) { w.sum.setLinearCoefs(w.variables, w.numbers); }},
    {"Product", [](World& w) { w.made = w.x * w.y; }},
    {"ProductOfSums", [](World& w) { w.made = w.sum * w.integers; }},
    {"Sum", [](World& w) { w.made = w.x + w.y; }},
    {"SumOfProducts", [](World& w) { w.made = w.product + w.product; }},
    {"SumOfSums", [](World& w) { w.made = w.shared + w.integers; }},
    {"SumOfProductAndSum", [](World& w) { w.made = w.product + w.shared; }},
    {"SumOfVariableAndSum", [](World& w) { w.made = w.y + w.shared; }},
    {"SumOfVariableAndProduct", [](World& w) { w.made = w.y + w.product; }},
    {"SumOfProductAndConstant", [](World& w) { w.made = w.product + 3; }},
    {"SumOfIntegers", [](World& w) { w.made = w.i + w.integers; }},
    {"SumOfTerms", [](World& w) { w.made = 2 * w.x + 3 * w.y; }, Loses},
    {"Negative", [](World& w) { w.made = -w.shared; }},
    {"Quotient", [](World& w) { w.made = w.sum / w.x; }},
    {"Remainder", [](World& w) { w.made = w.integers % 3; }},
    {"Max", [](World& w) { w.made = ZylMax(w.x, w.product); }},
    {"Abs", [](World& w) { w.made = ZylAbs(w.sum); }},
    {"MaxOfArray", [](World& w) { w.made = ZylMax(w.expressions); }},
    {"SumOfArray", [](World& w) { w.made = ZylSum(w.expressions); }},
    {"ScalarProduct", [](World& w) { w.made = ZylScalProd(w.numbers, w.variables); }},
    {"ElementOfArray", [](World& w) { w.made = w.expressions[w.i]; }},
    {"Formula", [](World& w) { w.made = ZylMax(w.x * w.y, ZylAbs(w.x) + 2 * w.y); }, Loses},
    {"Range", [](World& w) { w.made = ZylRange(w.env, 0, w.sum, 5, LongText); }},
    {"RangeOnProduct", [](World& w) { w.made = ZylRange(w.env, 0, w.product, 5, LongText); }},
    {"EmptyRange", [](World& w) { w.made = ZylRange(w.env, 0, 5, LongText); }},
    {"Ranges", [](World& w) { drop(ZylRangeArray(w.env, 20, 0.0, 5.0)); }},
    {"RangeCoef", [](World& w) { w.range.setLinearCoef(w.z, 4); }},
    {"RangeCoefs", [](World& w) { w.range.setLinearCoefs(w.variables, w.numbers); }},
    {"RangeExpr", [](World& w) { w.range.setExpr(w.product); }},
    {"ObjectiveCoef", [](World& w) { w.objective.setLinearCoef(w.z, 4); }},
    {"ObjectiveCoefs", [](World& w) { w.objective.setLinearCoefs(w.variables, w.numbers); }},
    {"ObjectiveConstant", [](World& w) { w.objective.setConst(7); }},
    {"ObjectiveExpr", [](World& w) { w.objective.setExpr(w.integers); }},
    {"ModelAdd", [](World& w) { w.model.add(w.y); }},
    {"ModelAddArray", [](World& w) { w.model.add(w.variables); }},
    {"ModelRemove", [](World& w) { w.model.remove(w.range); }},
    {"ModelRemoveArray", [](World& w) { w.model.remove(w.modelled); }},
    {"LowerBound", [](World& w) { w.x.setLB(3.5); }},
    {"UpperBound", [](World& w) { w.free.setUB(33.5); }},
    {"Bounds", [](World& w) { w.x.setBounds(3.5, 4.5); }},
    {"FirstBounds", [](World& w) { w.free.setBounds(3.5, 4.5); }},
    {"BoundsOnValues", [](World& w) { w.values.setBounds(-20, 40); }},
    {"BoundsOfArray", [](World& w) { w.variables.setBounds(w.numbers, w.larger); }},
    {"PossibleValues", [](World& w) { w.values.setPossibleValues(w.integral); }},
    {"PossibleNumbers", [](World& w) { w.x.setPossibleValues(w.numbers); }},
    {"Property", [](World& w) { w.x.setStringProperty("maker", LongText); }},
    {"PropertyAgain", [](World& w) { w.x.setStringProperty("unit", LongText); }},
    {"PropertyOfEnvironment", [](World& w) { w.env.setNumProperty("maker", 1.5); }},
    {"Properties", [](World& w) { w.x.addProperties(w.properties); }},
    {"CloneOfVariable", [](World& w) { w.made = w.values.getClone(w.other); }},
    {"CloneOfSum", [](World& w) { w.made = w.shared.getClone(w.other); }, Loses},
    {"CloneOfRange", [](World& w) { w.made = w.range.getClone(w.other); }, Loses},
    {"CloneOfModel", [](World& w) { w.made = w.model.getClone(w.other); }, Loses},
    {"Algorithm", [](World& w) { delete new RecordingAlgorithm(w.env.getImpl()); }},
    {"RefusedLoad",
     [](World& w) {
       w.engine->refuse("ZylRangeI");
       try {
         w.engine->load(w.model.getImpl());
         ADD_FAILURE() << "not refused";
       } catch (ZylAlgorithm::CannotExtractException& refusal) {
         refusal.end();
       }
       EXPECT_EQ(w.engine->getUsageCount(w.model.getImpl()), 0);
     }},
};

INSTANTIATE_TEST_SUITE_P(All, FailedAllocations, testing::ValuesIn(Edits),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace zyl::test
