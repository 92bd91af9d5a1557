// A list whose every write a local environment may undo.

#include "vorlane/model/extractable_list.h"

void ZylExtractableList::setLink(Cell** link, Cell* cell) {
  _env->saveValue(reinterpret_cast<void**>(link));
  *link = cell;
}

void ZylExtractableList::setTail(Cell** tail) {
  if (tail == _tail) return;
  _env->saveValue(reinterpret_cast<void**>(&_tail));
  _tail = tail;
}

ZylExtractableList::Cell* ZylExtractableList::makeCell(ZylExtractableI* element) {
  if (_env == nullptr) _env = element->getEnv();
  auto* cell = static_cast<Cell*>(_env->alloc(sizeof(Cell)));
  *cell = Cell{nullptr, element};
  return cell;
}

void ZylExtractableList::add(ZylExtractableI* element) {
  Cell* cell = makeCell(element);
  setLink(_tail, cell);
  setTail(&cell->next);
}

void ZylExtractableList::add(const ZylExtractableArray& elements) {
  // The cells are chained aside first, so that a failure changes nothing.
  Cell* first = nullptr;
  Cell** tail = &first;
  try {
    for (long i = 0; i < elements.getSize(); ++i) {
      if (elements.getI(i) == nullptr) continue;
      *tail = makeCell(elements.getI(i));
      tail = &(*tail)->next;
    }
  } catch (...) {
    while (first != nullptr) {
      Cell* next = first->next;
      _env->free(first, sizeof(Cell));
      first = next;
    }
    throw;
  }
  if (first == nullptr) return;
  setLink(_tail, first);
  setTail(tail);
}

bool ZylExtractableList::remove(ZylExtractableI* element) {
  for (Cell** link = &_first; *link != nullptr; link = &(*link)->next) {
    Cell* cell = *link;
    if (cell->element != element) continue;
    setLink(link, cell->next);
    if (cell->next == nullptr) setTail(link);
    _env->free(cell, sizeof(Cell));
    return true;
  }
  return false;
}

template <class OnRemoved>
void ZylExtractableList::removeMarked(OnRemoved onRemoved) {
  Cell** link = &_first;
  while (*link != nullptr) {
    Cell* cell = *link;
    if (!_env->isMarked(cell->element)) {
      link = &cell->next;
      continue;
    }
    onRemoved(cell->element);
    setLink(link, cell->next);
    if (cell->next == nullptr) setTail(link);
    _env->free(cell, sizeof(Cell));
  }
}

void ZylExtractableList::removeMarked() {
  removeMarked([](ZylExtractableI*) {});
}

namespace {

/// Marks live elements in the id table, and gives them their slots back whatever leaves.
class Marks {
 public:
  Marks(ZylEnvI* env, const ZylExtractableArray& elements) : _env(env), _first(nullptr) {
    try {
      for (long i = 0; i < elements.getSize(); ++i) mark(elements.getI(i));
    } catch (...) {
      restore();
      throw;
    }
  }
  ~Marks() { restore(); }
  Marks(const Marks&) = delete;
  Marks& operator=(const Marks&) = delete;

 private:
  using Cell = ZylExtractableList::Cell;
  void mark(ZylExtractableI* element) {
    // An object of another environment would mark the id of one of ours.
    if (element == nullptr || element->getEnv() != _env || _env->isMarked(element)) return;
    auto* cell = static_cast<Cell*>(_env->alloc(sizeof(Cell)));
    *cell = Cell{_first, element};
    _first = cell;
    _env->getIdManager()->mark(element->getId());
  }
  void restore() noexcept {
    while (_first != nullptr) {
      Cell* next = _first->next;
      _env->getIdManager()->set(_first->element->getId(), _first->element);
      _env->free(_first, sizeof(Cell));
      _first = next;
    }
  }
  ZylEnvI* _env;
  Cell* _first;
};

}  // namespace

void ZylExtractableList::remove(const ZylExtractableArray& elements,
                                const ZylExtractableArray& removed) {
  if (_first == nullptr) return;
  const Marks marks(_env, elements);
  long count = 0;
  for (const Cell* cell = _first; cell != nullptr; cell = cell->next) {
    if (_env->isMarked(cell->element)) ++count;
  }
  if (count == 0) return;
  // Room for all first: nothing below can fail.
  removed.getImpl()->grow(removed.getSize() + count);
  removeMarked([&](ZylExtractableI* element) { removed.addI(element); });
}

void ZylExtractableList::clear() {
  if (_first == nullptr) return;
  Cell* cell = _first;
  _env->saveValue(reinterpret_cast<void**>(&_first));
  _env->saveValue(reinterpret_cast<void**>(&_tail));
  _first = nullptr;
  _tail = &_first;
  while (cell != nullptr) {
    Cell* next = cell->next;
    _env->free(cell, sizeof(Cell));
    cell = next;
  }
}

bool ZylExtractableList::contains(const ZylExtractableI* element) const noexcept {
  for (const Cell* cell = _first; cell != nullptr; cell = cell->next) {
    if (cell->element == element) return true;
  }
  return false;
}
