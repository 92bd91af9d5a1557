// Whether an object has died meanwhile.

#ifndef ZYL_SRC_MODEL_LIFE_WATCH_H
#define ZYL_SRC_MODEL_LIFE_WATCH_H

namespace zyl::detail {

/// Watches over one object for the length of a scope. Its id and its address tell nothing behind a
/// removal: both may be another object's by then. Who finishes an object tells the watches of its
/// environment with `leave`.
template <class T>
class LifeWatch {
 public:
  // Inlined, g++ 12 takes the link for one that dangles, and does not see the destructor undo it.
  [[gnu::noinline]] LifeWatch(LifeWatch** watches, const T* object) noexcept
      : _watches(watches), _outer(*watches), _object(object) {
    *watches = this;
  }
  ~LifeWatch() { *_watches = _outer; }
  LifeWatch(const LifeWatch&) = delete;
  LifeWatch& operator=(const LifeWatch&) = delete;

  bool isAlive() const noexcept { return _object != nullptr; }
  static void leave(LifeWatch* watches, const T* object) noexcept {
    for (LifeWatch* watch = watches; watch != nullptr; watch = watch->_outer) {
      if (watch->_object == object) watch->_object = nullptr;
    }
  }

 private:
  LifeWatch** _watches;
  LifeWatch* _outer;
  const T* _object;
};

}  // namespace zyl::detail

#endif
