// What the engine's sources share.

#ifndef ZYL_CBC_ENGINE_IMPL_H
#define ZYL_CBC_ENGINE_IMPL_H

#include <atomic>
#include <limits>
#include <vector>

#include "linear_store.h"
#include "vorlane/cbc.h"

/// The objective as the engine keeps it: a minimisation always.
struct ZylCbcObjective {
  const ZylObjectiveI* objective = nullptr;
  double sign = 1.0;  // -1 for a maximisation
  double constant = 0.0;
  std::vector<zyl::cbc::Term> terms;
};

/// What a solve left.
struct ZylCbcResult {
  ZylAlgorithm::Status status = ZylAlgorithm::Unknown;
  bool hasSolution = false;
  bool hasDuals = false;
  double value = 0.0;  // of the client's objective
  double bound = -ZylInfinity;
  long nodes = 0;
  long iterations = 0;
};

class ZylCbcI::Impl {
 public:
  zyl::cbc::LinearStore store;
  ZylCbcObjective objective;
  ZylCbcResult result;
  // What the client gave, in order: the objects whose extraction brought all others.
  std::vector<const ZylExtractableI*> roots;
  long depth = 0;         // of protocol calls: what is extracted inside one is no root
  bool isBehind = false;  // an edit was not followed; all must be loaded again

  // Conversions in force, last one wins.
  std::vector<const ZylConversionI*> conversions;

  double timeLimit = -1.0;
  double gapLimit = -1.0;
  long nodeLimit = -1;
  int logLevel = 1;
  ZylCbcListener* listener = nullptr;
  std::atomic<bool> interrupted{false};

  // Point to start the next search from, by column.
  std::vector<std::pair<long, double>> start;  // id of the variable, value

  // Scratch of `collect`: coefficient by id of the variable.
  std::vector<double> coefficients;
  std::vector<const ZylNumVarI*> touched;
};

#endif
