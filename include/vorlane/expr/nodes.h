// The expression nodes: what operators and functions build when a sum will not do.
//
// One template for each shape carries storage, counting, visiting, cloning and display; the classes
// are rows of nodes.inc, each with its evaluation, its integrality and its two display forms. A
// node holds its operands from construction to destruction. Engines read nodes through the
// accessors of their family and know them by type.

#ifndef ZYL_EXPR_NODES_H
#define ZYL_EXPR_NODES_H

#include "vorlane/expr/expr_array.h"
#include "vorlane/model/record.h"

namespace zyl::detail {

/// A node of one operand: `getOperand`.
template <class Node, class Base, class Operand>
class ZYL_EXPORT UnaryNode : public Record<Node, Base> {
 public:
  UnaryNode(ZylEnvI* env, Operand* operand);
  ~UnaryNode() override;
  void display(std::ostream& stream) const override;
  bool isInteger() const override;

  Operand* getOperand() const noexcept { return _operand; }

 private:
  friend Record<Node, Base>;
  auto fields() { return zyl::fields("operand", _operand); }
  Held<Operand> _operand;
};

/// A node of two operands: `getLeft`, `getRight`.
template <class Node, class Base, class Operand>
class ZYL_EXPORT BinaryNode : public Record<Node, Base> {
 public:
  BinaryNode(ZylEnvI* env, Operand* left, Operand* right);
  ~BinaryNode() override;
  void display(std::ostream& stream) const override;
  bool isInteger() const override;

  Operand* getLeft() const noexcept { return _left; }
  Operand* getRight() const noexcept { return _right; }

 private:
  friend Record<Node, Base>;
  auto fields() { return zyl::fields("left", _left, "right", _right); }
  Held<Operand> _left;
  Held<Operand> _right;
};

/// A node of one operand and a number: `getOperand`, `getConstant`. In the classes with Rec in
/// their name the number is the left side.
template <class Node, class Base, class Operand, class Constant>
class ZYL_EXPORT ConstantNode : public Record<Node, Base> {
 public:
  ConstantNode(ZylEnvI* env, Operand* operand, Constant constant);
  ~ConstantNode() override;
  void display(std::ostream& stream) const override;
  bool isInteger() const override;

  Operand* getOperand() const noexcept { return _operand; }
  Constant getConstant() const noexcept { return _constant; }

 private:
  friend Record<Node, Base>;
  auto fields() { return zyl::fields("operand", _operand, "constant", _constant); }
  Held<Operand> _operand;
  Constant _constant;
};

/// The extreme of an array, which the node takes over. Elements that are removed from the
/// environment drop out of it.
template <class Node, class Base, class Array>
class ZYL_EXPORT ExtremeNode : public Record<Node, Base> {
 public:
  static constexpr RecordRow Row{.shrinks = true};

  ExtremeNode(ZylEnvI* env, const Array& array);
  ~ExtremeNode() override;
  void display(std::ostream& stream) const override;
  bool isInteger() const override;

  const Array& getArray() const noexcept { return _array; }

 private:
  friend Record<Node, Base>;
  auto fields() { return zyl::fields("array", _array); }
  Owned<Array> _array;
};

/// The element of an array, which the node takes over, at the value of an index, truncated toward
/// zero: `getIndex`, `getArray`. Outside the array the value is 0. Elements that are removed drop
/// out, which moves those behind them.
template <class Node, class Base, class Array>
class ZYL_EXPORT ElementNode : public Record<Node, Base> {
 public:
  static constexpr RecordRow Row{.shrinks = HasExtractables<Array>};

  ElementNode(ZylEnvI* env, ZylIntExprI* index, const Array& array);
  ~ElementNode() override;
  void display(std::ostream& stream) const override;
  bool isInteger() const override;
  double eval(const ZylAlgorithm algorithm) const override;

  ZylIntExprI* getIndex() const noexcept { return _index; }
  const Array& getArray() const noexcept { return _array; }

