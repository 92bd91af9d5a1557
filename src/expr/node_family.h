// The bodies of the node templates, for the one source that instantiates them.
//
// `NodeFacts<Node>` holds what a class's row states: its integrality rule, its two display forms
// and, where it matters, the order of operand and constant.

#ifndef ZYL_SRC_EXPR_NODE_FAMILY_H
#define ZYL_SRC_EXPR_NODE_FAMILY_H

#include <ostream>

#include "common/build.h"
#include "common/list_display.h"
#include "vorlane/env/number.h"
#include "vorlane/expr/nodes.h"
#include "vorlane/model/algorithm_handle.h"
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

template <class Impl>
Impl* cloneOperand(ZylEnvI* env, const Impl* operand) {
  return static_cast<Impl*>(env->getClone(operand));
}

inline bool isIntegerConstant(double constant) { return ZylNumIsInteger(constant); }
inline bool isIntegerConstant(long) { return true; }

// --- one operand ---------------------------------------------------------------------------------

template <class Node, class Base, class Operand>
UnaryNode<Node, Base, Operand>::UnaryNode(ZylEnvI* env, Operand* operand)
    : Base(env), _operand(operand) {
  operand->hold();
}

template <class Node, class Base, class Operand>
UnaryNode<Node, Base, Operand>::~UnaryNode() {
  this->_env->release(_operand);
}

template <class Node, class Base, class Operand>
ZylExtractableI* UnaryNode<Node, Base, Operand>::makeClone(ZylEnvI* env) const {
  Operand* operand = cloneOperand(env, _operand);
  return new (env) Node(env, operand);
}

