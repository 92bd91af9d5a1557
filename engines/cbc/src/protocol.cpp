// What the engine does for each class of object and change, and what the client gives and takes.

#include "protocol.h"

#include <algorithm>

#include "vorlane/algorithm/dispatch.h"

// Exact classes: a subclass of a variable or a row means more than a column or a row does.
const zyl::EngineTable<ZylCbcProtocol>& ZylCbcI::table() {
  using P = ZylCbcProtocol;
  static const auto Table =
      zyl::EngineTable<P>()
          .takeExactly<ZylModelI>(&P::takeModel, &P::releaseModel)
          .takeExactly<ZylNumVarI>(&P::takeVariable, &P::releaseVariable)
          .takeExactly<ZylRangeI>(&P::takeRange, &P::releaseRow)
          .takeExactly<ZylNumEqI>(&P::takeComparison, &P::releaseRow)
          .takeExactly<ZylNumLeI>(&P::takeComparison, &P::releaseRow)
          .takeExactly<ZylNumGeI>(&P::takeComparison, &P::releaseRow)
          .takeExactly<ZylNumLTI>(&P::takeComparison, &P::releaseRow)
          .takeExactly<ZylNumGTI>(&P::takeComparison, &P::releaseRow)
          .takeExactly<ZylObjectiveI>(&P::takeObjective, &P::releaseObjective)
          .takeExactly<ZylConversionI>(&P::takeConversion, &P::releaseConversion)

          .on<ZylSetRangeBounds>(&P::rangeBounds)
          .on<ZylSetRangeArrayBounds>(&P::rangeArrayBounds)
          .on<ZylSetRangeCoef>(&P::rangeCoef)
          .on<ZylSetRangeCoefs>(&P::rangeCoefs)
          .on<ZylSetRangeExpr>(&P::rangeExpr)
          .on<ZylAddValueToRange>(&P::rangeEntry)
          .on<ZylSetNumVarBounds>(&P::variableBounds)
          .on<ZylSetNumVarPossibleValues>(&P::variableValues)
          .on<ZylSetNumVarArrayBounds>(&P::variableArrayBounds)
          .on<ZylSetObjExpr>(&P::objectiveExpr)
          .on<ZylSetObjCoef>(&P::objectiveCoef)
          .on<ZylSetObjCoefs>(&P::objectiveCoefs)
          .on<ZylSetObjConst>(&P::objectiveConstant)
          .on<ZylSetObjSense>(&P::objectiveSense)
          .on<ZylAddValueToObj>(&P::objectiveEntry)
          .on<ZylAddOneToModel>(&P::oneJoined)
          .on<ZylAddToModel>(&P::joined)
          .on<ZylRemoveFromModel>(&P::left)
          .on<ZylConversionRemoveVar>(&P::leftConversion)
          .on<ZylDestroyExtractable>(&P::dies)
          .on<ZylDestroyExtractableArray>(&P::die)
          .on<ZylRemoveFromAllChange>(&P::removed);
  return Table;
}

// --- what the client gives and takes -------------------------------------------------------------

// Tells what the client asks of the engine from what the protocol asks of itself.
class ZylCbcI::Nested {
 public:
  explicit Nested(ZylCbcI* engine) : _depth(&engine->_engine->depth) { ++*_depth; }
  ~Nested() { --*_depth; }
  Nested(const Nested&) = delete;
  Nested& operator=(const Nested&) = delete;

 private:
  long* _depth;
};

void ZylCbcI::checkIdle() const {
  if (_searchActive != 0) throw ZylNoChangeDuringSearchException();
}

void ZylCbcI::extract(const ZylExtractableI* extractable) {
  checkIdle();
  ZylAlgorithmI::extract(extractable);
  if (_engine->depth == 0) _engine->roots.push_back(extractable);
}

void ZylCbcI::remove(const ZylExtractableI* extractable) {
  checkIdle();
  ZylAlgorithmI::remove(extractable);
  if (_engine->depth > 0) return;
  const auto root = std::find(_engine->roots.begin(), _engine->roots.end(), extractable);
  if (root != _engine->roots.end()) _engine->roots.erase(root);
}

void ZylCbcI::loadWithoutClear(const ZylModelI* model) {
  checkIdle();
  ZylAlgorithmI::loadWithoutClear(model);
}

bool ZylCbcI::doExtract(const ZylExtractableI* extractable, void** handle) {
  const Nested nested(this);
  ZylCbcProtocol protocol(this);
  return table().extract(&protocol, extractable, handle);
}

bool ZylCbcI::doRemove(const ZylExtractableI* extractable, void* handle) {
  const Nested nested(this);
  ZylCbcProtocol protocol(this);
  return table().remove(&protocol, extractable, handle);
}

// --- edits ---------------------------------------------------------------------------------------

namespace {

bool isDeath(const ZylChange& change) {
  const ZylTypeInfo type = change.getTypeInfo();
  return type == ZylDestroyExtractable::GetTypeInfo() ||
         type == ZylRemoveFromAllChange::GetTypeInfo() ||
         type == ZylDestroyExtractableArray::GetTypeInfo();
}

}  // namespace

// What raises has changed the model and not the engine. From there on rows and columns are no
// ground for following anything; only what dies must still be forgotten, until all is loaded again.
void ZylCbcI::apply(const ZylChange& change, const ZylExtractableI* extractable) {
  if (_engine->isBehind && _searchActive == 0 && !isDeath(change)) return;
  try {
    ZylAlgorithmI::apply(change, extractable);
  } catch (...) {
    fallBehind();
    throw;
  }
}

void ZylCbcI::apply(const ZylChange& change) {
  if (_engine->isBehind && _searchActive == 0 && !isDeath(change)) return;
  try {
    ZylAlgorithmI::apply(change);
  } catch (...) {
    fallBehind();
    throw;
  }
}

// A failure that has emptied the engine leaves nothing to load.
void ZylCbcI::fallBehind() noexcept { _engine->isBehind = !_engine->roots.empty(); }

void ZylCbcI::catchUp() {
  const std::vector<const ZylExtractableI*> roots = std::move(_engine->roots);
  std::vector<std::pair<long, double>> start = std::move(_engine->start);
  clear();
  for (const ZylExtractableI* root : roots) {
    if (zyl::isExactly<ZylModelI>(root)) {
      loadWithoutClear(static_cast<const ZylModelI*>(root));
    } else {
      extract(root);
    }
  }
  _engine->start = std::move(start);
}

bool ZylCbcI::doApply(const ZylChange* change, void** handle, const ZylExtractableI* extractable) {
  const Nested nested(this);
  ZylCbcProtocol protocol(this);
  const bool done = table().apply(&protocol, change, *handle);
  // The object may have been forgotten in the course of its own change.
  if (extractable != nullptr) *handle = getHandle(extractable);
  return done;
}

void ZylCbcI::clear() {
  checkIdle();
  ZylAlgorithmI::clear();
  _engine->roots.clear();
  _engine->isBehind = false;
  _engine->store.clear();
  _engine->objective = ZylCbcObjective();
  _engine->result = ZylCbcResult();
  _engine->conversions.clear();
  _engine->start.clear();
  _engine->touched.clear();
  std::fill(_engine->coefficients.begin(), _engine->coefficients.end(), 0.0);
}
