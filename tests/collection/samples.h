// Collections over an array, of any of the abstract classes.

#ifndef ZYL_TESTS_COLLECTION_SAMPLES_H
#define ZYL_TESTS_COLLECTION_SAMPLES_H

#include <initializer_list>
#include <utility>

#include "vorlane/collection.h"

namespace zyl::test {

template <class Base>
class Sample : public Base {
 public:
  using Element = typename Base::ElementType;
  using Array = decltype(std::declval<const Base&>().getArray());
  using Base::getIndex;

  Sample(ZylEnvI* env, std::initializer_list<Element> values) : Base(env), _array(ZylEnv(env)) {
    for (Element value : values) _array.add(value);
  }
  ~Sample() override { _array.end(); }

  Sample* copy() const override { return makeClone(this->_env); }
  long getDataType() const override { return 99; }
  void display(std::ostream& stream) const override { stream << "sample"; }
  Sample* makeClone(ZylEnvI* env) const override {
    auto* clone = new (env) Sample(env, {});
    clone->_array.add(_array);
    return clone;
  }
  long getSize() const override { return _array.getSize(); }
  long getIndex(Element value) const override {
    for (long i = 0; i < getSize(); ++i) {
      if (_array[i] == value) return i;
    }
    return -1;
  }
  Array getArray() const override { return _array; }
  Element getValue(long index) const override {
    if (index < 0 || index >= getSize()) throw ZylIndexOutOfBoundsException(this, index);
    return _array[index];
  }
  bool isSortedAsc() const override { return isAscending; }
  bool isSortedDesc() const override { return isDescending; }

  bool isAscending = false;
  bool isDescending = false;

 private:
  Array _array;
};

using IntSample = Sample<ZylIntAbstractSetI>;
using NumSample = Sample<ZylNumAbstractSetI>;
using AnySample = Sample<ZylAnyAbstractSetI>;

}  // namespace zyl::test

#endif
