// Changes of no single kind of object, and what every change does unless it says otherwise.

#include "vorlane/model/change.h"

#include "vorlane/model/algorithm_handle.h"
#include "vorlane/model/plug_in.h"

ZYL_TYPE_DEF(ZylChange, ZylRtti)
ZYL_CHANGE_DEF(ZylDestroyExtractable, ZylChange)
ZYL_CHANGE_DEF(ZylDestroyExtractableArray, ZylChange)
ZYL_CHANGE_DEF(ZylRemoveFromAllChange, ZylChange)
ZYL_TYPE_DEF(ZylAddExtractable, ZylChange)

ZylChangeVisitor::~ZylChangeVisitor() = default;
void ZylChangeVisitor::addSubExtractable(ZylExtractableI*, ZylExtractableI*) {}
void ZylChangeVisitor::removeSubExtractable(ZylExtractableI*, ZylExtractableI*) {}

void ZylChangeVisitor::addSubExtractable(ZylExtractableI* parent,
                                         const ZylExtractableArray& children) {
  for (long i = 0; i < children.getSize(); ++i) {
    if (children.getI(i) != nullptr) addSubExtractable(parent, children.getI(i));
  }
}

void ZylChangeVisitor::removeSubExtractable(ZylExtractableI* parent,
                                            const ZylExtractableArray& children) {
  for (long i = 0; i < children.getSize(); ++i) {
    if (children.getI(i) != nullptr) removeSubExtractable(parent, children.getI(i));
  }
}

bool ZylChange::isApplyingOnArray() const { return false; }

ZylExtractableArray ZylChange::getChangedExtractableArray() const {
  ZylRaiseWrongUsage("ZylChange::getChangedExtractableArray can not be called");
}

ZylExtractableI* ZylChange::getChangedExtractable() const {
  ZylRaiseWrongUsage("ZylChange::getChangedExtractable can not be called");
}

void zyl::detail::raiseCannotChange(const ZylAlgorithm& algorithm) {
  throw ZylAlgorithm::CannotChangeException(algorithm.getImpl());
}

// The one visit that speaks to the deleter itself: without one there is nobody to tell.
void ZylRemoveFromAllChange::visitChange(ZylEnvI* env, ZylExtractableI* object,
                                         ZylChangeVisitor*) const {
  ZylBaseDeleterI* deleter = env->getDeleter();
  if (deleter == nullptr) return;
  if (object != nullptr) {
    deleter->removedFromAll(object);
    return;
  }
  for (long i = 0; i < _objects.getSize(); ++i) {
    if (_objects.getI(i) != nullptr) deleter->removedFromAll(_objects.getI(i));
  }
}

ZylAddExtractable::CannotAddExtractableException::CannotAddExtractableException(
    const char* message, const ZylExtractableI* object, const ZylAddExtractable* change)
    : ZylException(message), _object(object), _change(change) {}

ZylEnvI* ZylAddExtractable::getEnv() const {
  const ZylExtractableI* object = what();
  return object != nullptr ? object->getEnv() : nullptr;
}

void ZylAddExtractable::visitChange(ZylEnvI*, ZylExtractableI*, ZylChangeVisitor*) const {}

void ZylAddExtractable::setObj(const ZylExtractableI* object) { _obj = object; }

void ZylAddExtractable::install(ZylExtractableI* object) {
  if (object == nullptr) {
    throw CannotAddExtractableException("Cannot add new ZylExtractable to extractor", object, this);
  }
  for (ZylAddExtractable* link = this; link != nullptr;) {
    link->setObj(object);
    link->apply();
    if (ZylExtractableI* target = link->what()) {
      object->getEnv()->change(target, *link);
    } else {
      object->getEnv()->change(*link);
    }
    ZylAddExtractable* next = link->_next;
    link->_next = nullptr;
    link = next;
  }
}
