#include "vorlane/expr/nodes.h"

#include <cmath>

#include "expr/node_family.h"
#include "vorlane/expr/operators.h"

using zyl::detail::ArrayCopy;

// --- the rows ------------------------------------------------------------------------------------

namespace zyl::detail {

#define ZYL_FACTS_(Class, RuleName, Long, Short)               \
  template <>                                                  \
  struct NodeFacts<Class> {                                    \
    static constexpr Integrality Rule = Integrality::RuleName; \
    static constexpr Form LongForm = Long;                     \
    static constexpr Form ShortForm = Short;                   \
  };
#define ZYL_UNARY_NODE(Class, Base, Operand, Rule, Long, Short, Value) \
  ZYL_FACTS_(Class, Rule, Long, Short)
#define ZYL_BINARY_NODE(Class, Base, Operand, Rule, Long, Short, Value) \
  ZYL_FACTS_(Class, Rule, Long, Short)
#define ZYL_EXTREME_NODE(Class, Base, Array, Rule, Long, Short, Empty, Better) \
  ZYL_FACTS_(Class, Rule, Long, Short)
#define ZYL_CONSTANT_NODE(Class, Base, Operand, Constant, OrderName, RuleName, Long, Short, Value) \
  template <>                                                                                      \
  struct NodeFacts<Class> {                                                                        \
    static constexpr Integrality Rule = Integrality::RuleName;                                     \
    static constexpr Order Shown = Order::OrderName;                                               \
    static constexpr Form LongForm = Long;                                                         \
    static constexpr Form ShortForm = Short;                                                       \
  };
#define ZYL_ELEMENT_NODE(Class, Base, Array, RuleName, Long, Short) \
  template <>                                                       \
  struct NodeFacts<Class> {                                         \
    static constexpr Integrality Rule = Integrality::RuleName;      \
    static constexpr const char* LongWord = Long;                   \
    static constexpr const char* ShortWord = Short;                 \
  };
#include "vorlane/expr/nodes.inc"
#undef ZYL_FACTS_

}  // namespace zyl::detail

namespace {

constexpr double number(long k) noexcept { return static_cast<double>(k); }
long integer(double x) { return ZylTrunc(x); }

// -1 apart: the quotient of the smallest integer by it does not exist, and traps.
double quotient(long a, long b) { return number(b == -1 ? zyl::detail::negated(a) : a / b); }
double remainder(long a, long b) { return b == -1 ? 0.0 : number(a % b); }

double smaller(double x, double y) { return y < x ? y : x; }
double larger(double x, double y) { return y > x ? y : x; }

double integerValue(double x) {
  if (!ZylNumIsInteger(x)) ZylRaiseWrongUsage("ZylNumToIntI::eval : expr is not IntExpr");
  return number(integer(x));
}

const ZylNumExprI* element(const ZylExtractableArray& array, long i) {
  const auto* expr = static_cast<const ZylNumExprI*>(array.getI(i));
  if (expr == nullptr) ZylRaiseEmptyHandle();
  return expr;
}

long sizeOf(const ZylExtractableArray& array) {
  return array.getImpl() != nullptr ? array.getSize() : 0;
}

double extremeOf(const ZylAlgorithm& algorithm, const ZylExtractableArray& array, const char* empty,
                 double (*better)(double, double)) {
  const long size = sizeOf(array);
  if (size == 0) throw ZylArrayError(empty);
  double value = element(array, 0)->eval(algorithm);
  for (long i = 1; i < size; ++i) value = better(value, element(array, i)->eval(algorithm));
  return value;
}

}  // namespace

#define ZYL_NODE_DEF_(Class, Base, ...) \
  ZYL_TYPE_DEF(Class, Base)             \
  ZYL_CP_HOOKS_DEF(Class)               \
  template class zyl::detail::__VA_ARGS__;
#define ZYL_UNARY_NODE(Class, Base, Operand, Rule, Long, Short, Value) \
  ZYL_NODE_DEF_(Class, Base, UnaryNode<Class, Base, Operand>)          \
  double Class::eval(const ZylAlgorithm algorithm) const {             \
    const double x = getOperand()->eval(algorithm);                    \
    return Value;                                                      \
  }
#define ZYL_BINARY_NODE(Class, Base, Operand, Rule, Long, Short, Value) \
  ZYL_NODE_DEF_(Class, Base, BinaryNode<Class, Base, Operand>)          \
  double Class::eval(const ZylAlgorithm algorithm) const {              \
    const double x = getLeft()->eval(algorithm);                        \
    const double y = getRight()->eval(algorithm);                       \
    return Value;                                                       \
  }
#define ZYL_CONSTANT_NODE(Class, Base, Operand, Constant, Order, Rule, Long, Short, Value) \
  ZYL_NODE_DEF_(Class, Base, ConstantNode<Class, Base, Operand, Constant>)                 \
  double Class::eval(const ZylAlgorithm algorithm) const {                                 \
    const double x = getOperand()->eval(algorithm);                                        \
    const Constant k = getConstant();                                                      \
    return Value;                                                                          \
  }
#define ZYL_EXTREME_NODE(Class, Base, Array, Rule, Long, Short, Empty, Better) \
  ZYL_NODE_DEF_(Class, Base, ExtremeNode<Class, Base, Array>)                  \
  double Class::eval(const ZylAlgorithm algorithm) const {                     \
    return extremeOf(algorithm, _array, Empty, Better);                        \
  }