 private:
  friend Record<Node, Base>;
  auto fields() { return zyl::fields("index", _index, "array", _array); }
  Held<ZylIntExprI> _index;
  Owned<Array> _array;
};

}  // namespace zyl::detail

#define ZYL_NODE_CLASS_(Class, Base, Eval, ...)                    \
  class Class;                                                     \
  extern template class zyl::detail::__VA_ARGS__;                  \
  class ZYL_EXPORT Class final : public zyl::detail::__VA_ARGS__ { \
    ZYL_EXTRACTABLE(Class, Base)                                   \
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
class ZYL_EXPORT ZylCountI final : public zyl::Record<ZylCountI, ZylIntExprI> {
  ZYL_RECORD(ZylCountI, ZylIntExprI)
 public:
  /// Takes the array over.
  ZylCountI(ZylEnvI* env, const ZylIntExprArray& array, long value)
      : Record(env), _array(array), _value(value) {}
  void display(std::ostream& stream) const override;
  double eval(const ZylAlgorithm algorithm) const override;

  const ZylIntExprArray& getArray() const noexcept { return _array; }
  long getValue() const noexcept { return _value; }

 private:
  auto fields() { return zyl::fields("array", _array, "value", _value); }
  zyl::Owned<ZylIntExprArray> _array;
  long _value;
};

/// The population standard deviation of the elements: the root of the mean squared distance from
/// their mean. The two limits of the mean are data for an engine; evaluation ignores them.
class ZYL_EXPORT ZylStandardDeviationI final
    : public zyl::Record<ZylStandardDeviationI, ZylNumExprI> {
  ZYL_RECORD(ZylStandardDeviationI, ZylNumExprI)
 public:
  /// Takes the array over.
  ZylStandardDeviationI(ZylEnvI* env, const ZylIntExprArray& array, double lowerMean,
                        double upperMean)
      : Record(env), _array(array), _lowerMean(lowerMean), _upperMean(upperMean) {}
  void display(std::ostream& stream) const override;
  double eval(const ZylAlgorithm algorithm) const override;
  /// Evaluates each element twice. Raises `ZylArrayError` for an empty array.
  static double Eval(const ZylAlgorithm& algorithm, const ZylIntExprArray& array);

  const ZylIntExprArray& getArray() const noexcept { return _array; }
  double getLowerMean() const noexcept { return _lowerMean; }
  double getUpperMean() const noexcept { return _upperMean; }

 private:
  auto fields() { return zyl::fields("array", _array, "lower", _lowerMean, "upper", _upperMean); }
  zyl::Owned<ZylIntExprArray> _array;
  double _lowerMean;
  double _upperMean;
};

/// A client's monotonic function of an expression. The inverse is data for an engine.
class ZYL_EXPORT ZylMonotonicNumExprI final
    : public zyl::Record<ZylMonotonicNumExprI, ZylNumExprI> {
  ZYL_RECORD(ZylMonotonicNumExprI, ZylNumExprI)
 public:
  using Function = double (*)(double);

  ZylMonotonicNumExprI(ZylEnvI* env, ZylNumExprI* operand, Function function, Function inverse,
                       long decreasing)
      : Record(env), _operand(operand), _function(function), _inverse(inverse),
        _decreasing(decreasing) {}
  void display(std::ostream& stream) const override;
  double eval(const ZylAlgorithm algorithm) const override;

  ZylNumExprI* getOperand() const noexcept { return _operand; }
  Function getFunction() const noexcept { return _function; }
  Function getInverse() const noexcept { return _inverse; }
  bool isDecreasing() const noexcept { return _decreasing != 0; }

 private:
  auto fields() {
    return zyl::fields("operand", _operand, "function", _function, "inverse", _inverse,
                       "decreasing", _decreasing);
  }
  zyl::Held<ZylNumExprI> _operand;
  Function _function;
  Function _inverse;
  long _decreasing;
};

#endif
