// A guard that ends what a handle stands for.

#ifndef ZYL_ENV_SCOPED_H
#define ZYL_ENV_SCOPED_H

#include <concepts>
#include <type_traits>
#include <utility>

#include "vorlane/env/exception.h"

namespace zyl {

/// A handle that ends what it stands for when its scope is left, also by an exception.
///
/// Handles own nothing, so that an exception between `ZylEnv env;` and `env.end()` loses the
/// environment. `zyl::Scoped<ZylEnv> env;` does not, and is a `ZylEnv` everywhere else. So is
/// `zyl::Scoped<ZylExpr> sum(env);` an expression that is built and then stated: when it goes, the
/// constraint is the sum's only owner, and edits it in place. It is assigned from another guard
/// only: `sum += x`, not `sum = sum + x`.
///
/// What it holds must still be there at the end of the scope: it is declared behind the guard of
/// its environment, and ended by nobody else. Exceptions may show objects of the environment, so
/// its guard stands outside the `try`. Moved, not copied; a plain handle made from it owns
/// nothing, as ever.
template <class Handle>
class Scoped : public Handle {
 public:
  /// Makes the handle from the arguments, as `Handle` itself would: a handle given is taken over, a
  /// counted expression held once more.
  template <class... Args>
  requires(std::constructible_from<Handle, Args...> &&
           !(std::derived_from<std::remove_cvref_t<Args>, Scoped> ||
             ...)) explicit Scoped(Args&&... args)
      : Handle(std::forward<Args>(args)...) {}
  Scoped(Scoped&& other) noexcept
      : Handle(static_cast<Handle&&>(other)), _owns(std::exchange(other._owns, false)) {}
  /// Ends what was held before.
  Scoped& operator=(Scoped&& other) noexcept {
    if (this == &other) return *this;
    endQuietly();
    Handle::operator=(static_cast<Handle&&>(other));
    _owns = std::exchange(other._owns, false);
    return *this;
  }
  /// What the end raises is lost; call `end` to hear of it.
  ~Scoped() { endQuietly(); }

  /// Ends it now. Raises what the handle's own `end` raises.
  void end() {
    _owns = false;
    Handle::end();
  }
  /// Returns what is held, which is the caller's to end from now on.
  [[nodiscard]] Handle release() {
    _owns = false;
    return static_cast<Handle&&>(*this);
  }

 private:
  void endQuietly() noexcept {
    if (!_owns || this->getImpl() == nullptr) return;
    try {
      end();
    } catch (ZylQuietException& exception) {
      exception.end();
    } catch (...) {  // NOLINT(bugprone-empty-catch): a scope cannot be left by two exceptions
    }
  }

  bool _owns = true;
};

template <class Handle>
Scoped(Handle) -> Scoped<Handle>;

}  // namespace zyl

#endif
