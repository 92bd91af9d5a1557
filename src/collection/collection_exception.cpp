// The texts of the failures of access to collections.

#include "vorlane/collection/collection_exception.h"

#include <sstream>

#include "collection/shown_name.h"

const char* zyl::detail::PrintedException::getMessage() const {
  if (_text.empty()) {
    std::ostringstream stream;
    print(stream);
    _text = stream.str();
  }
  return _text.c_str();
}

void ZylIndexOutOfBoundsException::print(std::ostream& stream) const {
  stream << "Index out of bounds for " << zyl::detail::shownName(_collection) << " :" << _index;
}

void ZylFirstLastElementNotFoundException::print(std::ostream& stream) const {
  stream << " : " << getOperatorName() << " element does not exist";
}

const char* ZylOperatorException::getOperatorName() const noexcept {
  if (isNext()) return isCircular() ? "nextc()" : "next()";
  return isCircular() ? "prevc()" : "prev()";
}

void ZylOperatorException::print(std::ostream& stream) const { stream << getOperatorName(); }

void ZylOperatorException::printReason(std::ostream& stream, const char* reason) const {
  stream << getOperatorName() << ": " << reason << ": " << _element;
}

void ZylCollectionElementNotFoundException::print(std::ostream& stream) const {
  printReason(stream, "the element is not in the set");
}

void ZylOperatorNextElementNotFoundException::print(std::ostream& stream) const {
  printReason(stream, "the step leaves the set");
}
