// The expression nodes: what operators and functions build when a sum will not do.
//
// One template for each shape carries storage, counting, visiting, cloning and display; the classes
// are rows of nodes.inc, each with its evaluation, its integrality and its two display forms. A
// node holds its operands from construction to destruction. Engines read nodes through the
// accessors of their family and know them by type.

#ifndef ZYL_EXPR_NODES_H
#define ZYL_EXPR_NODES_H

#include "vorlane/expr/expr_array.h"

namespace zyl::detail {

/// A node of one operand: `getOperand`.
template <class Node, class Base, class Operand>
class ZYL_EXPORT UnaryNode : public Base {
 public:
  UnaryNode(ZylEnvI* env, Operand* operand);
  ~UnaryNode() override;
  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;
  void display(std::ostream& stream) const override;
  bool isInteger() const override;

  Operand* getOperand() const noexcept { return _operand; }

 private:
  Operand* _operand;
};

/// A node of two operands: `getLeft`, `getRight`.
template <class Node, class Base, class Operand>
class ZYL_EXPORT BinaryNode : public Base {
 public:
  BinaryNode(ZylEnvI* env, Operand* left, Operand* right);
  ~BinaryNode() override;
  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;
  void display(std::ostream& stream) const override;
  bool isInteger() const override;

  Operand* getLeft() const noexcept { return _left; }
  Operand* getRight() const noexcept { return _right; }

 private:
  Operand* _left;
  Operand* _right;
};

/// A node of one operand and a number: `getOperand`, `getConstant`. In the classes with Rec in
/// their name the number is the left side.
template <class Node, class Base, class Operand, class Constant>
class ZYL_EXPORT ConstantNode : public Base {
 public:
  ConstantNode(ZylEnvI* env, Operand* operand, Constant constant);
  ~ConstantNode() override;
  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;
  void display(std::ostream& stream) const override;
  bool isInteger() const override;

  Operand* getOperand() const noexcept { return _operand; }
  Constant getConstant() const noexcept { return _constant; }

 private:
  Operand* _operand;
  Constant _constant;
};

/// A node over an array of expressions, which it takes over, and whose elements it holds.
template <class Base, class Array>
class ZYL_EXPORT ArrayNode : public Base {
 public:
  ArrayNode(ZylEnvI* env, const Array& array);
  ~ArrayNode() override;
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;

  const Array& getArray() const noexcept { return _array; }

 protected:
  Array _array;
};

/// The extreme of an array. Elements that are removed from the environment drop out of it.
template <class Node, class Base, class Array>
class ZYL_EXPORT ExtremeNode : public ArrayNode<Base, Array> {
 public:
  using ArrayNode<Base, Array>::ArrayNode;
  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void atRemove(ZylExtractableI* removed, void* extra) override;
  void display(std::ostream& stream) const override;
  bool isInteger() const override;
};

/// The element of an array, which the node takes over, at the value of an index, truncated toward
/// zero: `getIndex`, `getArray`. Outside the array the value is 0.
template <class Node, class Base, class Array>
class ZYL_EXPORT ElementNode : public Base {
 public:
  ElementNode(ZylEnvI* env, ZylIntExprI* index, const Array& array);
  ~ElementNode() override;
  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void atRemove(ZylExtractableI* removed, void* extra) override;
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;
  void display(std::ostream& stream) const override;
  bool isInteger() const override;
  double eval(const ZylAlgorithm algorithm) const override;

  ZylIntExprI* getIndex() const noexcept { return _index; }
  const Array& getArray() const noexcept { return _array; }

 private:
  ZylIntExprI* _index;
  Array _array;
};

}  // namespace zyl::detail

#define ZYL_NODE_CLASS_(Class, Base, Eval, ...)                    \
  class Class;                                                     \
  extern template class zyl::detail::__VA_ARGS__;                  \
  class ZYL_EXPORT Class final : public zyl::detail::__VA_ARGS__ { \
    ZYL_TYPE(Class, Base)                                          \
    ZYL_CP_HOOKS(Class)                                            \
    using Family = zyl::detail::__VA_ARGS__;                       \
                                                                   \
   public:                                                         \
    using Family::Family;                                          \
    Eval                                                           \
  };
