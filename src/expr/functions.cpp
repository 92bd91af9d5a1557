// The bodies behind the functions of formulas: tests, folded constants, and the node that remains.

#include "vorlane/expr/functions.h"

#include <algorithm>
#include <cmath>

#include "common/build.h"
#include "common/handle_check.h"
#include "vorlane/expr/nodes.h"

ZylInvalidScalProdArraysException::ZylInvalidScalProdArraysException(const char* message)
    : ZylException(message) {}

namespace {

template <class Node, class Operand, class... Rest>
Node* make(Operand* operand, Rest... rest) {
  return new (operand->getEnv()) Node(operand->getEnv(), operand, rest...);
}

ZylNumExprI* checkedExpr(const ZylNumExprArg& arg) { return zyl::detail::checked(arg); }

template <class Node>
ZylNumExprArg function(const ZylNumExprArg& arg) {
  return ZylNumExprArg(make<Node>(checkedExpr(arg)));
}

ZylNumExprI* exprAt(const ZylExtractableArray& array, long i) {
  return static_cast<ZylNumExprI*>(array.getI(i));
}

// The array's environment.
ZylEnvI* envOf(const ZylExtractableArray& array) { return array.getEnv().getImpl(); }

void checkElements(const ZylExtractableArray& array, const ZylEnvI* env, const char* mismatch) {
  for (long i = 0; i < array.getSize(); ++i) {
    if (array.getI(i) == nullptr) ZylRaiseEmptyHandle();
    if (!env->isEnvOf(array.getI(i))) ZylRaiseWrongUsage(mismatch);
  }
}

template <class Node, class Array, class... Rest>
Node* makeOverCopy(const ZylExtractableArray& array, Rest... rest) {
  ZylEnvI* env = envOf(array);
  zyl::detail::ArrayCopy<Array> copy(env, array.getImpl());
  return copy.takenBy(new (env) Node(env, copy.get(), rest...));
}

template <class Node, class Array>
Node* makeExtreme(const ZylExtractableArray& array, const char* mismatch) {
  checkElements(array, envOf(array), mismatch);
  return makeOverCopy<Node, Array>(array);
}

}  // namespace

// --- nodes of one and two operands ---------------------------------------------------------------

namespace zyl::detail {

ZylNumExprI* minNum(ZylNumExprI* a, ZylNumExprI* b) { return make<ZylNumMinI>(a, b); }
ZylNumExprI* minNum(ZylNumExprI* a, double b) { return make<ZylNumMinCstI>(a, b); }
ZylIntExprI* minInt(ZylIntExprI* a, ZylIntExprI* b) { return make<ZylIntMinI>(a, b); }
ZylIntExprI* minInt(ZylIntExprI* a, long b) { return make<ZylIntMinCstI>(a, b); }
ZylNumExprI* maxNum(ZylNumExprI* a, ZylNumExprI* b) { return make<ZylNumMaxI>(a, b); }
ZylNumExprI* maxNum(ZylNumExprI* a, double b) { return make<ZylNumMaxCstI>(a, b); }
ZylIntExprI* maxInt(ZylIntExprI* a, ZylIntExprI* b) { return make<ZylIntMaxI>(a, b); }
ZylIntExprI* maxInt(ZylIntExprI* a, long b) { return make<ZylIntMaxCstI>(a, b); }
ZylNumExprI* powerNum(ZylNumExprI* a, ZylNumExprI* b) { return make<ZylNumPowerI>(a, b); }
ZylNumExprI* powerNum(ZylNumExprI* a, double b) { return make<ZylNumPowerCstI>(a, b); }
ZylNumExprI* powerNum(double a, ZylNumExprI* b) { return make<ZylNumRecPowerCstI>(b, a); }
ZylIntExprI* divideInt(ZylIntExprI* a, ZylIntExprI* b) { return make<ZylIntDivI>(a, b); }
ZylIntExprI* divideInt(ZylIntExprI* a, long b) { return make<ZylIntDivCstI>(a, b); }
ZylIntExprI* divideInt(long a, ZylIntExprI* b) { return make<ZylIntRecDivCstI>(b, a); }
ZylNumExprI* absNum(ZylNumExprI* a) { return make<ZylNumAbsI>(a); }
ZylIntExprI* absInt(ZylIntExprI* a) { return make<ZylIntAbsI>(a); }
ZylNumExprI* squareNum(ZylNumExprI* a) { return make<ZylNumSquareI>(a); }
ZylIntExprI* squareInt(ZylIntExprI* a) { return make<ZylIntSquareI>(a); }

}  // namespace zyl::detail

