// Engines, plug-ins, visitors and local environments that write down what they are told.

#ifndef ZYL_TESTS_SUPPORT_RECORDING_H
#define ZYL_TESTS_SUPPORT_RECORDING_H

#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "vorlane/algorithm.h"
#include "vorlane/env/local_env.h"
#include "vorlane/model/model.h"
#include "vorlane/model/plug_in.h"

namespace zyl::test {

using Log = std::vector<std::string>;

/// An algorithm that logs each call with the class name of what it is about, "name: " in front if
/// it has a log in common with others, and refuses the classes that it is told to.
class RecordingAlgorithm : public ZylAlgorithmI {
 public:
  explicit RecordingAlgorithm(ZylEnvI* env, Log* shared = nullptr, std::string name = "")
      : ZylAlgorithmI(env), log(shared != nullptr ? *shared : _own), _name(std::move(name)) {}

  bool doExtract(const ZylExtractableI* extractable, void** handle) override {
    note("extract", extractable->getRttiTypeName());
    if (onExtract) onExtract(*extractable);
    if (refuses(extractable->getRttiTypeName())) return false;
    *handle = &handles[extractable->getId() % Handles];
    if (nested) extractChildren(extractable);
    return true;
  }
  bool doRemove(const ZylExtractableI* extractable, void* handle) override {
    note("remove", extractable->getRttiTypeName());
    lastHandle = handle;
    return !refusesRemoval;
  }
  bool doApply(const ZylChange* change, void** handle,
               const ZylExtractableI* extractable) override {
    note("apply", change->getRttiTypeName());
    lastHandle = handle != nullptr ? *handle : nullptr;
    lastTarget = extractable;
    if (onApply) onApply(*change);
    return !refuses(change->getRttiTypeName());
  }
  double getObjValue() const override { return 0.0; }
  using ZylAlgorithmI::getValue;
  double getValue(const ZylNumVarI*) const override { return value; }
  double getValue(const ZylObjectiveI*) const override { return value; }
  bool solve() override {
    _searchActive = 1;
    if (onSolve) onSolve();
    _searchActive = 0;
    return true;
  }
  void setSearchActive(bool active) { _searchActive = active ? 1 : 0; }
  void setScope(ZylExtractionScope* scope) { _extractionScope = scope; }

  void refuse(const std::string& className) { _refused.insert(className); }
  void acceptAll() { _refused.clear(); }

  static constexpr long Handles = 64;
  Log& log;
  char handles[Handles] = {};
  bool nested = true;
  bool refusesRemoval = false;
  double value = 0.0;
  void* lastHandle = nullptr;
  const ZylExtractableI* lastTarget = nullptr;
  std::function<void(const ZylExtractableI&)> onExtract;
  std::function<void(const ZylChange&)> onApply;
  std::function<void()> onSolve;

 private:
  // Models pull their elements in.
  void extractChildren(const ZylExtractableI* extractable) {
    const auto* model = zyl::as<ZylModelI>(extractable);
    if (model == nullptr) return;
    for (ZylModelI::Iterator it(model->getElements()); it.ok(); ++it) extract(*it);
  }
  void note(const std::string& what, const std::string& className) {
    log.push_back((_name.empty() ? "" : _name + ": ") + what + " " + className);
  }
  bool refuses(const std::string& className) const { return _refused.count(className) != 0; }

  Log _own;
  std::string _name;
  std::set<std::string> _refused;
};

/// A plug-in that logs the changes it hears of.
class RecordingPlugIn : public ZylNotifiedPlugIn {
 public:
  explicit RecordingPlugIn(ZylEnvI* env, Log* log, ZylAlgorithmI* algorithm = nullptr,
                           std::string name = "")
      : ZylNotifiedPlugIn(env, algorithm), _log(log), _name(std::move(name)) {}
  void notification(const ZylChange& change, const ZylExtractableI* object) override {
    _log->push_back((_name.empty() ? "" : _name + ": ") + change.getRttiTypeName() +
                    (object != nullptr ? "" : " (all)"));
    if (onChange) onChange(change);
  }
  void removeAlgorithm(ZylAlgorithmI* algorithm) override { removed = algorithm; }

  std::function<void(const ZylChange&)> onChange;
  const ZylAlgorithmI* removed = nullptr;

 private:
  Log* _log;
  std::string _name;
};

/// A visitor of changes that notes the edges it hears of.
class ChildLog : public ZylChangeVisitor {
 public:
  using Edges = std::vector<std::pair<ZylExtractableI*, ZylExtractableI*>>;
  using ZylChangeVisitor::addSubExtractable;
  using ZylChangeVisitor::removeSubExtractable;
  void addSubExtractable(ZylExtractableI* parent, ZylExtractableI* child) override {
    added.emplace_back(parent, child);
  }
  void removeSubExtractable(ZylExtractableI* parent, ZylExtractableI* child) override {
    removed.emplace_back(parent, child);
  }
  Edges added;
  Edges removed;
};

/// A local environment that counts, and can undo as a backtracking allocator does.
class RecordingLocalEnv : public ZylLocalEnvI {
 public:
  explicit RecordingLocalEnv(ZylEnvI* env, bool undoes = false)
      : ZylLocalEnvI(env), _undoes(undoes) {}
  void* alloc(unsigned long size) override {
    ++allocs;
    return getEnv()->getMemory()->alloc(static_cast<long>(size));
  }
  void free(void* block, unsigned long size) override {
    ++frees;
    // Undoing may bring back what refers to the block.
    if (!_undoes) getEnv()->getMemory()->free(block, static_cast<long>(size));
  }
  void saveValue(void** word) override { ++saves, _words.emplace_back(word, *word); }
  void saveValue(long*) override { ++saves; }
  void saveValue(double*) override { ++saves; }
  /// Writes back the pointers that it was told of, the last first.
  void undo() {
    for (; !_words.empty(); _words.pop_back()) *_words.back().first = _words.back().second;
  }
  long allocs = 0;
  long frees = 0;
  long saves = 0;

 private:
  bool _undoes;
  std::vector<std::pair<void**, void*>> _words;
};

}  // namespace zyl::test

#endif
