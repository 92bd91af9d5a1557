// What the tests of expressions share: an environment with some variables, and values for them.

#ifndef ZYL_TESTS_EXPR_FIXTURE_H
#define ZYL_TESTS_EXPR_FIXTURE_H

#include <map>

#include "support/recording.h"
#include "support/support.h"
#include "vorlane/constraint.h"
#include "vorlane/expr.h"

namespace zyl::test {

/// Answers for variables from a table.
class ValueAlgorithm : public RecordingAlgorithm {
 public:
  using RecordingAlgorithm::getValue;
  using RecordingAlgorithm::RecordingAlgorithm;
  double getValue(const ZylNumVarI* variable) const override { return values.at(variable); }
  std::map<const ZylNumVarI*, double> values;
};

class ExprTest : public EnvTest {
 protected:
  ExprTest() {
    for (ZylNumVarI* variable : {x.getImpl(), y.getImpl(), z.getImpl(), i.getImpl(), j.getImpl()}) {
      values->extract(variable);
    }
    set(2.5, 4.0, -1.5, 7, -3);
  }
  void set(double valueX, double valueY, double valueZ, long valueI, long valueJ) {
    values->values = {{x.getImpl(), valueX},
                      {y.getImpl(), valueY},
                      {z.getImpl(), valueZ},
                      {i.getImpl(), static_cast<double>(valueI)},
                      {j.getImpl(), static_cast<double>(valueJ)}};
  }
  double eval(const ZylNumExprArg& expr) const {
    return expr.getImpl()->eval(ZylAlgorithm(values));
  }
  bool isAlive(long id) const { return !impl->getIdManager()->isFree(id); }
  /// Number of objects that live in the environment.
  long liveObjects() const {
    long count = 0;
    for (ZylIdManager::Iterator it(*impl->getIdManager()); it.ok(); ++it) ++count;
    return count;
  }
  static ZylNumLinTermI* numSum(const ZylNumExprArg& expr) {
    return zyl::as<ZylNumLinTermI>(expr.getImpl());
  }
  static ZylIntLinTermI* intSum(const ZylNumExprArg& expr) {
    return zyl::as<ZylIntLinTermI>(expr.getImpl());
  }

  ZylNumVar x{env, 0, 10, "x"};
  ZylNumVar y{env, 0, 10, "y"};
  ZylNumVar z{env, -5, 5, "z"};
  ZylIntVar i{env, 0, 5, "i"};
  ZylIntVar j{env, -9, 9, "j"};
  // The environment deletes it.
  ValueAlgorithm* values = new ValueAlgorithm(impl);
};

}  // namespace zyl::test

#endif