ZylIntExprArg ZylSgn(const ZylNumExprArg& arg) {
  return ZylIntExprArg(make<ZylSgnI>(checkedExpr(arg)));
}
ZylNumExprArg ZylSin(const ZylNumExprArg& arg) { return function<ZylSinI>(arg); }
ZylNumExprArg ZylCos(const ZylNumExprArg& arg) { return function<ZylCosI>(arg); }
ZylNumExprArg ZylTan(const ZylNumExprArg& arg) { return function<ZylTanI>(arg); }
ZylNumExprArg ZylArcSin(const ZylNumExprArg& arg) { return function<ZylArcSinI>(arg); }
ZylNumExprArg ZylArcCos(const ZylNumExprArg& arg) { return function<ZylArcCosI>(arg); }
ZylNumExprArg ZylArcTan(const ZylNumExprArg& arg) { return function<ZylArcTanI>(arg); }
ZylNumExprArg ZylLog(const ZylNumExprArg& arg) { return function<ZylLogI>(arg); }
ZylNumExprArg ZylLog10(const ZylNumExprArg& arg) { return ZylLog(arg) / std::log(10.0); }
ZylNumExprArg ZylLog2(const ZylNumExprArg& arg) { return ZylLog(arg) / std::log(2.0); }
ZylNumExprArg ZylExponent(const ZylNumExprArg& arg) { return function<ZylExponentI>(arg); }
ZylNumExprArg ZylFloor(const ZylNumExprArg& arg) { return function<ZylNumFloorI>(arg); }
ZylNumExprArg ZylCeil(const ZylNumExprArg& arg) { return function<ZylNumCeilI>(arg); }
ZylNumExprArg ZylTrunc(const ZylNumExprArg& arg) { return function<ZylNumTruncI>(arg); }
ZylNumExprArg ZylKvlRound(const ZylNumExprArg& arg) { return function<ZylNumRoundI>(arg); }
ZylNumExprArg ZylFract(const ZylNumExprArg& arg) { return function<ZylNumFractI>(arg); }
ZylNumExprArg ZylDistToInt(const ZylNumExprArg& arg) { return function<ZylDistToIntI>(arg); }

ZylIntExprArg ZylNumToInt(const ZylNumExprArg& arg) {
  return ZylIntExprArg(make<ZylNumToIntI>(checkedExpr(arg)));
}

ZylNumExprArg ZylMonotonicIncreasingNumExpr(const ZylNumExprArg& arg, double (*function)(double),
                                            double (*inverse)(double)) {
  return ZylNumExprArg(make<ZylMonotonicNumExprI>(checkedExpr(arg), function, inverse, 0));
}

ZylNumExprArg ZylMonotonicDecreasingNumExpr(const ZylNumExprArg& arg, double (*function)(double),
                                            double (*inverse)(double)) {
  return ZylNumExprArg(make<ZylMonotonicNumExprI>(checkedExpr(arg), function, inverse, 1));
}

// --- extremes, counts and deviations of arrays ---------------------------------------------------

namespace zyl::detail {

ZylNumExprI* minNumArray(const ZylExtractableArray& array) {
  return makeExtreme<ZylNumMinArrayI, ZylNumExprArray>(array,
                                                       "ZylMin: mixing mismatch Environments");
}
ZylIntExprI* minIntArray(const ZylExtractableArray& array) {
  return makeExtreme<ZylIntMinArrayI, ZylIntExprArray>(array,
                                                       "ZylMin: mixing mismatch Environments");
}
ZylNumExprI* maxNumArray(const ZylExtractableArray& array) {
  return makeExtreme<ZylNumMaxArrayI, ZylNumExprArray>(array,
                                                       "ZylMax: mixing mismatch Environments");
}
ZylIntExprI* maxIntArray(const ZylExtractableArray& array) {
  return makeExtreme<ZylIntMaxArrayI, ZylIntExprArray>(array,
                                                       "ZylMax: mixing mismatch Environments");
}

}  // namespace zyl::detail

