// After any sequence of edits the engine must answer as one that is loaded afresh.

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <vector>

#include "vorlane/cbc.h"

namespace {

/// A small model under random edits, with an engine that follows and one that is loaded each time.
class EditedModel {
 public:
  explicit EditedModel(unsigned seed) : _random(seed), _model(_env), _nested(_env) {
    for (int i = 0; i < 6; ++i) addVariable();
    for (int i = 0; i < 4; ++i) addRange();
    _objective = ZylMaximize(_env, sum());
    _model.add(_objective);
    _model.add(_nested);
    _following = ZylCbc(_model);
    _following.setLogLevel(0);
  }
  ~EditedModel() { _env.end(); }

  void editAndCompare() {
    const int edits = 1 + pick(4);
    for (int i = 0; i < edits; ++i) edit();
    ZylCbc fresh(_model);
    fresh.setLogLevel(0);
    const bool expected = fresh.solve();
    const bool found = _following.solve();
    EXPECT_EQ(_following.getImpl()->getColumnCount(), fresh.getImpl()->getColumnCount()) << _trace;
    EXPECT_EQ(_following.getImpl()->getRowCount(), fresh.getImpl()->getRowCount()) << _trace;
    ASSERT_EQ(_following.getStatus(), fresh.getStatus()) << _trace << _model;
    ASSERT_EQ(found, expected) << _trace;
    if (found && _hasObjective) {
      const double value = fresh.getObjValue();
      ASSERT_NEAR(_following.getObjValue(), value, 1e-6 * std::max(1.0, std::fabs(value)))
          << _trace;
      // The answers hold in the model itself, not only in the engine's own accounts.
      for (const ZylRange& range : _ranges) {
        if (!_following.isExtracted(range)) continue;
        double sum = range.getExpr().getNumConstant();
        for (auto term = range.getLinearIterator(); term.ok(); ++term) {
          if (term.getVal() != 0.0) sum += term.getVal() * _following.getValue(term.getVar());
        }
        EXPECT_LE(sum, range.getUB() + 1e-5) << _trace;
        EXPECT_GE(sum, range.getLB() - 1e-5) << _trace;
      }
    }
    fresh.end();
  }

 private:
  int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(_random); }
  double number() { return pick(13) - 6; }
  ZylNumVar& variable() { return _variables[static_cast<std::size_t>(pick(count(_variables)))]; }
  ZylRange& range() { return _ranges[static_cast<std::size_t>(pick(count(_ranges)))]; }
  template <class List>
  static int count(const List& list) {
    return static_cast<int>(list.size());
  }
  ZylModel& somewhere() { return pick(3) == 0 ? _nested : _model; }

  // With repeated variables, and zeros.
  ZylNumExprArg sum() {
    ZylExpr e(_env, number());
    const int terms = 1 + pick(6);
    for (int i = 0; i < terms; ++i) e += number() * variable();
    ZylNumLinTermI* node = e.getImpl();
    node->unhold();
    return ZylNumExprArg(node);
  }

  void addVariable() {
    const double lower = number();
    const double upper = lower + pick(9);
    const ZylNumVar::Type types[] = {ZylNumVar::Float, ZylNumVar::Float, ZylNumVar::Int,
                                     ZylNumVar::Bool};
    _variables.emplace_back(_env, lower, upper, types[pick(4)]);
    if (pick(2) == 0) somewhere().add(_variables.back());
  }

  void addRange() {
    const double lower = number() - 4;
    ZylRange added(_env, pick(3) == 0 ? -ZylInfinity : lower, sum(),
                   pick(3) == 0 ? ZylInfinity : lower + 8 + pick(20));
    _ranges.push_back(added);
    somewhere().add(added);
  }

