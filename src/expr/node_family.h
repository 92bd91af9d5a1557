// The bodies of the node templates, for the one source that instantiates them.
//
// `NodeFacts<Node>` holds what a class's row states: its integrality rule, its two display forms
// and, where it matters, the order of operand and constant.

#ifndef ZYL_SRC_EXPR_NODE_FAMILY_H
#define ZYL_SRC_EXPR_NODE_FAMILY_H

#include <ostream>

#include "common/build.h"
#include "vorlane/env/number.h"
#include "vorlane/expr/nodes.h"
#include "vorlane/model/algorithm_handle.h"
#include "vorlane/model/display.h"
#include "vorlane/model/visitor.h"

namespace zyl::detail {

enum class Integrality { Never, Operands, Always };
enum class Order { OperandFirst, ConstantFirst };

/// What stands around the operands of a node in its text.
struct Form {
  constexpr Form(const char* first, const char* last) : before(first), between(""), after(last) {}
  constexpr Form(const char* first, const char* middle, const char* last)
      : before(first), between(middle), after(last) {}
  const char* before;
  const char* between;
  const char* after;
};

template <class Node>
struct NodeFacts;

template <class Node>
const Form& formOf(const ZylEnvI* env) {
  return env->isLongDisplay() ? NodeFacts<Node>::LongForm : NodeFacts<Node>::ShortForm;
}

// Whether the rule says yes, with `operands` deciding where it leaves that to them.
template <class Node, class Operands>
bool followsInteger(Operands operands) {
  if constexpr (NodeFacts<Node>::Rule == Integrality::Operands) {
    return operands();
  } else {
    return NodeFacts<Node>::Rule == Integrality::Always;
  }
}

inline bool isIntegerConstant(double constant) { return ZylNumIsInteger(constant); }
inline bool isIntegerConstant(long) { return true; }

// --- one operand ---------------------------------------------------------------------------------

template <class Node, class Base, class Operand>
UnaryNode<Node, Base, Operand>::UnaryNode(ZylEnvI* env, Operand* operand)
    : Record<Node, Base>(env), _operand(operand) {}

template <class Node, class Base, class Operand>
UnaryNode<Node, Base, Operand>::~UnaryNode() {
  zyl::detail::giveBack(this->_env, fields());
}

template <class Node, class Base, class Operand>
void UnaryNode<Node, Base, Operand>::display(std::ostream& stream) const {
  const Form& form = formOf<Node>(this->_env);
  stream << form.before;
  _operand->display(stream);
  stream << form.after;
}

template <class Node, class Base, class Operand>
bool UnaryNode<Node, Base, Operand>::isInteger() const {
  return followsInteger<Node>([this] { return _operand->isInteger(); });
}

// --- two operands --------------------------------------------------------------------------------

template <class Node, class Base, class Operand>
BinaryNode<Node, Base, Operand>::BinaryNode(ZylEnvI* env, Operand* left, Operand* right)
    : Record<Node, Base>(env), _left(left), _right(right) {}

template <class Node, class Base, class Operand>
BinaryNode<Node, Base, Operand>::~BinaryNode() {
  zyl::detail::giveBack(this->_env, fields());
}

template <class Node, class Base, class Operand>
void BinaryNode<Node, Base, Operand>::display(std::ostream& stream) const {
  const Form& form = formOf<Node>(this->_env);
  stream << form.before;
  _left->display(stream);
  stream << form.between;
  _right->display(stream);
  stream << form.after;
}

template <class Node, class Base, class Operand>
bool BinaryNode<Node, Base, Operand>::isInteger() const {
  return followsInteger<Node>([this] { return _left->isInteger() && _right->isInteger(); });
}

// --- one operand and a constant ------------------------------------------------------------------

template <class Node, class Base, class Operand, class Constant>
ConstantNode<Node, Base, Operand, Constant>::ConstantNode(ZylEnvI* env, Operand* operand,
                                                          Constant constant)
    : Record<Node, Base>(env), _operand(operand), _constant(constant) {}

template <class Node, class Base, class Operand, class Constant>
ConstantNode<Node, Base, Operand, Constant>::~ConstantNode() {
  zyl::detail::giveBack(this->_env, fields());
}

template <class Node, class Base, class Operand, class Constant>
void ConstantNode<Node, Base, Operand, Constant>::display(std::ostream& stream) const {
  const Form& form = formOf<Node>(this->_env);
  stream << form.before;
  if constexpr (NodeFacts<Node>::Shown == Order::ConstantFirst) {
    stream << _constant << form.between;
    _operand->display(stream);
  } else {
    _operand->display(stream);
    stream << form.between << _constant;
  }
  stream << form.after;
}

template <class Node, class Base, class Operand, class Constant>
bool ConstantNode<Node, Base, Operand, Constant>::isInteger() const {
  return followsInteger<Node>(
      [this] { return _operand->isInteger() && isIntegerConstant(_constant); });
}

// --- arrays --------------------------------------------------------------------------------------

template <class Array>
bool areElementsInteger(const Array& array) {
  if (array.getImpl() == nullptr) return true;
  for (long i = 0; i < array.getSize(); ++i) {
    if constexpr (HasExtractables<Array>) {
      const auto* expr = static_cast<const ZylNumExprI*>(array.getI(i));
      if (expr != nullptr && !expr->isInteger()) return false;
    } else {
      if (!isIntegerConstant(array[i])) return false;
    }
  }
  return true;
}

template <class Node, class Base, class Array>
ExtremeNode<Node, Base, Array>::ExtremeNode(ZylEnvI* env, const Array& array)
    : Record<Node, Base>(env), _array(array) {}

template <class Node, class Base, class Array>
ExtremeNode<Node, Base, Array>::~ExtremeNode() {
  zyl::detail::giveBack(this->_env, fields());
}

template <class Node, class Base, class Array>
void ExtremeNode<Node, Base, Array>::display(std::ostream& stream) const {
  const Form& form = formOf<Node>(this->_env);
  stream << form.before;
  _array.display(stream);
  stream << form.after;
}

template <class Node, class Base, class Array>
bool ExtremeNode<Node, Base, Array>::isInteger() const {
  return followsInteger<Node>([this] { return areElementsInteger(_array.get()); });
}

template <class Node, class Base, class Array>
ElementNode<Node, Base, Array>::ElementNode(ZylEnvI* env, ZylIntExprI* index, const Array& array)
    : Record<Node, Base>(env), _index(index), _array(array) {}

template <class Node, class Base, class Array>
ElementNode<Node, Base, Array>::~ElementNode() {
  zyl::detail::giveBack(this->_env, fields());
}

template <class Node, class Base, class Array>
void ElementNode<Node, Base, Array>::display(std::ostream& stream) const {
  if (!this->_env->isLongDisplay()) {
    stream << NodeFacts<Node>::ShortWord;
    _index->display(stream);
    stream << "]";
    return;
  }
  stream << NodeFacts<Node>::LongWord;
  _index->display(stream);
  stream << ", ";
  _array.display(stream);
  stream << ") ";
}

template <class Node, class Base, class Array>
bool ElementNode<Node, Base, Array>::isInteger() const {
  return followsInteger<Node>([this] { return areElementsInteger(_array.get()); });
}

template <class Node, class Base, class Array>
double ElementNode<Node, Base, Array>::eval(const ZylAlgorithm algorithm) const {
  const long i = ZylTrunc(_index->eval(algorithm));
  if (_array.isEmpty() || i < 0 || i >= _array->getSize()) return 0.0;
  if constexpr (HasExtractables<Array>) {
    const auto* expr = static_cast<const ZylNumExprI*>(_array->getI(i));
    return expr != nullptr ? expr->eval(algorithm) : 0.0;
  } else {
    return static_cast<double>(getArray()[i]);
  }
}

}  // namespace zyl::detail

#endif
