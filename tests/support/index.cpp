#include "support/index.h"

#include "vorlane/algorithm.h"

namespace zyl::test {

ZYL_EXTRACTABLE_DEF(Index, ZylGeneratorI)

ZylExtractableI* Index::makeClone(ZylEnvI* env) const {
  auto* clone = new (env) Index(env);
  for (ZylExtractableList::Iterator it(getFilters()); it.ok(); ++it) {
    clone->suchThat(static_cast<ZylConstraintI*>(env->getClone(*it)));
  }
  return clone;
}

void Index::visitSubExtractables(ZylExtractableVisitor* visitor) {
  visitor->beginVisit(this);
  visitor->endVisit(this);
}

void Index::display(std::ostream& stream) const {
  stream << "i in 1..3";
  displayFilters(stream);
}

}  // namespace zyl::test
