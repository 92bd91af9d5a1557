// The protocol: how the model becomes rows and columns, and how edits reach them.
//
// The tables of protocol.cpp name a member for each class of object and change. What they name
// stands in extraction.cpp (objects that come and go) and edits.cpp (changes); sums.cpp has what
// both use: sums of terms and the uses of variables.
//
// Usage is counted by the base class. Each use of a variable (by a model, a row, the objective, a
// conversion) is one extraction of it, taken back with one removal, so a column lives exactly as
// long as something uses its variable. Handles in the base's tables are the engine's records.

#ifndef ZYL_CBC_PROTOCOL_H
#define ZYL_CBC_PROTOCOL_H

#include <cmath>
#include <vector>

#include "engine_impl.h"

namespace zyl::cbc {

/// Nothing but finite numbers goes into the linear program.
inline bool isUsable(double value) { return std::isfinite(value); }
bool isUsable(const ZylNumVarI* variable);
std::vector<double> valuesOf(const ZylNumVarI* variable);

}  // namespace zyl::cbc

/// The two ways of the protocol, with the engine's own rights. Made for one call.
class ZylCbcProtocol {
 public:
  using Column = zyl::cbc::Column;
  using Row = zyl::cbc::Row;
  using Term = zyl::cbc::Term;

  explicit ZylCbcProtocol(ZylCbcI* engine) : _engine(engine), _impl(*engine->_engine) {}

  // --- objects that come and go: extraction.cpp -------------------------------------------------
  // Each returns the handle, null to refuse; a refusal of a part passes.

  // The handle of a model says no more than that it is there.
  ZylCbcI::Impl* takeModel(const ZylModelI* model);
  void releaseModel(const ZylModelI* model, ZylCbcI::Impl* impl);
  Column* takeVariable(const ZylNumVarI* variable);
  void releaseVariable(const ZylNumVarI* variable, Column* column);
  Row* takeRange(const ZylRangeI* range);
  // left - right between the bounds that the relation gives.
  Row* takeComparison(const ZylBinaryNumConstraintI* comparison);
  void releaseRow(const ZylConstraintI* constraint, Row* row);
  ZylCbcObjective* takeObjective(const ZylObjectiveI* objective);
  void releaseObjective(const ZylObjectiveI* objective, ZylCbcObjective* kept);
  ZylCbcI::Impl* takeConversion(const ZylConversionI* conversion);
  void releaseConversion(const ZylConversionI* conversion, ZylCbcI::Impl* impl);

  // --- changes: edits.cpp -----------------------------------------------------------------------
  // Each returns whether the engine could follow.

  bool rangeBounds(const ZylSetRangeBounds& change, Row* row);
  bool rangeArrayBounds(const ZylSetRangeArrayBounds& change, void*);
  bool rangeCoef(const ZylSetRangeCoef& change, Row* row);
  bool rangeCoefs(const ZylSetRangeCoefs& change, Row* row);
  bool rangeExpr(const ZylSetRangeExpr& change, Row* row);
  bool rangeEntry(const ZylAddValueToRange& change, Row* row);
  bool variableBounds(const ZylSetNumVarBounds& change, Column* column);
  bool variableValues(const ZylSetNumVarPossibleValues& change, Column* column);
  bool variableArrayBounds(const ZylSetNumVarArrayBounds& change, void*);
  bool objectiveExpr(const ZylSetObjExpr& change, void*);
  bool objectiveCoef(const ZylSetObjCoef& change, void*);
  bool objectiveCoefs(const ZylSetObjCoefs& change, void*);
  bool objectiveConstant(const ZylSetObjConst& change, void*);
  bool objectiveSense(const ZylSetObjSense& change, void*);
  bool objectiveEntry(const ZylAddValueToObj& change, void*);
  bool oneJoined(const ZylAddOneToModel& change, void*);
  bool joined(const ZylAddToModel& change, void*);
  bool left(const ZylRemoveFromModel& change, void*);
  bool leftConversion(const ZylConversionRemoveVar& change, void*);
  bool dies(const ZylDestroyExtractable& change, void*);
  bool die(const ZylDestroyExtractableArray& change, void*);
  bool removed(const ZylRemoveFromAllChange& change, void*);

 private:
  struct Collected {
    const ZylNumVarI* variable;
    double coef;
  };

  // extraction.cpp
  void extractEach(const std::vector<const ZylExtractableI*>& objects);
  const ZylConversionI* lastConversionOf(const ZylNumVarI* variable) const;
  void releaseConverted(const ZylNumVarI* variable);
  void forgetOne(const ZylExtractableI* object);
  void forgetAll(const ZylExtractableArray& objects);
  void dropGoneCosts();

  // edits.cpp
  void refresh(Column* column);
  bool refreshChecked(Column* column);
  void refreshValues(Column* column, const ZylNumVarI* variable, zyl::VariableType type);
  bool setRowBounds(Row* row, double lower, double upper);
  bool setRowCoef(Row* row, const ZylNumVarI* variable, double coef);
  bool setObjectiveCoef(const ZylNumVarI* variable, double coef);

  // sums.cpp
  Column* columnOf(const ZylNumVarI* variable) const;
  bool collect(const ZylNumExprI* expr, double sign, double* constant);
  void addTerm(const ZylNumVarI* variable, double coef);
  std::vector<Collected> takeTouched();
  std::vector<Term> useTouched();
  void dropUses(const std::vector<Term>& terms);
  void writeCosts();
  bool isLeaving(const ZylExtractableI* object) const;

  ZylCbcI* _engine;
  ZylCbcI::Impl& _impl;
};

#endif
