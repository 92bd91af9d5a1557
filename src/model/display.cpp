#include "vorlane/model/display.h"

namespace zyl::detail {

void displayList(std::ostream& stream, const ZylExtractableArray& array) {
  displayList(stream, array.getSize(), [&](long i) {
    if (array.getI(i) != nullptr) array.getI(i)->display(stream);
  });
}

void displayHead(std::ostream& stream, const char* word, const ZylExtractableI* object) {
  stream << word << " (";
  if (object->getName() != nullptr) {
    stream << object->getName();
  } else {
    stream << object->getId();
  }
  stream << ")" << std::endl;
}

void displayName(std::ostream& stream, const ZylExtractableI* object, const char* word) {
  stream << (object->getName() != nullptr ? object->getName() : word);
}

void displayNameOrId(std::ostream& stream, const ZylExtractableI* object, const char* word) {
  displayName(stream, object, word);
  if (object->getName() == nullptr) stream << "(" << object->getId() << ")";
}

void displayReference(std::ostream& stream, const ZylExtractableI* object) {
  if (object->getName() != nullptr) {
    stream << object->getName();
  } else {
    object->display(stream);
  }
}

}  // namespace zyl::detail
