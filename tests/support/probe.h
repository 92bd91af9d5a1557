// An extractable that tells of its life.

#ifndef ZYL_TESTS_SUPPORT_PROBE_H
#define ZYL_TESTS_SUPPORT_PROBE_H

#include <functional>
#include <string>
#include <vector>

#include "vorlane/model/extractable.h"

namespace zyl::test {

/// Refers to up to two others, counts the living, and notes who dies. The actions must be small,
/// since an environment with pools ends without running destructors.
class Probe : public ZylExtractableI {
  ZYL_EXTRACTABLE(Probe, ZylExtractableI)
 public:
  static long Living;
  static std::vector<std::string> Died;

  explicit Probe(ZylEnvI* env, const char* name = nullptr, ZylExtractableI* first = nullptr,
                 ZylExtractableI* second = nullptr)
      : ZylExtractableI(env, name), left(first), right(second) {
    ++Living;
  }
  ~Probe() override;

  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;
  void atRemove(ZylExtractableI* removed, void* extra) override;
  bool hasNongroundType() const override { return nonground; }
  bool isAggregate() const override { return aggregate; }

  ZylExtractableI* left;
  ZylExtractableI* right;
  bool nonground = false;
  bool aggregate = false;
  long visits = 0;
  std::function<void()> onAtRemove;
  std::function<void()> onDeath;
};

/// A bare extractable, all of it as the base does.
class BareProbe : public ZylExtractableI {
  ZYL_EXTRACTABLE(BareProbe, ZylExtractableI)
 public:
  using ZylExtractableI::ZylExtractableI;
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;
};

/// Makes a probe in an environment.
inline Probe* probe(const ZylEnv& env, const char* name = nullptr, ZylExtractableI* first = nullptr,
                    ZylExtractableI* second = nullptr) {
  return new (env.getImpl()) Probe(env.getImpl(), name, first, second);
}

}  // namespace zyl::test

#endif
