// Walks that survive what the elements do to the chain.

#ifndef ZYL_SRC_COMMON_WALK_H
#define ZYL_SRC_COMMON_WALK_H

namespace zyl::detail {

/// A walk along a chain whose elements, called on the way, may take any of them off the chain, and
/// delete them: who takes an element off tells the walks under way along that chain, from the
/// innermost out, with `leave`.
template <class T>
class Walk {
 public:
  // Inlined, g++ 12 takes the link for one that dangles, and does not see the destructor undo it.
  [[gnu::noinline]] Walk(Walk** walks, T* first) noexcept
      : _walks(walks), _outer(*walks), _next(first) {
    *walks = this;
  }
  ~Walk() { *_walks = _outer; }
  Walk(const Walk&) = delete;
  Walk& operator=(const Walk&) = delete;

  /// Moves on, and returns the element passed; null at the end.
  T* next() noexcept {
    T* element = _next;
    if (element != nullptr) _next = after(element);
    return element;
  }
  static void leave(Walk* walks, const T* element) noexcept {
    for (Walk* walk = walks; walk != nullptr; walk = walk->_outer) {
      if (walk->_next == element) walk->_next = after(element);
    }
  }

 private:
  static T* after(const T* element) noexcept {
    if constexpr (requires { element->getNextAlgorithm(); }) {
      return element->getNextAlgorithm();
    } else {
      return element->_next;
    }
  }

  Walk** _walks;
  Walk* _outer;
  T* _next;
};

}  // namespace zyl::detail

#endif
