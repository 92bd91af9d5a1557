// What is under construction, and goes again unless it gets finished.

#ifndef ZYL_SRC_COMMON_UNFINISHED_H
#define ZYL_SRC_COMMON_UNFINISHED_H

#include "vorlane/env/array.h"

class ZylNumExprI;

namespace zyl::detail {

/// A node that nobody has seen yet; destroyed unless it gets finished.
template <class Node>
class Unfinished {
 public:
  explicit Unfinished(Node* node) noexcept : _node(node), _fresh(true) {}
  /// The node may be `given`, which the client knows: then it stays.
  Unfinished(Node* node, const ZylNumExprI* given) noexcept : _node(node), _fresh(node != given) {}
  ~Unfinished() {
    if (_fresh) _node->getEnv()->destroy(_node, /*keep=*/0, /*notify=*/0);
  }
  Unfinished(const Unfinished&) = delete;
  Unfinished& operator=(const Unfinished&) = delete;

  Node* operator->() const noexcept { return _node; }
  Node* get() const noexcept { return _node; }
  [[nodiscard]] Node* finish() noexcept {
    _fresh = false;
    return _node;
  }

 private:
  Node* _node;
  bool _fresh;
};

}  // namespace zyl::detail

#endif
