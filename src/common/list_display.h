// Display forms that many classes share: the list of an array, and the head line of a record.

#ifndef ZYL_SRC_COMMON_LIST_DISPLAY_H
#define ZYL_SRC_COMMON_LIST_DISPLAY_H

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

/// The elements of an array of extractables, each by its own display; a null element prints
/// nothing.
inline void displayList(std::ostream& stream, const ZylExtractableArray& array) {
  displayList(stream, array.getSize(), [&](long i) {
    if (array.getI(i) != nullptr) array.getI(i)->display(stream);
  });
}

/// Writes the class word and, in parentheses, the name or the id; then a line end.
inline void displayHead(std::ostream& stream, const char* word, const ZylExtractableI* object) {
  stream << word << " (";
  if (object->getName() != nullptr) {
    stream << object->getName();
  } else {
    stream << object->getId();
  }
  stream << ")" << std::endl;
}

}  // namespace zyl::detail

#endif
