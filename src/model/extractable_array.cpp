// Arrays of any extractables: naming, cloning and ending of the elements.

#include "vorlane/model/extractable_array.h"

#include <algorithm>
#include <cstring>

#include "vorlane/env/number.h"

namespace {

ZylArrayI* make(const ZylEnv& env, long n) {
  if (env.getImpl() == nullptr) ZylRaiseEmptyHandle();
  return new (env.getImpl()->getGenAlloc()) ZylArrayI(env.getImpl(), n);
}

// A copy of the elements in order of address, good for finding duplicates.
class SortedCopy {
 public:
  explicit SortedCopy(const ZylExtractableArray& array)
      : _copy(new (array.getImpl()->getManager())
                  ZylArrayI(array.getImpl()->getManager(), array.getImpl())) {
    // Heap sort: in place, and the pages need no iterator.
    const long n = _copy->getSize();
    for (long i = n / 2 - 1; i >= 0; --i) sink(i, n);
    for (long end = n - 1; end > 0; --end) {
      std::swap(at(0), at(end));
      sink(0, end);
    }
  }
  ~SortedCopy() { delete _copy; }
  SortedCopy(const SortedCopy&) = delete;
  SortedCopy& operator=(const SortedCopy&) = delete;

  bool hasDuplicates() const {
    for (long i = 1; i < _copy->getSize(); ++i) {
      if (at(i - 1) == at(i)) return true;
    }
    return false;
  }

 private:
  ZylExtractableI*& at(long i) const { return _copy->element<ZylExtractableI*>(i); }
  void sink(long i, long n) {
    for (long child = 2 * i + 1; child < n; child = 2 * i + 1) {
      if (child + 1 < n && at(child) < at(child + 1)) ++child;
      if (at(child) <= at(i)) return;
      std::swap(at(i), at(child));
      i = child;
    }
  }
  ZylArrayI* _copy;
};

}  // namespace

ZylExtractableArray::ZylExtractableArray(const ZylEnv& env, long n) : _impl(make(env, n)) {}

ZylExtractableArray::ZylExtractableArray(const ZylMemoryManager& manager, long n)
    : _impl(new (manager.getImpl()) ZylArrayI(manager.getImpl(), n)) {}

long ZylExtractableArray::find(const ZylExtractable& object) const {
  for (long i = getSize() - 1; i >= 0; --i) {
    if (getI(i) == object.getImpl()) return i;
  }
  return -1;
}

void ZylExtractableArray::removeMarked() const {
  long kept = 0;
  for (long i = 0; i < getSize(); ++i) {
    ZylExtractableI* element = getI(i);
    if (element != nullptr && element->getEnv()->isMarked(element)) continue;
    _impl->element<ZylExtractableI*>(kept++) = element;
  }
  _impl->truncate(kept);
}

namespace {

/// Names the elements of an array; unless it is told that this went well, all of them have the
/// names of before in the end.
class Renaming {
 public:
  explicit Renaming(const ZylExtractableArray& array)
      : _array(array), _manager(array.getImpl()->getManager()),
        _texts(new (_manager) ZylArrayI(_manager, array.getSize())) {}
  ~Renaming() {
    for (long i = 0; i < _named; ++i) {
      ZylExtractableI* element = _array.getI(i);
      if (element == nullptr) continue;
      if (!_done) element->swapName(&_texts->element<char*>(i));
      element->getEnv()->strFree(_texts->element<char*>(i));
    }
    delete _texts;
  }
  Renaming(const Renaming&) = delete;
  Renaming& operator=(const Renaming&) = delete;

  /// To be called for one index after the other.
  void rename(long i, const char* text) {
    if (ZylExtractableI* element = _array.getI(i)) {
      char*& name = _texts->element<char*>(i);
      name = element->getEnv()->strDup(text);
      try {
        element->swapName(&name);
      } catch (...) {
        element->getEnv()->strFree(name);
        throw;
      }
    }
    _named = i + 1;
  }
  void done() noexcept { _done = true; }

 private:
  const ZylExtractableArray& _array;
  ZylGenAlloc* _manager;
  ZylArrayI* _texts;  // the names of before
  long _named = 0;
  bool _done = false;
};

}  // namespace

void ZylExtractableArray::setNames(const char* prefix) const {
  if (prefix == nullptr) ZylRaiseEmptyHandle(EmptyText());
  if (SortedCopy(ZylExtractableArray(checked())).hasDuplicates()) {
    ZylRaiseWrongUsage("ZylExtractableArray::setNames: Can't have duplicate element in Array");
  }
  ZylGenAlloc* manager = _impl->getManager();
  const unsigned long size = std::strlen(prefix) + 31;
  auto* buffer = static_cast<char*>(manager->alloc(size));
  try {
    Renaming renaming(*this);
    for (long i = 0; i < getSize(); ++i) {
      ZylSPrintf(buffer, size, "%s[%d]", prefix, static_cast<int>(i));
      renaming.rename(i, buffer);
    }
    renaming.done();
  } catch (...) {
    manager->free(buffer, size);
    throw;
  }
  manager->free(buffer, size);
}

void ZylExtractableArray::replaceByClone(ZylEnvI* env) {
  const long n = getSize();
  ZylArrayI* clones = env != nullptr ? make(ZylEnv(env), n)
                                     : new (_impl->getManager()) ZylArrayI(_impl->getManager(), n);
  try {
    for (long i = 0; i < n; ++i) {
      ZylExtractableI* element = getI(i);
      if (element == nullptr) continue;
      ZylEnvI* target = env != nullptr ? env : element->getEnv();
      clones->element<ZylExtractableI*>(i) = target->getClone(element);
    }
  } catch (...) {
    delete clones;
    throw;
  }
  _impl = clones;
}

void ZylExtractableArray::endElements() const {
  ZylEnvI* env = checked()->getEnv();
  for (long i = 0; i < getSize(); ++i) {
    if (getI(i) != nullptr && getI(i)->getEnv() != env) throw ZylEnvironmentMismatch();
  }
  struct Others : ZylExtractableArray {
    using ZylExtractableArray::ZylExtractableArray;
    ~Others() { end(); }
  } others{ZylEnv(env)};
  for (long i = 0; i < getSize(); ++i) {
    ZylExtractableI* element = getI(i);
    if (element == nullptr) continue;
    if (!element->isRefCountedExpr()) {
      others.addI(element);
      continue;
    }
    // Whatever comes: a second attempt must not drop the reference again.
    _impl->element<ZylExtractableI*>(i) = nullptr;
    element->end();
  }
  const long size = getSize();
  const long count = others.getSize();
  try {
    if (count > 0) env->removeFromAllAndDestroy(others, 0);
  } catch (...) {
    // The last ones are gone, as many as the others lack.
    long dead = count - others.getSize();
    for (long i = std::min(size, getSize()) - 1; i >= 0 && dead > 0; --i) {
      if (getI(i) == nullptr) continue;
      _impl->element<ZylExtractableI*>(i) = nullptr;
      --dead;
    }
    throw;
  }
  clear();
}

void zyl::detail::raiseLiteralCount(const char* name, const char* separator, long count) {
  char text[128];
  ZylSPrintf(text, sizeof(text), "%s::%s: %s%ld", name, name, separator, count);
  throw ZylWrongUsage(text, 1);
}
