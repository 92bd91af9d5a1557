// Instantiates the node templates for each row, and holds the nodes of shapes of their own.

#include "vorlane/expr/nodes.h"

#include <cmath>

#include "expr/node_family.h"
#include "vorlane/expr/operators.h"

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
  ZYL_EXTRACTABLE_DEF(Class, Base)      \
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
    return extremeOf(algorithm, getArray(), Empty, Better);                    \
  }
#define ZYL_ELEMENT_NODE(Class, Base, Array, Rule, Long, Short) \
  ZYL_NODE_DEF_(Class, Base, ElementNode<Class, Base, Array>)
#include "vorlane/expr/nodes.inc"
#undef ZYL_NODE_DEF_

// --- count ---------------------------------------------------------------------------------------

ZYL_RECORD_DEF(ZylCountI, ZylIntExprI)

void ZylCountI::display(std::ostream& stream) const {
  const bool isLong = _env->isLongDisplay();
  stream << (isLong ? "ZylCount( " : "count(");
  _array.display(stream);
  stream << ", " << _value << (isLong ? ") " : ")");
}

double ZylCountI::eval(const ZylAlgorithm algorithm) const {
  const long size = sizeOf(getArray());
  if (size == 0) throw ZylArrayError("Array of size 0 in evaluation of ZylCount");
  const double wanted = number(_value);
  long count = 0;
  for (long i = 0; i < size; ++i) {
    if (element(getArray(), i)->eval(algorithm) == wanted) ++count;
  }
  return number(count);
}

// --- standard deviation --------------------------------------------------------------------------

ZYL_RECORD_DEF(ZylStandardDeviationI, ZylNumExprI)

void ZylStandardDeviationI::display(std::ostream& stream) const {
  const bool isLong = _env->isLongDisplay();
  stream << (isLong ? "ZylStandardDeviation( " : "stddev(");
  _array.display(stream);
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

ZYL_RECORD_DEF(ZylMonotonicNumExprI, ZylNumExprI)

void ZylMonotonicNumExprI::display(std::ostream& stream) const {
  stream << "ZylMonotonic" << (_decreasing != 0 ? "Decreasing" : "Increasing") << "NumExpr(";
  _operand->display(stream);
  stream << ")";
}

double ZylMonotonicNumExprI::eval(const ZylAlgorithm algorithm) const {
  return _function(_operand->eval(algorithm));
}