#define ZYL_ELEMENT_NODE(Class, Base, Array, Rule, Long, Short) \
  ZYL_NODE_DEF_(Class, Base, ElementNode<Class, Base, Array>)
#include "vorlane/expr/nodes.inc"
#undef ZYL_NODE_DEF_

template class zyl::detail::ArrayNode<ZylIntExprI, ZylIntExprArray>;
template class zyl::detail::ArrayNode<ZylNumExprI, ZylNumExprArray>;
template class zyl::detail::ArrayNode<ZylNumExprI, ZylIntExprArray>;

// --- count ---------------------------------------------------------------------------------------

ZYL_TYPE_DEF(ZylCountI, ZylIntExprI)
ZYL_CP_HOOKS_DEF(ZylCountI)

ZylCountI::ZylCountI(ZylEnvI* env, const ZylIntExprArray& array, long value)
    : ArrayNode(env, array), _value(value) {}

ZylExtractableI* ZylCountI::makeClone(ZylEnvI* env) const {
  ArrayCopy<ZylIntExprArray> array = zyl::detail::clonedArray(env, _array);
  return array.takenBy(new (env) ZylCountI(env, array.get(), _value));
}

void ZylCountI::display(std::ostream& stream) const {
  const bool isLong = _env->isLongDisplay();
  stream << (isLong ? "ZylCount( " : "count(");
  zyl::detail::displayArray(stream, _array);
  stream << ", " << _value << (isLong ? ") " : ")");
}

double ZylCountI::eval(const ZylAlgorithm algorithm) const {
  const long size = sizeOf(_array);
  if (size == 0) throw ZylArrayError("Array of size 0 in evaluation of ZylCount");
  const double wanted = number(_value);
  long count = 0;
  for (long i = 0; i < size; ++i) {
    if (element(_array, i)->eval(algorithm) == wanted) ++count;
  }
  return number(count);
}

// --- standard deviation --------------------------------------------------------------------------

ZYL_TYPE_DEF(ZylStandardDeviationI, ZylNumExprI)
ZYL_CP_HOOKS_DEF(ZylStandardDeviationI)

ZylStandardDeviationI::ZylStandardDeviationI(ZylEnvI* env, const ZylIntExprArray& array,
                                             double lowerMean, double upperMean)
    : ArrayNode(env, array), _lowerMean(lowerMean), _upperMean(upperMean) {}

ZylExtractableI* ZylStandardDeviationI::makeClone(ZylEnvI* env) const {
  ArrayCopy<ZylIntExprArray> array = zyl::detail::clonedArray(env, _array);
  return array.takenBy(new (env) ZylStandardDeviationI(env, array.get(), _lowerMean, _upperMean));
}

void ZylStandardDeviationI::display(std::ostream& stream) const {
  const bool isLong = _env->isLongDisplay();
  stream << (isLong ? "ZylStandardDeviation( " : "stddev(");
  zyl::detail::displayArray(stream, _array);
  stream << (isLong ? ") " : ")");
}

double ZylStandardDeviationI::eval(const ZylAlgorithm algorithm) const {
  return Eval(algorithm, _array);
}

double ZylStandardDeviationI::Eval(const ZylAlgorithm& algorithm, const ZylIntExprArray& array) {
  const long size = sizeOf(array);
  if (size == 0) throw ZylArrayError("Array of size 0 in evaluation of ZylStandardDeviation");
  double sum = 0.0;
  for (long i = 0; i < size; ++i) sum += element(array, i)->eval(algorithm);
  const double mean = sum / number(size);
  double squares = 0.0;
  for (long i = 0; i < size; ++i) {
    const double distance = element(array, i)->eval(algorithm) - mean;
    squares += distance * distance;
  }
  return std::sqrt(squares / number(size));
}

// --- a client's function -------------------------------------------------------------------------

ZYL_TYPE_DEF(ZylMonotonicNumExprI, ZylNumExprI)
ZYL_CP_HOOKS_DEF(ZylMonotonicNumExprI)

ZylMonotonicNumExprI::ZylMonotonicNumExprI(ZylEnvI* env, ZylNumExprI* operand, Function function,
                                           Function inverse, long decreasing)
    : ZylNumExprI(env), _operand(operand), _function(function), _inverse(inverse),
      _decreasing(decreasing) {
  operand->hold();
}

ZylMonotonicNumExprI::~ZylMonotonicNumExprI() { _env->release(_operand); }

ZylExtractableI* ZylMonotonicNumExprI::makeClone(ZylEnvI* env) const {
  ZylNumExprI* operand = zyl::detail::cloneOperand(env, _operand);
  return new (env) ZylMonotonicNumExprI(env, operand, _function, _inverse, _decreasing);
}

void ZylMonotonicNumExprI::visitSubExtractables(ZylExtractableVisitor* visitor) {
  visitor->beginVisit(this);
  visitor->visitChildren(this, _operand);
  visitor->endVisit(this);
}

void ZylMonotonicNumExprI::display(std::ostream& stream) const {
  stream << "ZylMonotonic" << (_decreasing != 0 ? "Decreasing" : "Increasing") << "NumExpr(";
  _operand->display(stream);
  stream << ")";
}

double ZylMonotonicNumExprI::eval(const ZylAlgorithm algorithm) const {
  return _function(_operand->eval(algorithm));
}
