// The use counts of extractables, for those who cannot know which classes have one.

#ifndef ZYL_SRC_COMMON_USE_COUNT_H
#define ZYL_SRC_COMMON_USE_COUNT_H

class ZylExtractableI;

namespace zyl::detail {

/// Whether the object goes by a count of its owners. Defined where the counted classes are known.
bool isCounted(ZylExtractableI* object);
/// The number of owners, 0 for what is not counted.
long countOf(ZylExtractableI* object);
/// Take or give back one ownership without destroying anything; nothing for what is not counted.
void holdCounted(ZylExtractableI* object);
void unholdCounted(ZylExtractableI* object);

}  // namespace zyl::detail

#endif
