// A sequence of extractables.

#ifndef ZYL_MODEL_EXTRACTABLE_LIST_H
#define ZYL_MODEL_EXTRACTABLE_LIST_H

#include "vorlane/model/extractable_array.h"

/// A singly linked list with a tail pointer: adding is O(1), removing a walk. Duplicates are kept.
///
/// Refers to its elements and owns none. Cells come from the pools of the environment of the first
/// element; a local environment is told of each word before it changes, so that it can undo.
class ZYL_EXPORT ZylExtractableList {
 public:
  /// One element and the way on.
  struct Cell {
    Cell* next;
    ZylExtractableI* element;
  };

  ZylExtractableList() noexcept : _env(nullptr), _first(nullptr), _tail(&_first) {}
  ZylExtractableList(const ZylExtractableList&) = delete;
  ZylExtractableList& operator=(const ZylExtractableList&) = delete;

  /// Appends an element. Raises `ZylMemoryException`, which changes nothing.
  void add(ZylExtractableI* element);
  /// Appends the elements that are not null.
  void add(const ZylExtractableArray& elements);
  /// Removes the first occurrence; false if there is none.
  bool remove(ZylExtractableI* element);
  /// Removes every occurrence of the elements, and of what is marked for another reason, in one
  /// walk; appends what it removed to `removed`. Raises `ZylMemoryException`, which changes
  /// nothing.
  void remove(const ZylExtractableArray& elements, const ZylExtractableArray& removed);
  /// Removes every element that is finished or marked.
  void removeMarked();
  /// Gives every cell back.
  void clear();

  bool contains(const ZylExtractableI* element) const noexcept;
  bool isEmpty() const noexcept { return _first == nullptr; }
  Cell* getFirst() const noexcept { return _first; }

  /// Walks the elements in order. Stays good while elements are appended, and while those that it
  /// does not stand on are removed.
  class Iterator {
   public:
    explicit Iterator(const ZylExtractableList& list) noexcept : _cell(list._first) {}
    bool ok() const noexcept { return _cell != nullptr; }
    ZylExtractableI* operator*() const noexcept { return _cell->element; }
    void operator++() noexcept { _cell = _cell->next; }

   private:
    const Cell* _cell;
  };

 private:
  ZYL_LOCAL Cell* makeCell(ZylExtractableI* element);
  ZYL_LOCAL void setLink(Cell** link, Cell* cell);
  ZYL_LOCAL void setTail(Cell** tail);
  template <class OnRemoved>
  void removeMarked(OnRemoved onRemoved);

  ZylEnvI* _env;
  Cell* _first;
  Cell** _tail;  // the link that the next cell goes into
};

#endif
