// Life of an extractable from its own side, and the handle of any.

#include "vorlane/model/extractable.h"

#include <ostream>

#include "model/life_watch.h"
#include "vorlane/env/hash_table.h"
#include "vorlane/model/algorithm_handle.h"
#include "vorlane/model/visitor.h"

ZYL_TYPE_DEF(ZylExtractableI, ZylRttiEnvObjectI)

ZylExtractableI::ZylExtractableI(ZylEnvI* env, const char* name)
    : ZylRttiEnvObjectI(env), _id(-1), _extension(nullptr) {
  env->init(this);
  if (ZYL_LIKELY(name == nullptr)) return;
  try {
    setName(name);
  } catch (...) {
    // No destructor runs for this object.
    zyl::detail::Extended::end(extensionAlloc(), &_extension);
    env->finit(this);
    throw;
  }
}

ZylExtractableI::~ZylExtractableI() {
  ZylAny2BoolHashTable* decisions = _env->getDecisionExprMap();
  if (decisions != nullptr && decisions->getSize() != 0) decisions->remove(this);
  if (_extension != nullptr) zyl::detail::Extended::end(extensionAlloc(), &_extension);
  // Only a constructor that raised comes here with an id.
  if (_id >= 0) _env->finit(this);
}

void ZylExtractableI::operator delete(ZylExtractableI* object, std::destroying_delete_t,
                                      std::size_t size) noexcept(false) {
  if (object->_id >= 0) {
    // Destroys the object too, or leaves that to the removal that is under way.
    object->_env->removeFromAllAndDestroy(object, 1);
    return;
  }
  zyl::detail::ReleaseToEnv release{object->_env, object, size};
  object->~ZylExtractableI();
}

ZylExtractableI* ZylExtractableI::makeClone(ZylEnvI*) const {
  throw ZylExtractable::NoCloneMechanismException(this);
}

// The object refers to something that goes: it goes too. That only puts it into the bin of the
// removal that is under way, so the removal climbs up to all that depends on its object.
void ZylExtractableI::atRemove(ZylExtractableI*, void*) {
  if (_env->getDeleterMode() != 0) {
    end();
    return;
  }
  ZylFindMarkedVisitor visitor;
  visitSubExtractables(&visitor);
  if (visitor.getResult() != 0) _env->removeFromAllAndDestroy(this, 0);
}

bool ZylExtractableI::isRefCountedExpr() const { return false; }

void ZylExtractableI::end() {
  if (_id != -1) _env->removeFromAllAndDestroy(this, 0);
}

void ZylExtractableI::display(std::ostream& stream) const {
  stream << "ZylExtractable unknow" << _id << std::endl;
}

void ZylExtractableI::whenAddedToCP(ZylAlgorithm, void*) const {}
void ZylExtractableI::whenRemovedFromCP(ZylAlgorithm, void*) const {}
void ZylExtractableI::changeParameter(const ZylParameterExtractableLinkI*) {}
void ZylExtractableI::endParameter(const ZylParameterExtractableLinkI*) {}
bool ZylExtractableI::hasNongroundType() const { return false; }
bool ZylExtractableI::isAggregate() const { return false; }

namespace {
// Visits take a mutable object since engines' visitors may edit; these three only look.
template <class Visitor>
bool finds(const ZylExtractableI* object) {
  Visitor visitor;
  const_cast<ZylExtractableI*>(object)->visitSubExtractables(&visitor);  // NOLINT
  return visitor.getResult() != 0;
}
}  // namespace

bool ZylExtractableI::isGround() const { return !finds<ZylFindNongroundTerm>(this); }

bool ZylExtractableI::isDecisionExpr() const {
  ZylAny2BoolHashTable* decisions = _env->getDecisionExprMap();
  void* key = const_cast<ZylExtractableI*>(this);  // NOLINT: an address, never written through
  if (const long* known = decisions->find(key)) return *known != 0;
  const bool result = finds<ZylFindDecisionVar>(this);
  decisions->add(key, result ? 1 : 0);
  return result;
}

void ZylExtractableI::removeFromAll() { _env->removeFromAll(this); }

void zyl::detail::raiseExtractFailure() { throw ZylAlgorithm::ExtractFailure(); }
void zyl::detail::raiseRemoveFailure() { throw ZylAlgorithm::RemoveFailure(); }

// --- handle --------------------------------------------------------------------------------------

ZylExtractable::NoCloneMechanismException::NoCloneMechanismException(
    const ZylExtractableI* extractable)
    : ZylException("Extractable do not have clone mechanism"), _extractable(extractable) {}

void ZylExtractable::NoCloneMechanismException::print(std::ostream& stream) const {
  stream << "Extractable with id " << _extractable->getId() << " do not have clone mechanism";
}

ZylEnv ZylExtractable::getEnv() const { return ZylEnv(checked()->getEnv()); }
long ZylExtractable::getId() const { return checked()->getId(); }

void ZylExtractable::end() {
  ZylExtractableI* object = checked();
  if (object->isRefCountedExpr()) {
    // The reference is given up whatever comes.
    _impl = nullptr;
    object->end();
    return;
  }
  const zyl::detail::LifeWatch watch(&object->getEnv()->_lifeWatches, object);
  try {
    object->end();
  } catch (...) {
    // A later batch may be refused when the object is gone already.
    if (!watch.isAlive()) _impl = nullptr;
    throw;
  }
  _impl = nullptr;
}

void ZylExtractable::removeFromAll() const { checked()->removeFromAll(); }
void ZylExtractable::display(std::ostream& stream) const { checked()->display(stream); }

std::ostream& operator<<(std::ostream& stream, const ZylExtractable& extractable) {
  extractable.display(stream);
  return stream;
}
