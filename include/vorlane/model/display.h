// Forms of text that many classes share.

#ifndef ZYL_MODEL_DISPLAY_H
#define ZYL_MODEL_DISPLAY_H

#include <ostream>

#include "vorlane/model/extractable_array.h"

namespace zyl::detail {

/// Writes "[", `size` elements through `show(i)`, separated by "," and a blank, a line end in place
/// of the blank after every tenth, and "]".
template <class Show>
void displayList(std::ostream& stream, long size, Show show) {
  stream << "[";
  for (long i = 0; i < size; ++i) {
    show(i);
    if (i + 1 == size) break;
    stream << ",";
    if ((i + 1) % 10 == 0) {
      stream << std::endl;
    } else {
      stream << " ";
    }
  }
  stream << "]";
}

/// The elements of an array of extractables, each by its own display; an empty one prints nothing.
ZYL_EXPORT void displayList(std::ostream& stream, const ZylExtractableArray& array);

/// Writes the word and, in parentheses, the name or the id; then a line end.
ZYL_EXPORT void displayHead(std::ostream& stream, const char* word, const ZylExtractableI* object);

/// Writes the name or, without one, the word.
ZYL_EXPORT void displayName(std::ostream& stream, const ZylExtractableI* object, const char* word);

/// Writes the name or, without one, the word and the id in parentheses.
ZYL_EXPORT void displayNameOrId(std::ostream& stream, const ZylExtractableI* object,
                                const char* word);

/// Writes the name of what another object refers to or, without one, its full display.
ZYL_EXPORT void displayReference(std::ostream& stream, const ZylExtractableI* object);

}  // namespace zyl::detail

#endif
