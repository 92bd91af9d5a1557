// Quantified constraints: a constraint for each binding of the generators of a comprehension.

#ifndef ZYL_CONSTRAINT_FOR_ALL_H
#define ZYL_CONSTRAINT_FOR_ALL_H

#include "vorlane/constraint/constraint.h"
#include "vorlane/model/extractable_list.h"

class ZylNumVarArray;

/// An iteration variable over a data collection, with filters. Counted as expressions are. Concrete
/// generators belong to a data layer; the library has none.
class ZYL_EXPORT ZylGeneratorI : public ZylExtractableI {
  ZYL_TYPE(ZylGeneratorI, ZylExtractableI)
 public:
  explicit ZylGeneratorI(ZylEnvI* env, const char* name = nullptr) : ZylExtractableI(env, name) {}
  ~ZylGeneratorI() override;

  bool isRefCountedExpr() const override;
  /// Drops one reference; the last one destroys the generator.
  void end() override;
  void atRemove(ZylExtractableI* removed, void* extra) override;
  virtual bool isOpen() const;
  virtual void release();

  /// Appends a filter; returns the generator.
  ZylGeneratorI* suchThat(ZylConstraintI* filter);
  ZylGeneratorI* suchThat(long value);
  /// Writes " / (", the filters with " && " between, ")"; nothing without filters.
  void displayFilters(std::ostream& stream) const;
  const ZylExtractableList& getFilters() const noexcept { return _filters; }

  long getCount() const noexcept { return _count; }
  void hold() noexcept { ++_count; }
  void unhold() noexcept { --_count; }

 private:
  long _count = 0;
  ZylExtractableList _filters;
};

/// Generators in order. Counted as expressions are; holds one reference on each generator.
class ZYL_EXPORT ZylComprehensionI : public ZylExtractableI {
  ZYL_EXTRACTABLE(ZylComprehensionI, ZylExtractableI)
 public:
  /// Copies the array of generators.
  ZylComprehensionI(ZylEnvI* env, long count, ZylGeneratorI* const* generators);
  ~ZylComprehensionI() override;

  bool isRefCountedExpr() const override;
  void end() override;
  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;
  void display(std::ostream& stream) const override;
  virtual void release();

  long getSize() const noexcept { return _size; }
  ZylGeneratorI* getGenerator(long i) const noexcept { return _generators[i]; }
  long getCount() const noexcept { return _count; }
  void hold() noexcept { ++_count; }
  void unhold() noexcept { --_count; }

 private:
  long _count = 0;
  long _size;
  ZylGeneratorI** _generators;
};

/// A constraint for each binding of a comprehension.
class ZYL_EXPORT ZylForAllI final : public zyl::Record<ZylForAllI, ZylConstraintI> {
  ZYL_RECORD(ZylForAllI, ZylConstraintI)
 public:
  ZylForAllI(ZylComprehensionI* comprehension, ZylConstraintI* constraint,
             const char* name = nullptr);

  void display(std::ostream& stream) const override;
  ZylConstraintI* getInnerConstraint() override;
  ZylComprehensionI* getComprehension() const noexcept { return _comprehension; }
  ZylConstraintI* getConstraint() const noexcept { return _constraint; }

 private:
  auto fields() { return zyl::fields("comprehension", _comprehension, "constraint", _constraint); }
  zyl::Held<ZylComprehensionI> _comprehension;
  zyl::Ref<ZylConstraintI> _constraint;
  ZylConstraintI* _inner;  // below all quantifiers
};

/// One range of a quantified constraint, by its index.
class ZYL_EXPORT ZylForAllRangeI final : public zyl::Record<ZylForAllRangeI, ZylConstraintI> {
  ZYL_RECORD(ZylForAllRangeI, ZylConstraintI)
 public:
  ZylForAllRangeI(ZylEnvI* env, ZylForAllI* forAll, long index, const char* name = nullptr)
      : Record(env, name), _forAll(forAll), _index(index) {}

  /// Shows nothing: the range does not keep its quantified constraint, nor go with it.
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;
  void display(std::ostream& stream) const override;
  ZylForAllI* getForAll() const noexcept { return _forAll; }
  long getIndex() const noexcept { return _index; }

  /// Each announces one change of the quantified constraint.
  void setBounds(double lower, double upper);
  void setLB(double lower);
  void setUB(double upper);
  void setCoef(const ZylNumVar& variable, double coefficient);
  void setCoef(const ZylNumVarArray& variables, const ZylNumArray& coefs);

 private:
  auto fields() { return zyl::fields("forAll", _forAll, "index", _index); }
  zyl::Ref<ZylForAllI> _forAll;
  long _index;
};

/// Handle of one range of a quantified constraint.
class ZYL_EXPORT ZylForAllRange : public ZylConstraint {
  ZYL_HANDLE(ZylForAllRange, ZylConstraint, ZylForAllRangeI)
 public:
  ZylForAllRange(const ZylEnv& env, ZylForAllI* forAll, long index, const char* name = nullptr);
  /// Raises `ZylWrongUsage` for a constraint of another class; an empty one leaves this empty.
  explicit ZylForAllRange(const ZylConstraint& constraint);
  void setLB(double lower) const { checked("Using empty Handle")->setLB(lower); }
  void setUB(double upper) const { checked("Using empty Handle")->setUB(upper); }
  void setBounds(double lower, double upper) const {
    checked("Using empty Handle")->setBounds(lower, upper);
  }
  void setLinearCoef(const ZylNumVar& variable, double coefficient) const {
    checked("Using empty Handle")->setCoef(variable, coefficient);
  }
  void setLinearCoefs(const ZylNumVarArray& variables, const ZylNumArray& coefs) const {
    checked("Using empty Handle")->setCoef(variables, coefs);
  }
};

#endif