namespace {

template <class Array, class Better>
auto extremeNumber(const Array& array, const char* empty, Better better) {
  if (array.getSize() == 0) throw ZylArrayError(empty);
  auto value = array[0];
  for (long i = 1; i < array.getSize(); ++i) value = better(value, array[i]);
  return value;
}

template <class Array>
auto minimum(const Array& array) {
  return extremeNumber(array, "Array of size 0 in call to ZylMin",
                       [](auto a, auto b) { return b < a ? b : a; });
}

template <class Array>
auto maximum(const Array& array) {
  return extremeNumber(array, "Array of size 0 in call to ZylMax",
                       [](auto a, auto b) { return b > a ? b : a; });
}

// Null, then environment, element by element.
void checkStatistic(const ZylIntExprArray& array, const char* empty, const char* missing,
                    const char* mismatch) {
  if (array.getSize() == 0) throw ZylArrayError(empty);
  const ZylEnvI* env = envOf(array);
  for (long i = 0; i < array.getSize(); ++i) {
    if (array.getI(i) == nullptr) throw ZylArrayError(missing);
    if (array.getI(i)->getEnv() != env) ZylRaiseWrongUsage(mismatch);
  }
}

}  // namespace

long ZylMin(const ZylIntArray& array) { return minimum(array); }
double ZylMin(const ZylNumArray& array) { return minimum(array); }
long ZylMax(const ZylIntArray& array) { return maximum(array); }
double ZylMax(const ZylNumArray& array) { return maximum(array); }

ZylNumExprArg ZylStandardDeviation(const ZylIntExprArray& array) {
  return ZylStandardDeviation(array, -ZylInfinity, ZylInfinity);
}

ZylNumExprArg ZylStandardDeviation(const ZylIntExprArray& array, double lowerMean,
                                   double upperMean) {
  checkStatistic(array, "ZylStandardDeviation: array of size 0",
                 "ZylStandardDeviation: empty handle in array",
                 "ZylStandardDeviation: mixing mismatch Environments");
  return ZylNumExprArg(
      makeOverCopy<ZylStandardDeviationI, ZylIntExprArray>(array, lowerMean, upperMean));
}

ZylIntExprArg ZylCount(const ZylIntExprArray& array, long value) {
  checkStatistic(array, "ZylCount: array of size 0", "ZylCount: empty handle in array",
                 "ZylCount: mixing mismatch Environments");
  return ZylIntExprArg(makeOverCopy<ZylCountI, ZylIntExprArray>(array, value));
}

// --- sums ----------------------------------------------------------------------------------------

long ZylSum(const ZylIntArray& array) {
  long sum = 0;
  for (long i = 0; i < array.getSize(); ++i) sum = zyl::detail::wrappedSum(sum, array[i]);
  return sum;
}

double ZylSum(const ZylNumArray& array) {
  double sum = 0.0;
  for (long i = 0; i < array.getSize(); ++i) sum += array[i];
  return sum;
}

namespace {

/// Holds the elements of an array while they are read one by one. An element that stands in it
/// twice must not be taken for a temporary at its first place: it would be gone at the second.
class HeldElements {
 public:
  explicit HeldElements(const ZylExtractableArray& array) noexcept
      : _array(array), _size(array.getSize()) {
    for (long i = 0; i < _size; ++i) exprAt(array, i)->hold();
  }
  ~HeldElements() {
    for (long i = _next; i < _size; ++i) exprAt(_array, i)->unhold();
  }
  HeldElements(const HeldElements&) = delete;
  HeldElements& operator=(const HeldElements&) = delete;

  /// Calls `use` with each element in order; a temporary at its last place is a temporary again.
  template <class Use>
  void forEach(Use use) {
    while (_next < _size) {
      ZylNumExprI* expr = exprAt(_array, _next);
      if (expr->getCount() > 1) {
        use(expr);
        expr->unhold();
        ++_next;
      } else {
        expr->unhold();
        ++_next;
        use(expr);
      }
    }
  }

