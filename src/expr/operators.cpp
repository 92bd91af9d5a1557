// The bodies behind the operators: what stays one linear node, and what becomes a new one.

#include "vorlane/expr/operators.h"

#include "common/build.h"
#include "vorlane/env/number.h"
#include "vorlane/expr/nodes.h"

// --- checked arithmetic --------------------------------------------------------------------------

namespace {

// A NaN passes: it is neither above nor below.
long checkedResult(double value, const char* text) {
  if (value > static_cast<double>(ZylIntMax) || value < static_cast<double>(ZylIntMin)) {
    throw ZylIntExpr::ZylOverflowOccurred(text);
  }
  return ZylTrunc(value);
}

}  // namespace

long ZylSumOverflow(double a, double b) {
  return checkedResult(a + b, "overflow occurred in addition");
}
long ZylSubOverflow(double a, double b) {
  return checkedResult(a - b, "overflow occurred in substraction");
}
long ZylTimesOverflow(double a, double b) {
  return checkedResult(a * b, "overflow occurred in multiplication");
}
long ZylDivOverflow(double a, double b) {
  return checkedResult(a / b, "overflow occurred in division");
}

namespace zyl::detail {

// --- sums ----------------------------------------------------------------------------------------

namespace {

#define ZYL_SUM_TEXT(Result, A, B) \
#Result " operator + const " #A " const " #B ": mixing mismatch Environments"
#define ZYL_NUM_SUM_TEXT(A, B) ZYL_SUM_TEXT(ZylNumExprArg, A, B)
#define ZYL_INT_SUM_TEXT(A, B) ZYL_SUM_TEXT(ZylIntExprArg, A, B)

// By the classes of the operands in the order of `SumClass`. Between an integer and a numeric
// operand an integer expression counts as a numeric one, while a term keeps its name.
constexpr const char* SumTexts[4][4] = {
    {ZYL_NUM_SUM_TEXT(ZylNumExprArg, ZylNumExprArg), ZYL_NUM_SUM_TEXT(ZylNumExprArg, ZylNumExprArg),
     ZYL_NUM_SUM_TEXT(ZylNumExprArg, ZylNumLinExprTerm),
     ZYL_NUM_SUM_TEXT(ZylNumExprArg, ZylIntLinExprTerm)},
    {ZYL_NUM_SUM_TEXT(ZylNumExprArg, ZylNumExprArg), ZYL_INT_SUM_TEXT(ZylIntExprArg, ZylIntExprArg),
     ZYL_NUM_SUM_TEXT(ZylNumExprArg, ZylNumLinExprTerm),
     ZYL_INT_SUM_TEXT(ZylIntExprArg, ZylIntLinExprTerm)},
    {ZYL_NUM_SUM_TEXT(ZylNumLinExprTerm, ZylNumExprArg),
     ZYL_NUM_SUM_TEXT(ZylNumLinExprTerm, ZylNumExprArg),
     ZYL_NUM_SUM_TEXT(ZylNumLinExprTerm, ZylNumLinExprTerm),
     ZYL_NUM_SUM_TEXT(ZylNumLinExprTerm, ZylIntLinExprTerm)},
    {ZYL_NUM_SUM_TEXT(ZylIntLinExprTerm, ZylNumExprArg),
     ZYL_INT_SUM_TEXT(ZylIntLinExprTerm, ZylIntExprArg),
     ZYL_NUM_SUM_TEXT(ZylIntLinExprTerm, ZylNumLinExprTerm),
     ZYL_INT_SUM_TEXT(ZylIntLinExprTerm, ZylIntLinExprTerm)}};

#undef ZYL_SUM_TEXT
#undef ZYL_NUM_SUM_TEXT
#undef ZYL_INT_SUM_TEXT

// A new sum on a record that it takes over.
template <class Sum>
Sum* sumOn(ZylNumLinExprTermI* term) {
  if constexpr (std::is_same_v<Sum, ZylNumLinTermI>) {
    return new (term->_var->getEnv()) ZylNumLinTermI(ZylNumLinExprTerm(term));
  } else {
    return new (term->_var->getEnv()) ZylIntLinTermI(ZylIntLinExprTerm(term));
  }
}

template <class Sum>
Sum* sumOn(ZylNumVarI* variable, double coefficient = 1.0) {
  ZylEnvI* env = variable->getEnv();
  Unfinished sum(new (env) Sum(env, 0));
  sum->append(env->newTerm(variable, coefficient));
  return sum.finish();
}

// What differs between the two kinds of sums.
ZylNumLinTermI* ownSum(ZylNumExprI* expr, NodeClass kind) { return ownLinearOf(expr, kind); }
ZylIntLinTermI* ownSum(ZylIntExprI* expr, NodeClass) { return ownInt(expr); }
ZylNumExprI* copyOf(ZylNumExprI* expr) { return expr->copy(); }
ZylIntExprI* copyOf(ZylIntExprI* expr) { return expr->intCopy(); }

bool isLinear(NodeClass kind) noexcept {
  return kind == NodeClass::NumLinear || kind == NodeClass::IntLinear;
}

// The sum of two expressions: in the left one if it is linear, else in the right one, else in a new
// node. Two non-linear parts keep their order only in the last case.
template <class Sum, class Expr>
Sum* addExprs(Expr* a, Expr* b) {
  const NodeClass left = classOf(a);
  if (isLinear(left)) {
    // A temporary that stands on both sides is taken over once only.
    if (a == b && a->isTemporary()) b = copyOf(b);
    Unfinished sum(ownSum(a, left), a);
    addTo(sum.get(), b);
    return sum.finish();
  }
  const NodeClass right = classOf(b);
  if (isLinear(right)) {
    Unfinished sum(ownSum(b, right), b);
    if (left == NodeClass::Variable) {
      sum->prepend(sum->getEnv()->newTerm(asVar(a), 1.0));
    } else {
      sum->append(a);
    }
    return sum.finish();
  }
  if (left == NodeClass::Variable) {
    Unfinished sum(sumOn<Sum>(asVar(a)));
    addTo(sum.get(), b);
    return sum.finish();
  }
  const KeptOperand kept(a);
  Unfinished sum(right == NodeClass::Variable ? sumOn<Sum>(asVar(b))
                                              : new (a->getEnv()) Sum(a->getEnv(), 0));
  sum->append(a);
  if (right == NodeClass::Other) sum->append(b);
  return sum.finish();
}

template <class Sum, class Expr>
Sum* addTermExpr(ZylNumLinExprTermI* a, Expr* b) {
  const NodeClass right = classOf(b);
  if (isLinear(right)) {
    Sum* sum = ownSum(b, right);
    sum->prepend(a);
    return sum;
  }
  Sum* sum = sumOn<Sum>(a);
  addTo(sum, b);
  return sum;
}

template <class Sum, class Expr>
Sum* addExprTerm(Expr* a, ZylNumLinExprTermI* b) {
  const NodeClass left = classOf(a);
  if (left == NodeClass::Other) {
    Sum* sum = sumOn<Sum>(b);
    sum->append(a);
    return sum;
  }
  Sum* sum = left == NodeClass::Variable ? sumOn<Sum>(asVar(a)) : ownSum(a, left);
  sum->append(b);
  return sum;
}

template <class Sum, class Expr>
Sum* sumForConstant(Expr* a) {
  const NodeClass kind = classOf(a);
  if (isLinear(kind)) return ownSum(a, kind);
  if (kind == NodeClass::Variable) return sumOn<Sum>(asVar(a));
  Unfinished sum(new (a->getEnv()) Sum(a->getEnv(), 0));
  sum->append(a);
  return sum.finish();
}

}  // namespace

void raiseSumMismatch(SumClass a, SumClass b) {
  ZylRaiseWrongUsage(SumTexts[static_cast<int>(a)][static_cast<int>(b)]);
}

void addTo(ZylIntLinTermI* sum, ZylIntExprI* expr) {
  const NodeClass kind = classOf(expr);
  if (kind == NodeClass::Variable) {
    sum->append(sum->getEnv()->newTerm(asVar(expr), 1.0));
  } else if (kind == NodeClass::IntLinear) {
    sum->append(ownInt(expr));
  } else {
    sum->append(expr);
  }
}

ZylNumLinTermI* addNum(ZylNumExprI* a, ZylNumExprI* b) { return addExprs<ZylNumLinTermI>(a, b); }
ZylIntLinTermI* addInt(ZylIntExprI* a, ZylIntExprI* b) { return addExprs<ZylIntLinTermI>(a, b); }
ZylNumLinTermI* addNum(ZylNumLinExprTermI* a, ZylNumExprI* b) {
  return addTermExpr<ZylNumLinTermI>(a, b);
}
ZylIntLinTermI* addInt(ZylNumLinExprTermI* a, ZylIntExprI* b) {
  return addTermExpr<ZylIntLinTermI>(a, b);
}
ZylNumLinTermI* addNum(ZylNumExprI* a, ZylNumLinExprTermI* b) {
  return addExprTerm<ZylNumLinTermI>(a, b);
}
ZylIntLinTermI* addInt(ZylIntExprI* a, ZylNumLinExprTermI* b) {
  return addExprTerm<ZylIntLinTermI>(a, b);
}
ZylNumLinTermI* addNum(ZylNumLinExprTermI* a, ZylNumLinExprTermI* b) {
  ZylNumLinTermI* sum = sumOn<ZylNumLinTermI>(a);
  sum->append(b);
  return sum;
}
ZylIntLinTermI* addInt(ZylNumLinExprTermI* a, ZylNumLinExprTermI* b) {
  ZylIntLinTermI* sum = sumOn<ZylIntLinTermI>(a);
  sum->append(b);
  return sum;
}

ZylNumLinTermI* addNumConstant(ZylNumExprI* a, double constant) {
  ZylNumLinTermI* sum = sumForConstant<ZylNumLinTermI>(a);
  sum->setConstant(constant + sum->getConstant());
  return sum;
}
ZylNumLinTermI* addNumConstant(ZylNumLinExprTermI* a, double constant) {
  ZylNumLinTermI* sum = sumOn<ZylNumLinTermI>(a);
  sum->setConstant(constant);
  return sum;
}
ZylIntLinTermI* addIntConstant(ZylIntExprI* a, long constant) {
  ZylIntLinTermI* sum = sumForConstant<ZylIntLinTermI>(a);
  sum->setConstant(wrappedSum(constant, sum->getConstant()));
  return sum;
}
ZylIntLinTermI* addIntConstant(ZylNumLinExprTermI* a, long constant) {
  ZylIntLinTermI* sum = sumOn<ZylIntLinTermI>(a);
  sum->setConstant(constant);
  return sum;
}

// --- products ------------------------------------------------------------------------------------

ZylNumExprI* scaleNum(ZylNumExprI* a, double factor) {
  for (;;) {
    const NodeClass kind = classOf(a);
    if (kind == NodeClass::Variable) return sumOn<ZylNumLinTermI>(asVar(a), factor);
    if (isLinear(kind)) {
      Unfinished sum(ownLinearOf(a, kind), a);
      sum->multiply(factor);
      return sum.finish();
    }
    if (zyl::isExactly<ZylNumTimesCstI>(a)) {
      const auto* product = static_cast<const ZylNumTimesCstI*>(a);
      factor *= product->getConstant();
      a = product->getOperand();
    } else if (zyl::isExactly<ZylIntTimesCstI>(a)) {
      const auto* product = static_cast<const ZylIntTimesCstI*>(a);
      factor *= static_cast<double>(product->getConstant());
      a = product->getOperand();
    } else {
      return new (a->getEnv()) ZylNumTimesCstI(a->getEnv(), a, factor);
    }
  }
}

ZylIntExprI* scaleInt(ZylIntExprI* a, long factor) {
  for (;;) {
    const NodeClass kind = classOf(a);
    if (kind == NodeClass::Variable) {
      return sumOn<ZylIntLinTermI>(asVar(a), static_cast<double>(factor));
    }
    if (kind == NodeClass::IntLinear) {
      Unfinished sum(ownInt(a), a);
      sum->multiply(factor);
      return sum.finish();
    }
    if (!zyl::isExactly<ZylIntTimesCstI>(a)) {
      return new (a->getEnv()) ZylIntTimesCstI(a->getEnv(), a, factor);
    }
    const auto* product = static_cast<const ZylIntTimesCstI*>(a);
    factor = wrappedProduct(factor, product->getConstant());
    a = product->getOperand();
  }
}

namespace {

// The linear node, if the expression is one without terms and parts.
template <class Sum>
const Sum* asConstant(const ZylNumExprI* expr) {
  if (!zyl::isExactly<Sum>(expr)) return nullptr;
  const auto* sum = static_cast<const Sum*>(expr);
  return sum->isConstant() ? sum : nullptr;
}

bool isConstantSum(const ZylNumExprI* expr) {
  return asConstant<ZylNumLinTermI>(expr) != nullptr || asConstant<ZylIntLinTermI>(expr) != nullptr;
}

}  // namespace

ZylNumExprI* timesNum(ZylNumExprI* a, ZylNumExprI* b) {
  if (isConstantSum(a)) return scaleNum(b, a->getNumConstant());
  if (isConstantSum(b)) return scaleNum(a, b->getNumConstant());
  return new (a->getEnv()) ZylNumTimesI(a->getEnv(), a, b);
}

ZylIntExprI* timesInt(ZylIntExprI* a, ZylIntExprI* b) {
  if (const auto* sum = asConstant<ZylIntLinTermI>(a)) return scaleInt(b, sum->getConstant());
  if (const auto* sum = asConstant<ZylIntLinTermI>(b)) return scaleInt(a, sum->getConstant());
  return new (a->getEnv()) ZylIntTimesI(a->getEnv(), a, b);
}

// --- quotients -----------------------------------------------------------------------------------

ZylNumExprI* divideNum(ZylNumExprI* a, double divisor) {
  const NodeClass kind = classOf(a);
  if (kind == NodeClass::Variable) return sumOn<ZylNumLinTermI>(asVar(a), 1.0 / divisor);
  if (isLinear(kind)) {
    Unfinished sum(ownLinearOf(a, kind), a);
    sum->divide(divisor);
    return sum.finish();
  }
  return new (a->getEnv()) ZylNumDivCstI(a->getEnv(), a, divisor);
}

ZylNumExprI* divideNum(double dividend, ZylNumExprI* b) {
  return new (b->getEnv()) ZylNumRecDivCstI(b->getEnv(), b, dividend);
}

ZylNumExprI* divideNum(ZylNumExprI* a, ZylNumExprI* b) {
  return new (a->getEnv()) ZylNumDivI(a->getEnv(), a, b);
}

ZylIntExprI* moduloInt(ZylIntExprI* a, long b) {
  return new (a->getEnv()) ZylIntModuloCstI(a->getEnv(), a, b);
}

ZylIntExprI* moduloInt(long a, ZylIntExprI* b) {
  return new (b->getEnv()) ZylIntRecModuloCstI(b->getEnv(), b, a);
}

ZylIntExprI* moduloInt(ZylIntExprI* a, ZylIntExprI* b) {
  return new (a->getEnv()) ZylIntModuloI(a->getEnv(), a, b);
}

}  // namespace zyl::detail
