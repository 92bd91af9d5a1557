// Every mix of operands resolves, to the type that the classes of the operands call for.

#include <concepts>

#include "expr/fixture.h"
#include "vorlane/expr/objective.h"

namespace zyl::test {
namespace {

struct ClientVar : ZylNumVar {
  using ZylNumVar::ZylNumVar;
};
enum Named : int { Three = 3 };

template <class A, class B>
struct Mix {
  static A a();
  static B b();
};

#define RESULT(A, Op, B) decltype(std::declval<A>() Op std::declval<B>())
#define GIVES(Type, A, Op, B) static_assert(std::same_as<RESULT(A, Op, B), Type>)

template <class A, class B, class Sum, class Product>
constexpr bool arithmeticGives() {
  return std::same_as<RESULT(A, +, B), Sum> && std::same_as<RESULT(B, +, A), Sum> &&
         std::same_as<RESULT(A, -, B), Sum> && std::same_as<RESULT(B, -, A), Sum> &&
         std::same_as<RESULT(A, *, B), Product> && std::same_as<RESULT(B, *, A), Product> &&
         std::same_as<RESULT(A, /, B), ZylNumExprArg> &&
         std::same_as<RESULT(B, /, A), ZylNumExprArg> &&
         std::same_as<decltype(ZylMin(std::declval<A>(), std::declval<B>())), Sum> &&
         std::same_as<decltype(ZylMax(std::declval<B>(), std::declval<A>())), Sum> &&
         std::same_as<decltype(ZylPower(std::declval<A>(), std::declval<B>())), ZylNumExprArg>;
}

using Num = ZylNumExprArg;
using Int = ZylIntExprArg;
using NumTerm = ZylNumLinExprTerm;
using IntTerm = ZylIntLinExprTerm;

// Numbers with each class.
static_assert(arithmeticGives<ZylNumVar, int, Num, NumTerm>());
static_assert(arithmeticGives<ZylNumVar, double, Num, NumTerm>());
static_assert(arithmeticGives<ClientVar, long, Num, NumTerm>());
static_assert(arithmeticGives<ZylNumVar&, unsigned, Num, NumTerm>());
static_assert(arithmeticGives<ZylIntVar, int, Int, IntTerm>());
static_assert(arithmeticGives<ZylBoolVar, long, Int, IntTerm>());
static_assert(arithmeticGives<const ZylBoolVar&, Named, Int, IntTerm>());
static_assert(arithmeticGives<ZylIntVar, double, Num, NumTerm>());
static_assert(arithmeticGives<ZylIntVar, float, Num, NumTerm>());
static_assert(arithmeticGives<NumTerm, int, Num, Num>());
static_assert(arithmeticGives<IntTerm, int, Int, Int>());
static_assert(arithmeticGives<IntTerm, double, Num, Num>());
static_assert(arithmeticGives<ZylExpr, int, Num, Num>());
static_assert(arithmeticGives<ZylIntExpr, int, Int, Int>());
static_assert(arithmeticGives<ZylIntExpr, double, Num, Num>());
static_assert(arithmeticGives<ZylConstraint, int, Int, Int>());
static_assert(arithmeticGives<ZylRange, double, Num, Num>());
// Each class with each.
static_assert(arithmeticGives<ZylNumVar, ZylNumVar, Num, Num>());
static_assert(arithmeticGives<ZylNumVar, ZylIntVar, Num, Num>());
static_assert(arithmeticGives<ZylIntVar, ZylBoolVar, Int, Int>());
static_assert(arithmeticGives<ZylIntVar, IntTerm, Int, Int>());
static_assert(arithmeticGives<ZylIntVar, NumTerm, Num, Num>());
static_assert(arithmeticGives<ZylNumVar, NumTerm, Num, Num>());
static_assert(arithmeticGives<IntTerm, IntTerm, Int, Int>());
static_assert(arithmeticGives<IntTerm, NumTerm, Num, Num>());
static_assert(arithmeticGives<ZylExpr, ZylIntVar, Num, Num>());
static_assert(arithmeticGives<ZylIntExpr, ZylConstraint, Int, Int>());
static_assert(arithmeticGives<ZylConstraint, ZylRange, Int, Int>());
static_assert(arithmeticGives<ZylNumExpr, IntTerm, Num, Num>());

GIVES(Int, ZylIntVar, %, int);
GIVES(Int, long, %, ZylIntExpr);
GIVES(Int, IntTerm, %, ZylBoolVar);
template <class A, class B>
concept HasRemainder = requires(A a, B b) {
  a % b;
};
static_assert(!HasRemainder<ZylNumVar, int> && !HasRemainder<ZylIntVar, double>);
template <class A, class B>
concept HasSum = requires(A a, B b) {
  a + b;
};
static_assert(!HasSum<ZylNumVar, const char*> && !HasSum<ZylNumVar, ZylNumArray> &&
              !HasSum<ZylModel, int>);

static_assert(std::same_as<decltype(-std::declval<ZylNumVar>()), NumTerm>);
static_assert(std::same_as<decltype(-std::declval<ZylBoolVar>()), IntTerm>);
static_assert(std::same_as<decltype(-std::declval<IntTerm>()), IntTerm>);
static_assert(std::same_as<decltype(-std::declval<ZylConstraint>()), Int>);
static_assert(std::same_as<decltype(-std::declval<ZylExpr>()), Num>);
static_assert(std::same_as<decltype(ZylAbs(std::declval<IntTerm>())), Int>);
static_assert(std::same_as<decltype(ZylSquare(std::declval<NumTerm>())), Num>);
static_assert(std::same_as<decltype(ZylDiv(7, std::declval<ZylIntVar>())), Int>);

// What clients write, without a cast.
TEST(Overloads, CompileAsWritten) {
  ZylEnv env;
  ZylNumVar x(env);
  ZylIntVar i(env);
  ZylBoolVar b(env);
  ZylExpr e(env);
  ZylNumExpr n(env);
  ZylIntExpr k(env);
  const ZylConstraint c = x <= 3;
  e += x;
  e += i;
  e += b;
  e += 2 * b;
  e += 0.5 * i;
  e += c;
  e += 1;
  e -= 2L * x;
  e = 3 * x;
  e = x + 1;
  n += 2 * x;
  n -= i;
  n = e;
  k += b;
  k -= 3;
  k += 2 * i;
  k = i + 1;
  const ZylRange ranges[] = {x == 3,     3.0 == x,  3L == i,   2 * x <= 5,
                             0 <= x + b, i<3, 4> i, b == true, e >= 2};
  const ZylConstraint constraints[] = {x <= i, 2 * x == e, i<b, k> 2 * i, c == b, n >= x * x};
  for (const ZylRange& range : ranges) EXPECT_NE(range.getImpl(), nullptr);
  for (const ZylConstraint& constraint : constraints) EXPECT_NE(constraint.getImpl(), nullptr);
  EXPECT_FALSE(ZylSin(2 * i).getImpl()->isInteger());
  EXPECT_TRUE(ZylSgn(b).getImpl()->isInteger());
  env.end();
}

// Types and senses can be named where a template is made from them.
template <class Var>
concept HasTypes = requires {
  Var::Int;
  ZylNumVar::Float;
  ZylObjective::Minimize;
};
static_assert(HasTypes<ClientVar>);

template <class Var>
struct Maker {
  Var make(ZylEnv env) requires(Var::Bool != Var::Float) { return Var(env, 0, 1, ZylNumVar::Bool); }
};

TEST(ZylNumVar, TypeIsNamedInTemplates) {
  const auto inLambda = [](auto env) { return ZylNumVar(env, 0.0, 1.0, ZylNumVar::Float); };
  const auto maximized = [](auto x) { return ZylObjective(x.getEnv(), x, ZylObjective::Maximize); };
  ZylEnv env;
  EXPECT_EQ(inLambda(env).getType(), ZylNumVar::Float);
  EXPECT_EQ(maximized(Maker<ClientVar>().make(env)).getSense(), ZylObjective::Maximize);
  env.end();
}

}  // namespace
}  // namespace zyl::test
