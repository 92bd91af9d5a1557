// Shared ownership within one thread.

#ifndef ZYL_JACE_COUNTED_PTR_H
#define ZYL_JACE_COUNTED_PTR_H

#include <memory>
#include <utility>

namespace jace {

/// Owns an object together with its copies; the last one deletes it.
///
/// The count is not atomic: all copies of one pointer stay on one thread. `T` needs a virtual
/// destructor if it is a base class.
template <class T>
class counted_ptr {
 public:
  counted_ptr() noexcept = default;

  /// Takes `object` over, also when this constructor fails.
  explicit counted_ptr(T* object) {
    std::unique_ptr<T> guard(object);
    if (object != nullptr) _count = new long(1);
    _ptr = guard.release();
  }

  counted_ptr(const counted_ptr& other) noexcept : _ptr(other._ptr), _count(other._count) {
    if (_count != nullptr) ++*_count;
  }

  counted_ptr(counted_ptr&& other) noexcept
      : _ptr(std::exchange(other._ptr, nullptr)), _count(std::exchange(other._count, nullptr)) {}

  counted_ptr& operator=(counted_ptr other) noexcept {
    std::swap(_ptr, other._ptr);
    std::swap(_count, other._count);
    return *this;
  }

  ~counted_ptr() {
    if (_count == nullptr || --*_count > 0) return;
    delete _ptr;
    delete _count;
  }

  [[nodiscard]] T* get() const noexcept { return _ptr; }
  T& operator*() const noexcept { return *_ptr; }
  T* operator->() const noexcept { return _ptr; }
  explicit operator bool() const noexcept { return _ptr != nullptr; }

 private:
  T* _ptr = nullptr;
  // Null exactly if `_ptr` is.
  long* _count = nullptr;
};

}  // namespace jace

#endif
