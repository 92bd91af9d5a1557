// The text form of an element of any type.

#include "vorlane/collection/object_base.h"

#include <ostream>

void ZylObjectBase::display(std::ostream& stream) const {
  switch (_kind) {
    case Kind::None: return;
    case Kind::Int: stream << _int; return;
    case Kind::Num: stream << _num; return;
    case Kind::Any: stream << _any; return;
    case Kind::Symbol:
      if (_symbol != nullptr) _symbol->display(stream);
      return;
    case Kind::String:
      if (_string != nullptr) stream << _string;
      return;
  }
}

std::ostream& operator<<(std::ostream& stream, const ZylObjectBase& value) {
  value.display(stream);
  return stream;
}
