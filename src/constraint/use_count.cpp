// The one place that knows all counted classes, for removals, which stand below them.

#include "common/use_count.h"

#include "vorlane/constraint/for_all.h"

namespace zyl::detail {

namespace {

// Calls `use` with the object as the counted class that it is; nothing for what is not counted.
template <class Use>
void asCounted(ZylExtractableI* object, Use use) {
  if (auto* expr = zyl::as<ZylNumExprI>(object)) {
    if (expr->isRefCountedExpr()) use(expr);
  } else if (auto* comprehension = zyl::as<ZylComprehensionI>(object)) {
    use(comprehension);
  } else if (auto* generator = zyl::as<ZylGeneratorI>(object)) {
    use(generator);
  }
}

}  // namespace

bool isCounted(ZylExtractableI* object) {
  bool counted = false;
  asCounted(object, [&counted](auto*) { counted = true; });
  return counted;
}

long countOf(ZylExtractableI* object) {
  long count = 0;
  asCounted(object, [&count](auto* counted) { count = counted->getCount(); });
  return count;
}

void holdCounted(ZylExtractableI* object) {
  asCounted(object, [](auto* counted) { counted->hold(); });
}

void unholdCounted(ZylExtractableI* object) {
  asCounted(object, [](auto* counted) { counted->unhold(); });
}

}  // namespace zyl::detail
