// Failures of access to collections.
//
// Each refers to the collection or element that it tells of, so its text must be read while those
// live.

#ifndef ZYL_COLLECTION_COLLECTION_EXCEPTION_H
#define ZYL_COLLECTION_COLLECTION_EXCEPTION_H

#include <string>

#include "vorlane/collection/object_base.h"

class ZylDataCollectionI;

namespace zyl::detail {
/// A failure whose message is what it prints.
class ZYL_EXPORT PrintedException : public ZylException {
 public:
  PrintedException() = default;
  /// The text, made on the first call and kept with the exception.
  const char* getMessage() const override;
  void print(std::ostream& stream) const override = 0;

 private:
  // Only who asks pays for the text: a failure may be an answer in a loop.
  mutable std::string _text;
};
}  // namespace zyl::detail

/// A position outside a collection.
class ZYL_EXPORT ZylIndexOutOfBoundsException : public zyl::detail::PrintedException {
 public:
  ZylIndexOutOfBoundsException(const ZylDataCollectionI* collection, long index)
      : _collection(collection), _index(index) {}
  void print(std::ostream& stream) const override;
  const ZylDataCollectionI* getCollection() const noexcept { return _collection; }
  long getIndex() const noexcept { return _index; }

 private:
  const ZylDataCollectionI* _collection;
  long _index;
};

/// The first or last element of a collection without elements.
class ZYL_EXPORT ZylFirstLastElementNotFoundException : public zyl::detail::PrintedException {
 public:
  /// 1 for the first element, 0 for the last.
  explicit ZylFirstLastElementNotFoundException(long first) : _first(first) {}
  void print(std::ostream& stream) const override;
  /// The operation's name, "first()" or "last()".
  const char* getOperatorName() const noexcept { return _first != 0 ? "first()" : "last()"; }
  bool isFirst() const noexcept { return _first != 0; }

 private:
  long _first;
};

/// A step through a set that leads nowhere.
class ZYL_EXPORT ZylOperatorException : public zyl::detail::PrintedException {
 public:
  /// `next` is 0 for a step back; `circular` tells of a step that goes on from the other end.
  ZylOperatorException(const ZylObjectBase& element, long next, long circular)
      : _element(element), _next(next), _circular(circular) {}
  /// Writes the operation's name.
  void print(std::ostream& stream) const override;
  /// "next()", "prev()", "nextc()" or "prevc()".
  const char* getOperatorName() const noexcept;
  /// Where the step began.
  const ZylObjectBase& getElement() const noexcept { return _element; }
  bool isNext() const noexcept { return _next != 0; }
  bool isCircular() const noexcept { return _circular != 0; }

 protected:
  void printReason(std::ostream& stream, const char* reason) const;

 private:
  ZylObjectBase _element;
  long _next;
  long _circular;
};

/// A step from an element that is not in the set.
class ZYL_EXPORT ZylCollectionElementNotFoundException : public ZylOperatorException {
 public:
  using ZylOperatorException::ZylOperatorException;
  void print(std::ostream& stream) const override;
};

/// A step past the set's first or last element.
class ZYL_EXPORT ZylOperatorNextElementNotFoundException : public ZylOperatorException {
 public:
  using ZylOperatorException::ZylOperatorException;
  void print(std::ostream& stream) const override;
};

#endif