 private:
  const ZylExtractableArray& _array;
  long _size;
  long _next = 0;
};

void checkAddends(const ZylExtractableArray& array, void (*raiseMismatch)()) {
  const ZylEnvI* env = envOf(array);
  for (long i = 0; i < array.getSize(); ++i) {
    if (array.getI(i) == nullptr) ZylRaiseWrongUsage("using empty handle in ZylSum");
    if (!env->isEnvOf(array.getI(i))) raiseMismatch();
  }
}

// Mismatches are raised in the name of the handle's operator that adds such elements.
template <class Sum, class Expr>
Sum* sumOf(const ZylExtractableArray& array) {
  checkAddends(array, std::is_same_v<Sum, ZylIntLinTermI> ? zyl::detail::raiseNumExprAddMismatch
                                                          : zyl::detail::raiseExprAddMismatch);
  ZylEnvI* env = envOf(array);
  zyl::detail::Unfinished sum(new (env) Sum(env, 0));
  HeldElements(array).forEach(
      [&](ZylNumExprI* expr) { zyl::detail::addTo(sum.get(), static_cast<Expr*>(expr)); });
  return sum.finish();
}

void checkSizes(long a, long b) {
  if (a != b) throw ZylInvalidScalProdArraysException("ZylScalProd: arrays have different size");
}

template <class Result, class A, class B>
Result product(const A& a, const B& b) {
  checkSizes(a.getSize(), b.getSize());
  Result sum = 0;
  for (long i = 0; i < a.getSize(); ++i) {
    if constexpr (std::is_same_v<Result, long>) {
      sum = zyl::detail::wrappedSum(sum, zyl::detail::wrappedProduct(a[i], b[i]));
    } else {
      sum += static_cast<double>(a[i]) * static_cast<double>(b[i]);
    }
  }
  return sum;
}

constexpr const char* ScalProdMismatch = "ZylScalProd: mixing mismatch environments";

template <class Sum, class Coefs>
Sum* linearProduct(const ZylExtractableArray& variables, const Coefs& coefs) {
  const long size = variables.getSize();
  checkSizes(size, coefs.getSize());
  ZylEnvI* env = envOf(variables);
  checkElements(variables, env, ScalProdMismatch);
  zyl::detail::Unfinished sum(new (env) Sum(env, 0));
  for (long i = 0; i < size; ++i) {
    auto* variable = static_cast<ZylNumVarI*>(variables.getI(i));
    sum->append(env->newTerm(variable, static_cast<double>(coefs[i])));
  }
  return sum.finish();
}

template <class Sum, class Expr, class Times>
Sum* sumOfProducts(const ZylExtractableArray& a, const ZylExtractableArray& b, Times times) {
  checkSizes(a.getSize(), b.getSize());
  ZylEnvI* env = envOf(a);
  checkElements(a, env, ScalProdMismatch);
  checkElements(b, env, ScalProdMismatch);
  zyl::detail::Unfinished sum(new (env) Sum(env, 0));
  // Held over all products: an element may stand in both arrays.
  const HeldElements heldA(a);
  const HeldElements heldB(b);
  for (long i = 0; i < a.getSize(); ++i) {
    zyl::detail::addTo(sum.get(),
                       times(static_cast<Expr*>(a.getI(i)), static_cast<Expr*>(b.getI(i))));
  }
  return sum.finish();
}

}  // namespace

namespace zyl::detail {

ZylNumExprI* sumNumArray(const ZylExtractableArray& array) {
  return sumOf<ZylNumLinTermI, ZylNumExprI>(array);
}
ZylIntExprI* sumIntArray(const ZylExtractableArray& array) {
  return sumOf<ZylIntLinTermI, ZylIntExprI>(array);
}
ZylNumExprI* scalProdNum(const ZylExtractableArray& variables, const ZylNumArray& coefs) {
  return linearProduct<ZylNumLinTermI>(variables, coefs);
}
ZylNumExprI* scalProdNum(const ZylExtractableArray& variables, const ZylIntArray& coefs) {
  return linearProduct<ZylNumLinTermI>(variables, coefs);
}
ZylIntExprI* scalProdInt(const ZylExtractableArray& variables, const ZylIntArray& coefs) {
  return linearProduct<ZylIntLinTermI>(variables, coefs);
}
ZylNumExprI* scalProdNum(const ZylExtractableArray& a, const ZylExtractableArray& b) {
  return sumOfProducts<ZylNumLinTermI, ZylNumExprI>(
      a, b, [](ZylNumExprI* x, ZylNumExprI* y) { return timesNum(x, y); });
}
ZylIntExprI* scalProdInt(const ZylExtractableArray& a, const ZylExtractableArray& b) {
  return sumOfProducts<ZylIntLinTermI, ZylIntExprI>(
      a, b, [](ZylIntExprI* x, ZylIntExprI* y) { return timesInt(x, y); });
}
long scalProd(const ZylIntArray& a, const ZylIntArray& b) { return product<long>(a, b); }
double scalProd(const ZylIntArray& a, const ZylNumArray& b) { return product<double>(a, b); }
double scalProd(const ZylNumArray& a, const ZylIntArray& b) { return product<double>(a, b); }
double scalProd(const ZylNumArray& a, const ZylNumArray& b) { return product<double>(a, b); }

}  // namespace zyl::detail
