// A generator over nothing, for a front end that has none yet.

#ifndef ZYL_TESTS_SUPPORT_INDEX_H
#define ZYL_TESTS_SUPPORT_INDEX_H

#include <ostream>

#include "vorlane/constraint/for_all.h"
#include "vorlane/model/visitor.h"

namespace zyl::test {

class Index final : public ZylGeneratorI {
  ZYL_EXTRACTABLE(Index, ZylGeneratorI)
 public:
  explicit Index(ZylEnvI* env) : ZylGeneratorI(env) {}
  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;
  void display(std::ostream& stream) const override;
  ~Index() override { ++died; }
  static inline int died = 0;
};

}  // namespace zyl::test

#endif
