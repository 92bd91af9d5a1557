// Visitors of the graph of extractables.

#ifndef ZYL_MODEL_VISITOR_H
#define ZYL_MODEL_VISITOR_H

#include "vorlane/env/exception.h"

class ZylEnvI;
class ZylExtractableArray;
class ZylExtractableI;

/// What an object's `visitSubExtractables` talks to: begin, each child in order, end. Nothing
/// descends unless a visitor does so itself.
class ZYL_EXPORT ZylExtractableVisitor {
 public:
  virtual ~ZylExtractableVisitor();
  virtual void beginVisit(ZylExtractableI* object);
  /// `child` may be null.
  virtual void visitChildren(ZylExtractableI* parent, ZylExtractableI* child);
  virtual void endVisit(ZylExtractableI* object);
  /// Each element in order, until `stop()`.
  virtual void visitChildren(ZylExtractableI* parent, ZylExtractableArray children);
  /// Whether the visit may end early.
  virtual bool stop() const;
};

/// Finds a direct child that is finished or marked for removal; null children are skipped.
class ZYL_EXPORT ZylFindMarkedVisitor : public ZylExtractableVisitor {
 public:
  using ZylExtractableVisitor::visitChildren;
  void visitChildren(ZylExtractableI* parent, ZylExtractableI* child) override;
  bool stop() const override;
  long getResult() const noexcept { return _result; }

 private:
  long _result = 0;
};

/// A search of the whole graph below an object that ends at the first find; null children are
/// skipped.
class ZYL_EXPORT ZylFindVisitor : public ZylExtractableVisitor {
 public:
  void visitChildren(ZylExtractableI* parent, ZylExtractableI* child) override;
  void visitChildren(ZylExtractableI* parent, ZylExtractableArray children) override;
  bool stop() const override;
  long getResult() const noexcept { return _result; }

 protected:
  long _result = 0;
};

/// Finds an object that depends on a loop index.
class ZYL_EXPORT ZylFindNongroundTerm : public ZylFindVisitor {
 public:
  void beginVisit(ZylExtractableI* object) override;
};

/// Finds a decision variable.
class ZYL_EXPORT ZylFindDecisionVar : public ZylFindVisitor {
 public:
  void beginVisit(ZylExtractableI* object) override;
};

/// Finds an aggregate.
class ZYL_EXPORT ZylFindAggregate : public ZylFindVisitor {
 public:
  void beginVisit(ZylExtractableI* object) override;
};

#endif
