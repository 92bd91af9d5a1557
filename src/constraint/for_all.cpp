// Generators and comprehensions with their use counts, and the constraints that they quantify.

#include "vorlane/constraint/for_all.h"

#include <algorithm>
#include <ostream>

#include "vorlane/constraint/for_all_change.h"
#include "vorlane/model/algorithm_handle.h"
#include "vorlane/model/recycle_bin.h"
#include "vorlane/model/visitor.h"

ZYL_TYPE_DEF(ZylGeneratorI, ZylExtractableI)
ZYL_EXTRACTABLE_DEF(ZylComprehensionI, ZylExtractableI)
ZYL_RECORD_DEF(ZylForAllI, ZylConstraintI)
ZYL_RECORD_DEF(ZylForAllRangeI, ZylConstraintI)

namespace {

// The end of what goes by a count that is not an expression's: as `ZylNumExprI::end`.
void endCounted(ZylExtractableI* object, long* count) {
  if (--*count >= 1) return;
  ZylEnvI* env = object->getEnv();
  if (env->getDeleter() != nullptr) {
    env->removeAndDelete(object, 1);
  } else if (env->getRecycleBin() != nullptr) {
    env->removeFromAllAndDestroy(object, 0);
  } else {
    env->destroy(object, /*keep=*/0, /*notify=*/1);
  }
}

template <class Counted>
void releaseCounted(ZylEnvI* env, Counted* object) {
  if (object == nullptr || env->isTearingDown()) return;
  const ZylRecycleBinI* bin = env->getRecycleBin();
  if (bin != nullptr && bin->contains(object)) {
    bin->released(object);
    return;
  }
  object->release();
}

}  // namespace

void ZylEnvI::release(ZylGeneratorI* generator) { releaseCounted(this, generator); }
void ZylEnvI::release(ZylComprehensionI* comprehension) { releaseCounted(this, comprehension); }

// --- ZylGeneratorI -------------------------------------------------------------------------------

ZylGeneratorI::~ZylGeneratorI() { _filters.clear(); }
bool ZylGeneratorI::isRefCountedExpr() const { return true; }
void ZylGeneratorI::end() { endCounted(this, &_count); }
bool ZylGeneratorI::isOpen() const { return false; }
void ZylGeneratorI::release() {
  if (!_env->isTearingDown()) end();
}

void ZylGeneratorI::atRemove(ZylExtractableI* removed, void* extra) {
  if (_env->getDeleterMode() == 0) _filters.removeMarked();
  ZylExtractableI::atRemove(removed, extra);
}

ZylGeneratorI* ZylGeneratorI::suchThat(ZylConstraintI* filter) {
  _filters.add(filter);
  return this;
}

ZylGeneratorI* ZylGeneratorI::suchThat(long value) {
  return suchThat(new (_env) ZylConstConstraintI(_env, value));
}

void ZylGeneratorI::displayFilters(std::ostream& stream) const {
  if (_filters.isEmpty()) return;
  stream << " / (";
  const char* separator = "";
  for (ZylExtractableList::Iterator it(_filters); it.ok(); ++it) {
    stream << separator;
    (*it)->display(stream);
    separator = " && ";
  }
  stream << ")";
}

// --- ZylComprehensionI ---------------------------------------------------------------------------

ZylComprehensionI::ZylComprehensionI(ZylEnvI* env, long count, ZylGeneratorI* const* generators)
    : ZylExtractableI(env, nullptr), _size(count),
      _generators(static_cast<ZylGeneratorI**>(
          env->alloc(static_cast<unsigned long>(count) * sizeof(ZylGeneratorI*)))) {
  std::copy_n(generators, count, _generators);
  for (long i = 0; i < count; ++i) _generators[i]->hold();
}

ZylComprehensionI::~ZylComprehensionI() {
  for (long i = 0; i < _size; ++i) _env->release(_generators[i]);
  _env->free(_generators, static_cast<unsigned long>(_size) * sizeof(ZylGeneratorI*));
}

bool ZylComprehensionI::isRefCountedExpr() const { return true; }
void ZylComprehensionI::end() { endCounted(this, &_count); }
void ZylComprehensionI::release() {
  if (!_env->isTearingDown()) end();
}