template <class Node, class Base, class Operand>
void UnaryNode<Node, Base, Operand>::visitSubExtractables(ZylExtractableVisitor* visitor) {
  visitor->beginVisit(this);
  visitor->visitChildren(this, _operand);
  visitor->endVisit(this);
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
    : Base(env), _left(left), _right(right) {
  left->hold();
  right->hold();
}

template <class Node, class Base, class Operand>
BinaryNode<Node, Base, Operand>::~BinaryNode() {
  this->_env->release(_left);
  this->_env->release(_right);
}

template <class Node, class Base, class Operand>
ZylExtractableI* BinaryNode<Node, Base, Operand>::makeClone(ZylEnvI* env) const {
  Operand* left = cloneOperand(env, _left);
  Operand* right = cloneOperand(env, _right);
  return new (env) Node(env, left, right);
}

template <class Node, class Base, class Operand>
void BinaryNode<Node, Base, Operand>::visitSubExtractables(ZylExtractableVisitor* visitor) {
  visitor->beginVisit(this);
  visitor->visitChildren(this, _left);
  visitor->visitChildren(this, _right);
  visitor->endVisit(this);
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
    : Base(env), _operand(operand), _constant(constant) {
  operand->hold();
}

template <class Node, class Base, class Operand, class Constant>
ConstantNode<Node, Base, Operand, Constant>::~ConstantNode() {
  this->_env->release(_operand);
}

template <class Node, class Base, class Operand, class Constant>
ZylExtractableI* ConstantNode<Node, Base, Operand, Constant>::makeClone(ZylEnvI* env) const {
  Operand* operand = cloneOperand(env, _operand);
  return new (env) Node(env, operand, _constant);
}

template <class Node, class Base, class Operand, class Constant>
void ConstantNode<Node, Base, Operand, Constant>::visitSubExtractables(
    ZylExtractableVisitor* visitor) {
  visitor->beginVisit(this);
  visitor->visitChildren(this, _operand);
  visitor->endVisit(this);
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

// An absent array shows nothing.
template <class Array>
void displayArray(std::ostream& stream, const Array& array) {
  if (array.getImpl() == nullptr) return;
  if constexpr (std::derived_from<Array, ZylExtractableArray>) {
    displayList(stream, array);
  } else {
    displayList(stream, array.getSize(), [&](long i) { stream << array[i]; });
  }
}

template <class Array>
bool areElementsInteger(const Array& array) {
  if (array.getImpl() == nullptr) return true;
  for (long i = 0; i < array.getSize(); ++i) {
    if constexpr (std::derived_from<Array, ZylExtractableArray>) {
      const auto* expr = static_cast<const ZylNumExprI*>(array.getI(i));
      if (expr != nullptr && !expr->isInteger()) return false;
    } else {
      if (!isIntegerConstant(array[i])) return false;
    }
  }
  return true;
}

// A private clone of an array in `env`, to be taken over by a node.
template <class Array>
ArrayCopy<Array> clonedArray(ZylEnvI* env, const Array& array) {
  if (array.getImpl() == nullptr) return ArrayCopy<Array>();
  if constexpr (std::derived_from<Array, ZylExtractableArray>) {
    Array clone(array.getImpl());
    clone.replaceByClone(env);
    return ArrayCopy<Array>(clone);
  } else {
    return ArrayCopy<Array>(env, array.getImpl());
  }
}

template <class Array>
void lockElements(const Array& array) noexcept {
  if constexpr (std::derived_from<Array, ZylExtractableArray>) {
    if (array.getImpl() != nullptr) array.lockExprs();
  }
}

// Releases the elements and ends the array, which is done whatever a release raises.
template <class Array>
void endElementsAndArray(Array* array) {
  if (array->getImpl() == nullptr) return;
  const ArrayCopy<Array> owner(*array);
  if constexpr (std::derived_from<Array, ZylExtractableArray>) array->releaseExprs();
}

template <class Base, class Array>
ArrayNode<Base, Array>::ArrayNode(ZylEnvI* env, const Array& array) : Base(env), _array(array) {
  lockElements(_array);
}

template <class Base, class Array>
ArrayNode<Base, Array>::~ArrayNode() {
  endElementsAndArray(&_array);
}

template <class Base, class Array>
void ArrayNode<Base, Array>::visitSubExtractables(ZylExtractableVisitor* visitor) {
  visitor->beginVisit(this);
  visitor->visitChildren(this, _array);
  visitor->endVisit(this);
}

template <class Node, class Base, class Array>
ZylExtractableI* ExtremeNode<Node, Base, Array>::makeClone(ZylEnvI* env) const {
  ArrayCopy<Array> array = clonedArray(env, this->_array);
  return array.takenBy(new (env) Node(env, array.get()));
}

template <class Node, class Base, class Array>
void ExtremeNode<Node, Base, Array>::atRemove(ZylExtractableI* removed, void* extra) {
  if (this->_env->getDeleterMode() != 0) {
    ZylExtractableI::atRemove(removed, extra);
  } else if (this->_array.getImpl() != nullptr) {
    this->_array.removeMarked();
  }
}

template <class Node, class Base, class Array>
void ExtremeNode<Node, Base, Array>::display(std::ostream& stream) const {
  const Form& form = formOf<Node>(this->_env);
  stream << form.before;
  displayArray(stream, this->_array);
  stream << form.after;
}

template <class Node, class Base, class Array>
bool ExtremeNode<Node, Base, Array>::isInteger() const {
  return followsInteger<Node>([this] { return areElementsInteger(this->_array); });
}

template <class Node, class Base, class Array>
ElementNode<Node, Base, Array>::ElementNode(ZylEnvI* env, ZylIntExprI* index, const Array& array)
    : Base(env), _index(index), _array(array) {
  index->hold();
  lockElements(_array);
}

template <class Node, class Base, class Array>
ElementNode<Node, Base, Array>::~ElementNode() {
  this->_env->release(_index);
  endElementsAndArray(&_array);
}

template <class Node, class Base, class Array>
ZylExtractableI* ElementNode<Node, Base, Array>::makeClone(ZylEnvI* env) const {
  ZylIntExprI* index = cloneOperand(env, _index);
  ArrayCopy<Array> array = clonedArray(env, _array);
  return array.takenBy(new (env) Node(env, index, array.get()));
}

// Elements that go drop out, which moves those behind them; without its index the node itself goes.
template <class Node, class Base, class Array>
void ElementNode<Node, Base, Array>::atRemove(ZylExtractableI* removed, void* extra) {
  if constexpr (std::derived_from<Array, ZylExtractableArray>) {
    if (this->_env->getDeleterMode() == 0) {
      if (this->_env->isMarked(_index)) this->_env->removeFromAllAndDestroy(this, 0);
      if (_array.getImpl() != nullptr) _array.removeMarked();
      return;
    }
  }
  ZylExtractableI::atRemove(removed, extra);
}

template <class Node, class Base, class Array>
void ElementNode<Node, Base, Array>::visitSubExtractables(ZylExtractableVisitor* visitor) {
  visitor->beginVisit(this);
  visitor->visitChildren(this, _index);
  if constexpr (std::derived_from<Array, ZylExtractableArray>) visitor->visitChildren(this, _array);
  visitor->endVisit(this);
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
  displayArray(stream, _array);
  stream << ") ";
}

template <class Node, class Base, class Array>
bool ElementNode<Node, Base, Array>::isInteger() const {
  return followsInteger<Node>([this] { return areElementsInteger(_array); });
}

template <class Node, class Base, class Array>
double ElementNode<Node, Base, Array>::eval(const ZylAlgorithm algorithm) const {
  const long i = ZylTrunc(_index->eval(algorithm));
  if (_array.getImpl() == nullptr || i < 0 || i >= _array.getSize()) return 0.0;
  if constexpr (std::derived_from<Array, ZylExtractableArray>) {
    const auto* expr = static_cast<const ZylNumExprI*>(_array.getI(i));
    return expr != nullptr ? expr->eval(algorithm) : 0.0;
  } else {
    return static_cast<double>(_array[i]);
  }
}

}  // namespace zyl::detail

#endif
