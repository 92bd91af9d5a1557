// The options of a creation, in order.

#ifndef ZYL_JACE_OPTION_LIST_H
#define ZYL_JACE_OPTION_LIST_H

#include <jni.h>

#include <cstddef>
#include <vector>

#include "vorlane/env/export.h"
#include "vorlane/jace/counted_ptr.h"
#include "vorlane/jace/option.h"

namespace jace {

/// Keeps copies of options in the order in which the runtime shall read them.
///
/// A list belongs to one thread. Copies of a list share the options.
class ZYL_EXPORT OptionList {
  using Options = std::vector<counted_ptr<Option>>;

 public:
  /// Walks the list; good as long as nothing is added.
  class iterator {
   public:
    explicit iterator(Options::const_iterator position) : _position(position) {}

    counted_ptr<Option> operator*() const { return *_position; }
    iterator& operator++() {
      ++_position;
      return *this;
    }
    iterator operator++(int) { return iterator(_position++); }
    iterator& operator--() {
      --_position;
      return *this;
    }
    iterator operator--(int) { return iterator(_position--); }
    bool operator!=(const iterator& other) const { return _position != other._position; }

   private:
    Options::const_iterator _position;
  };

  /// Adds a clone of `option`, which stays the caller's.
  void push_back(const Option& option);

  [[nodiscard]] std::size_t size() const noexcept { return _options.size(); }
  [[nodiscard]] iterator begin() const { return iterator(_options.begin()); }
  [[nodiscard]] iterator end() const { return iterator(_options.end()); }

  /// Returns a new array of `size()` entries with texts of their own, which goes back through
  /// `destroyJniOptions` of this list, with the list unchanged in between.
  [[nodiscard]] JavaVMOption* createJniOptions() const;
  /// Frees what `createJniOptions` returned. Null is allowed.
  void destroyJniOptions(JavaVMOption* options) const;

 private:
  Options _options;
};

}  // namespace jace

#endif
