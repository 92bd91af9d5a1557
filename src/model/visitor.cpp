// Visitors that search, and how they stop.

#include "vorlane/model/visitor.h"

#include "vorlane/model/extractable_array.h"

ZylExtractableVisitor::~ZylExtractableVisitor() = default;
void ZylExtractableVisitor::beginVisit(ZylExtractableI*) {}
void ZylExtractableVisitor::visitChildren(ZylExtractableI*, ZylExtractableI*) {}
void ZylExtractableVisitor::endVisit(ZylExtractableI*) {}
bool ZylExtractableVisitor::stop() const { return false; }

void ZylExtractableVisitor::visitChildren(ZylExtractableI* parent, ZylExtractableArray children) {
  if (children.getImpl() == nullptr) return;
  for (long i = 0; i < children.getSize() && !stop(); ++i) visitChildren(parent, children.getI(i));
}

bool ZylFindMarkedVisitor::stop() const { return _result != 0; }

void ZylFindMarkedVisitor::visitChildren(ZylExtractableI*, ZylExtractableI* child) {
  if (_result != 0 || child == nullptr) return;
  if (child->getEnv()->isMarked(child)) _result = 1;
}

bool ZylFindVisitor::stop() const { return _result != 0; }

void ZylFindVisitor::visitChildren(ZylExtractableI*, ZylExtractableI* child) {
  if (_result == 0 && child != nullptr) child->visitSubExtractables(this);
}

void ZylFindVisitor::visitChildren(ZylExtractableI* parent, ZylExtractableArray children) {
  if (children.getImpl() == nullptr) return;
  for (long i = 0; i < children.getSize() && _result == 0; ++i) {
    visitChildren(parent, children.getI(i));
  }
}

// A find is final: what is visited after it must not undo it.
void ZylFindNongroundTerm::beginVisit(ZylExtractableI* object) {
  if (_result == 0) _result = object->hasNongroundType() ? 1 : 0;
}

void ZylFindAggregate::beginVisit(ZylExtractableI* object) {
  if (_result == 0) _result = object->isAggregate() ? 1 : 0;
}