  void edit() {
    struct Edit {
      const char* name;
      std::function<void()> run;
    };
    const Edit edits[] = {
        {"add variable", [&] { addVariable(); }},
        {"add range",
         [&] {
           if (count(_ranges) < 9) addRange();
         }},
        {"variable LB", [&] { variable().setLB(number()); }},
        {"variable UB", [&] { variable().setUB(number() + 4); }},
        {"free variable",
         [&] {
           // Integer ones stay bounded: the tree search needs not end otherwise.
           const ZylNumVar v = variable();
           if (v.getType() == ZylNumVar::Float && _conversions.empty()) {
             v.setBounds(-ZylInfinity, ZylInfinity);
             _hasFree = true;
           }
         }},
        {"variable bounds",
         [&] {
           const double l = number();
           variable().setBounds(l, l + pick(6));
         }},
        {"variable array bounds",
         [&] {
           ZylNumVarArray vars(_env, 2L, variable(), variable());
           ZylNumArray lower(_env, 2L, number() - 3, number() - 3);
           ZylNumArray upper(_env, 2L, number() + 6, number() + 6);
           vars.setBounds(lower, upper);
           vars.end();
           lower.end();
           upper.end();
         }},
        {"range LB", [&] { range().setLB(number() - 6); }},
        {"range UB", [&] { range().setUB(number() + 9); }},
        {"range bounds",
         [&] {
           const double l = number();
           range().setBounds(l - 8, l + 9);
         }},
        {"range array bounds",
         [&] {
           ZylRangeArray ranges(_env, 2L, range(), range());
           ZylNumArray lower(_env, 2L, number() - 9, -20.0);
           ZylNumArray upper(_env, 2L, number() + 9, 25.0);
           ranges.setBounds(lower, upper);
           ranges.end();
           lower.end();
           upper.end();
         }},
        {"range coef", [&] { range().setLinearCoef(variable(), number()); }},
        {"range coefs",
         [&] {
           ZylNumVarArray vars(_env, 2L, variable(), variable());
           ZylNumArray coefs(_env, 2L, number(), number());
           range().setLinearCoefs(vars, coefs);
           vars.end();
           coefs.end();
         }},
        {"range expr", [&] { range().setExpr(sum()); }},
        {"objective coef", [&] { _objective.setLinearCoef(variable(), number()); }},
        {"objective expr", [&] { _objective.setExpr(sum()); }},
        {"objective const", [&] { _objective.setConst(number()); }},
        {"objective sense",
         [&] {
           _objective.setSense(pick(2) == 0 ? ZylObjective::Maximize : ZylObjective::Minimize);
         }},
        {"remove range", [&] { _model.remove(range()); }},
        {"add range again", [&] { somewhere().add(range()); }},
        {"end range",
         [&] {
           if (count(_ranges) < 4) return;
           const int i = pick(count(_ranges));
           _ranges[static_cast<std::size_t>(i)].end();
           _ranges.erase(_ranges.begin() + i);
         }},
        {"end variable",
         [&] {
           if (count(_variables) < 5) return;
           const int i = pick(count(_variables));
           _variables[static_cast<std::size_t>(i)].end();
           _variables.erase(_variables.begin() + i);
         }},
        {"end two variables",
         [&] {
           if (count(_variables) < 8) return;
           ZylNumVarArray vars(_env, 2L, _variables[0], _variables[1]);
           vars.endElements();
           vars.end();
           _variables.erase(_variables.begin(), _variables.begin() + 2);
         }},
        {"comparison", [&] { somewhere().add(sum() <= sum() + 30); }},
        {"convert",
         [&] {
           if (_hasFree) return;
           const ZylNumVar::Type types[] = {ZylNumVar::Float, ZylNumVar::Int};
           ZylConversion conversion(_env, variable(), types[pick(2)]);
           _conversions.push_back(conversion);
           _model.add(conversion);
         }},
        {"end conversion",
         [&] {
           if (_conversions.empty()) return;
           _conversions.back().end();
           _conversions.pop_back();
         }},
        {"possible values",
         [&] {
           const ZylNumVar v = variable();
           if (v.getType() != ZylNumVar::Float) return;
           ZylNumArray values(_env, 3L, number(), number() + 0.5, number());
           v.setPossibleValues(values);
           values.end();
           // Bounds of discrete float variables cannot be set any more; keep those out of it.
           _variables.push_back(ZylNumVar(_env, -1.0, 3.0));
           std::erase_if(_variables,
                         [&](const ZylNumVar& o) { return o.getImpl() == v.getImpl(); });
         }},
        {"column",
         [&] {
           ZylNumVar added(_env, -2.0, 5.0);
           ZylAddValueToRange entry = range()(number());
           entry.install(added.getImpl());
           ZylAddValueToObj cost = _objective(number());
           cost.install(added.getImpl());
           _variables.push_back(added);
         }},
        {"move objective",
         [&] {
           if (_hasObjective) {
             _model.remove(_objective);
           } else {
             _model.add(_objective);
           }
           _hasObjective = !_hasObjective;
         }},
        {"move nested",
         [&] {
           if (_hasNested) {
             _model.remove(_nested);
           } else {
             _model.add(_nested);
           }
           _hasNested = !_hasNested;
         }},
    };
    const Edit& chosen = edits[pick(static_cast<int>(std::size(edits)))];
    _trace += std::string(chosen.name) + "; ";
    chosen.run();
  }

  std::mt19937 _random;
  ZylEnv _env;
  ZylModel _model;
  ZylModel _nested;
  std::vector<ZylNumVar> _variables;
  std::vector<ZylRange> _ranges;
  std::vector<ZylConversion> _conversions;
  ZylObjective _objective;
  bool _hasObjective = true;
  bool _hasNested = true;
  bool _hasFree = false;
  ZylCbc _following;
  std::string _trace;
};

TEST(ZylCbcEdits, AnswerAsAFreshLoadDoes) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    EditedModel model(seed);
    for (int round = 0; round < 30 && !testing::Test::HasFailure(); ++round) model.editAndCompare();
    if (testing::Test::HasFailure()) return;
  }
}

}  // namespace