#define ZYL_EVAL_ double eval(const ZylAlgorithm algorithm) const override;

#define ZYL_UNARY_NODE(Class, Base, Operand, Rule, Long, Short, Value) \
  ZYL_NODE_CLASS_(Class, Base, ZYL_EVAL_, UnaryNode<Class, Base, Operand>)
#define ZYL_BINARY_NODE(Class, Base, Operand, Rule, Long, Short, Value) \
  ZYL_NODE_CLASS_(Class, Base, ZYL_EVAL_, BinaryNode<Class, Base, Operand>)
#define ZYL_CONSTANT_NODE(Class, Base, Operand, Constant, Order, Rule, Long, Short, Value) \
  ZYL_NODE_CLASS_(Class, Base, ZYL_EVAL_, ConstantNode<Class, Base, Operand, Constant>)
#define ZYL_EXTREME_NODE(Class, Base, Array, Rule, Long, Short, Empty, Better) \
  ZYL_NODE_CLASS_(Class, Base, ZYL_EVAL_, ExtremeNode<Class, Base, Array>)
#define ZYL_ELEMENT_NODE(Class, Base, Array, Rule, LongWord, ShortWord) \
  ZYL_NODE_CLASS_(Class, Base, , ElementNode<Class, Base, Array>)
#include "vorlane/expr/nodes.inc"
#undef ZYL_NODE_CLASS_
#undef ZYL_EVAL_

/// The number of elements that have a given value.
class ZYL_EXPORT ZylCountI final : public zyl::detail::ArrayNode<ZylIntExprI, ZylIntExprArray> {
  ZYL_TYPE(ZylCountI, ZylIntExprI)
  ZYL_CP_HOOKS(ZylCountI)
 public:
  ZylCountI(ZylEnvI* env, const ZylIntExprArray& array, long value);
  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void display(std::ostream& stream) const override;
  double eval(const ZylAlgorithm algorithm) const override;

  long getValue() const noexcept { return _value; }

 private:
  long _value;
};

/// The population standard deviation of the elements: the root of the mean squared distance from
/// their mean. The two limits of the mean are data for an engine; evaluation ignores them.
class ZYL_EXPORT ZylStandardDeviationI final
    : public zyl::detail::ArrayNode<ZylNumExprI, ZylIntExprArray> {
  ZYL_TYPE(ZylStandardDeviationI, ZylNumExprI)
  ZYL_CP_HOOKS(ZylStandardDeviationI)
 public:
  ZylStandardDeviationI(ZylEnvI* env, const ZylIntExprArray& array, double lowerMean,
                        double upperMean);
  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void display(std::ostream& stream) const override;
  double eval(const ZylAlgorithm algorithm) const override;
  /// Evaluates each element twice. Raises `ZylArrayError` for an empty array.
  static double Eval(const ZylAlgorithm& algorithm, const ZylIntExprArray& array);

  double getLowerMean() const noexcept { return _lowerMean; }
  double getUpperMean() const noexcept { return _upperMean; }

 private:
  double _lowerMean;
  double _upperMean;
};

/// A client's monotonic function of an expression. The inverse is data for an engine.
class ZYL_EXPORT ZylMonotonicNumExprI final : public ZylNumExprI {
  ZYL_TYPE(ZylMonotonicNumExprI, ZylNumExprI)
  ZYL_CP_HOOKS(ZylMonotonicNumExprI)
 public:
  using Function = double (*)(double);

  ZylMonotonicNumExprI(ZylEnvI* env, ZylNumExprI* operand, Function function, Function inverse,
                       long decreasing);
  ~ZylMonotonicNumExprI() override;
  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;
  void display(std::ostream& stream) const override;
  double eval(const ZylAlgorithm algorithm) const override;

  ZylNumExprI* getOperand() const noexcept { return _operand; }
  Function getFunction() const noexcept { return _function; }
  Function getInverse() const noexcept { return _inverse; }
  bool isDecreasing() const noexcept { return _decreasing != 0; }

 private:
  ZylNumExprI* _operand;
  Function _function;
  Function _inverse;
  long _decreasing;
};

#endif
