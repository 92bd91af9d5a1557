// Helpers of the sources that build expressions.

#ifndef ZYL_SRC_COMMON_BUILD_H
#define ZYL_SRC_COMMON_BUILD_H

#include "common/unfinished.h"
#include "vorlane/expr/lin_term.h"
#include "vorlane/model/record.h"

namespace zyl::detail {

/// One more owner of an operand: what an unfinished node gives back when it goes is still there,
/// and a temporary still is one.
class KeptOperand {
 public:
  explicit KeptOperand(ZylNumExprI* operand) noexcept : _operand(operand) { operand->hold(); }
  ~KeptOperand() { _operand->unhold(); }
  KeptOperand(const KeptOperand&) = delete;
  KeptOperand& operator=(const KeptOperand&) = delete;

 private:
  ZylNumExprI* _operand;
};

/// What an operator may do with an expression, besides holding it.
enum class NodeClass { Variable, NumLinear, IntLinear, Other };

// Linear nodes count by their exact class only: a subclass may mean more than its lists.
inline NodeClass classOf(const ZylNumExprI* expr) noexcept {
  const ZylTypeInfo type = expr->getTypeInfo();
  if (type == ZylNumVarI::GetTypeInfo()) return NodeClass::Variable;
  if (type == ZylNumLinTermI::GetTypeInfo()) return NodeClass::NumLinear;
  if (type == ZylIntLinTermI::GetTypeInfo()) return NodeClass::IntLinear;
  return expr->isType(ZylNumVarI::GetTypeInfo()) ? NodeClass::Variable : NodeClass::Other;
}
inline ZylNumVarI* asVar(ZylNumExprI* expr) noexcept { return static_cast<ZylNumVarI*>(expr); }

// The node if it is a temporary, otherwise a copy.
inline ZylNumLinTermI* ownNum(ZylNumExprI* linear) {
  return static_cast<ZylNumLinTermI*>(linear->isTemporary() ? linear : linear->copy());
}
inline ZylIntLinTermI* ownInt(ZylIntExprI* linear) {
  return static_cast<ZylIntLinTermI*>(linear->isTemporary() ? linear : linear->intCopy());
}

// A linear node to do with as one likes, of an expression of class `kind`.
inline ZylNumLinTermI* ownLinearOf(ZylNumExprI* expr, NodeClass kind) {
  return kind == NodeClass::NumLinear ? ownNum(expr) : expr->toNumLinTermI();
}

/// Adds an expression to a sum: a variable as a term, a linear node merged in, others as a part.
void addTo(ZylNumLinTermI* sum, ZylNumExprI* expr);
void addTo(ZylIntLinTermI* sum, ZylIntExprI* expr);

constexpr long wrappedSum(long a, long b) noexcept {
  return static_cast<long>(static_cast<unsigned long>(a) + static_cast<unsigned long>(b));
}
constexpr long wrappedProduct(long a, long b) noexcept {
  return static_cast<long>(static_cast<unsigned long>(a) * static_cast<unsigned long>(b));
}

}  // namespace zyl::detail

#endif
