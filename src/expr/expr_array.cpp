// Arrays of expressions: whose references they hold, and indexing by an expression.

#include "vorlane/expr/expr_array.h"

#include <utility>

#include "common/build.h"
#include "common/handle_check.h"
#include "vorlane/expr/nodes.h"
#include "vorlane/expr/var_array.h"

using zyl::detail::ArrayCopy;

namespace {

void lock(const ZylExtractableArray& array) noexcept {
  if (array.getImpl() == nullptr) return;
  for (long i = 0; i < array.getImpl()->getSize(); ++i) {
    zyl::detail::holdExpr(static_cast<ZylNumExprI*>(array.getI(i)));
  }
}

// An element may be gone already, which the environment knows: so nothing here may look at one, not
// even a checked cast.
void release(const ZylExtractableArray& array) {
  if (array.getImpl() == nullptr) return;
  ZylEnvI* env = array.getImpl()->getEnv();
  for (long i = 0; i < array.getImpl()->getSize(); ++i) {
    env->release(array.getImpl()->element<ZylNumExprI*>(i));
  }
}

// The elements that stay keep their order. Each of the others gives its reference back when nothing
// of the array is in motion any more; one that a refusal leaves is there still, and holds its own.
void releaseMarked(const ZylExtractableArray& array) {
  ZylArrayI* const impl = array.getImpl();
  if (impl == nullptr) return;
  ZylEnvI* env = impl->getEnv();
  long kept = 0;
  for (long i = 0; i < impl->getSize(); ++i) {
    if (array.getI(i) != nullptr && env->isMarked(array.getI(i))) continue;
    std::swap(impl->element<ZylExtractableI*>(kept++), impl->element<ZylExtractableI*>(i));
  }
  while (impl->getSize() > kept) {
    auto* last = impl->element<ZylNumExprI*>(impl->getSize() - 1);
    impl->truncate(impl->getSize() - 1);
    env->release(last);
  }
}

ZylIntExprI* checkedIndex(const ZylIntExprArg& index, const ZylArrayI* array) {
  if (index.getImpl() == nullptr || array == nullptr) ZylRaiseEmptyHandle();
  return index.getImpl();
}

// The node that takes over a copy of the array.
template <class Node, class Array>
Node* makeElement(ZylIntExprI* index, const ZylArrayI* array) {
  ZylEnvI* env = index->getEnv();
  ArrayCopy<Array> copy(env, array);
  return copy.takenBy(new (env) Node(env, index, copy.get()));
}

template <class Node, class Array>
Node* makeExprElement(const ZylIntExprArg& index, const ZylExtractableArray& array) {
  ZylIntExprI* const expr = checkedIndex(index, array.getImpl());
  zyl::detail::requireElements(array);
  zyl::detail::requireEnv(expr->getEnv(), array, "operator[]: mixing mismatch Environments");
  return makeElement<Node, Array>(expr, array.getImpl());
}

}  // namespace

void ZylNumExprArray::lockExprs() const noexcept { lock(*this); }
void ZylNumExprArray::releaseExprs() const { release(*this); }
void ZylNumExprArray::releaseMarkedExprs() const { releaseMarked(*this); }

ZylNumExprArg ZylNumExprArray::operator[](const ZylIntExprArg& index) const {
  return ZylNumExprArg(makeExprElement<ZylNumExprArrayElementI, ZylNumExprArray>(index, *this));
}

void ZylIntExprArray::lockExprs() const noexcept { lock(*this); }
void ZylIntExprArray::releaseExprs() const { release(*this); }
void ZylIntExprArray::releaseMarkedExprs() const { releaseMarked(*this); }

ZylIntExprArg ZylIntExprArray::operator[](const ZylIntExprArg& index) const {
  return ZylIntExprArg(makeExprElement<ZylIntExprArrayElementI, ZylIntExprArray>(index, *this));
}

ZylNumExprArray ZylIntExprArray::toNumExprArray() const {
  ZylNumExprArray result(getEnv());
  result.getImpl()->addArray(getImpl());
  return result;
}

void ZylExprArray::add(long count, const ZylExpr& element) const {
  if (count <= 0) return;
  if (count > ZylArrayI::MaxSize) ZylRaiseMemory();
  checked()->grow(getSize() + count);
  for (long i = 0; i < count; ++i) add(element);
}

void ZylExprArray::add(const ZylExprArray& other) const {
  const long first = getSize();
  checked()->addArray(other.checked());
  for (long i = first; i < getSize(); ++i) zyl::detail::holdExpr((*this)[i].getImpl());
}

ZylNumExprArg ZylExprArray::operator[](const ZylIntExprArg& index) const {
  return ZylNumExprArg(makeExprElement<ZylNumExprArrayElementI, ZylNumExprArray>(index, *this));
}

// The same for the arrays of numbers and variables.

ZylNumExprArg ZylNumArray::operator[](const ZylIntExprArg& index) const {
  return ZylNumExprArg(
      makeElement<ZylNumArrayElementI, ZylNumArray>(checkedIndex(index, getImpl()), getImpl()));
}

ZylIntExprArg ZylIntArray::operator[](const ZylIntExprArg& index) const {
  return ZylIntExprArg(
      makeElement<ZylIntArrayElementI, ZylIntArray>(checkedIndex(index, getImpl()), getImpl()));
}

ZylNumExprArg ZylNumVarArray::operator[](const ZylIntExprArg& index) const {
  return ZylNumExprArg(makeExprElement<ZylNumExprArrayElementI, ZylNumExprArray>(index, *this));
}

ZylIntExprArg ZylIntVarArray::operator[](const ZylIntExprArg& index) const {
  return ZylIntExprArg(makeExprElement<ZylIntExprArrayElementI, ZylIntExprArray>(index, *this));
}