ZylExtractableI* ZylComprehensionI::makeClone(ZylEnvI* env) const {
  auto* clone = new (env) ZylComprehensionI(env, 0, nullptr);
  try {
    const unsigned long bytes = static_cast<unsigned long>(_size) * sizeof(ZylGeneratorI*);
    auto** generators = static_cast<ZylGeneratorI**>(env->alloc(bytes));
    std::fill_n(generators, _size, nullptr);
    clone->_generators = generators;
    clone->_size = _size;
    for (long i = 0; i < _size; ++i) {
      generators[i] = static_cast<ZylGeneratorI*>(env->getClone(_generators[i]));
      generators[i]->hold();
    }
  } catch (...) {
    env->destroy(clone, /*keep=*/0, /*notify=*/0);
    throw;
  }
  return clone;
}

void ZylComprehensionI::visitSubExtractables(ZylExtractableVisitor* visitor) {
  visitor->beginVisit(this);
  for (long i = 0; i < _size; ++i) visitor->visitChildren(this, _generators[i]);
  visitor->endVisit(this);
}

void ZylComprehensionI::display(std::ostream& stream) const {
  for (long i = 0; i < _size; ++i) {
    if (i != 0) stream << ", ";
    _generators[i]->display(stream);
  }
}

// --- ZylForAllI ----------------------------------------------------------------------------------

ZylForAllI::ZylForAllI(ZylComprehensionI* comprehension, ZylConstraintI* constraint,
                       const char* name)
    : Record(comprehension->getEnv(), name), _comprehension(comprehension), _constraint(constraint),
      _inner(constraint) {
  while (auto* forAll = zyl::as<ZylForAllI>(_inner)) _inner = forAll->_constraint;
}

void ZylForAllI::display(std::ostream& stream) const {
  stream << "Forall( ";
  _comprehension->display(stream);
  stream << " | ";
  _constraint->display(stream);
  stream << " )";
}

ZylConstraintI* ZylForAllI::getInnerConstraint() { return _inner; }

// --- ZylForAllRangeI -----------------------------------------------------------------------------

void ZylForAllRangeI::visitSubExtractables(ZylExtractableVisitor* visitor) {
  visitor->beginVisit(this);
  visitor->endVisit(this);
}

void ZylForAllRangeI::display(std::ostream& stream) const {
  stream << "ZylForAllRange(";
  _forAll->display(stream);
  stream << ", " << _index << ")";
}

// The bounds and coefficients live in the engine that expanded the constraint; it is told.
void ZylForAllRangeI::setBounds(double lower, double upper) {
  _forAll->notify(ZylSetForAllRangeBounds(this, lower, upper));
}
void ZylForAllRangeI::setLB(double lower) { _forAll->notify(ZylSetForAllRangeLB(this, lower)); }
void ZylForAllRangeI::setUB(double upper) { _forAll->notify(ZylSetForAllRangeUB(this, upper)); }
void ZylForAllRangeI::setCoef(const ZylNumVar& variable, double coefficient) {
  _forAll->notify(ZylSetForAllRangeLinearCoef(this, variable.getImpl(), coefficient));
}
void ZylForAllRangeI::setCoef(const ZylNumVarArray& variables, const ZylNumArray& coefs) {
  _forAll->notify(ZylSetForAllRangeLinearCoefs(this, variables, coefs));
}

ZylForAllRange::ZylForAllRange(const ZylEnv& env, ZylForAllI* forAll, long index,
                               const char* name) {
  if (env.getImpl() == nullptr) ZylRaiseEmptyHandle();
  _impl = new (env.getImpl()) ZylForAllRangeI(env.getImpl(), forAll, index, name);
}

ZylForAllRange::ZylForAllRange(const ZylConstraint& constraint) {
  if (constraint.getImpl() == nullptr) return;
  if (!zyl::isExactly<ZylForAllRangeI>(constraint.getImpl())) {
    ZylRaiseWrongUsage("Cannot create an ZylForAllRange instance with this constraint");
  }
  _impl = constraint.getImpl();
}
