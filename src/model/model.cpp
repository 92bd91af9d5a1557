// Models: a list of elements, edits that are announced, and the changes that announce them.

#include "vorlane/model/model.h"

#include <ostream>

#include "common/handle_check.h"
#include "common/unfinished.h"
#include "vorlane/model/algorithm_handle.h"
#include "vorlane/model/model_change.h"
#include "vorlane/model/visitor.h"

ZYL_EXTRACTABLE_DEF(ZylModelI, ZylExtractableI)

ZylModelI::ZylModelI(ZylEnvI* env, const char* name) : ZylExtractableI(env, name) {}

ZylModelI::~ZylModelI() { _elements.clear(); }

ZylExtractableI* ZylModelI::makeClone(ZylEnvI* env) const {
  zyl::detail::Unfinished clone(new (env) ZylModelI(env));
  for (Iterator it(_elements); it.ok(); ++it) clone->add(env->getClone(*it));
  return clone.finish();
}

void ZylModelI::atRemove(ZylExtractableI* removed, void*) {
  if (_env->getDeleterMode() != 0) {
    remove(removed);
    return;
  }
  _elements.removeMarked();
}

void ZylModelI::visitSubExtractables(ZylExtractableVisitor* visitor) {
  visitor->beginVisit(this);
  for (Iterator it(_elements); it.ok(); ++it) visitor->visitChildren(this, *it);
  visitor->endVisit(this);
}

void ZylModelI::display(std::ostream& stream) const {
  stream << "ZylModel ";
  if (getName() != nullptr) {
    stream << getName();
  } else {
    stream << "model" << getId();
  }
  stream << " = {" << std::endl;
  for (Iterator it(_elements); it.ok(); ++it) {
    (*it)->display(stream);
    stream << std::endl;
  }
  stream << "}" << std::endl;
}

ZylExtractableI* ZylModelI::add(ZylExtractableI* element) {
  _elements.add(element);
  notify(ZylAddOneToModel(this, element));
  return element;
}

void ZylModelI::add(const ZylExtractableArray& elements) {
  if (elements.getSize() == 0) return;
  _elements.add(elements);
  notify(ZylAddToModel(this, elements));
}

void ZylModelI::remove(ZylExtractableI* element) {
  if (!_elements.contains(element)) return;
  // Made before the edit, as its array may fail to be allocated.
  const ZylRemoveFromModel change(this, element);
  _elements.remove(element);
  notify(change);
}

void ZylModelI::remove(const ZylExtractableArray& elements) {
  if (elements.getSize() == 0) return;
  struct Removed : ZylExtractableArray {
    using ZylExtractableArray::ZylExtractableArray;
    ~Removed() { end(); }
  } removed{ZylEnv(_env)};
  _elements.remove(elements, removed);
  if (removed.getSize() != 0) notify(ZylRemoveFromModel(this, removed));
}

// --- handle --------------------------------------------------------------------------------------

namespace {

using zyl::detail::argument;
using zyl::detail::emptyHandle;

// Raises unless both handles refer to something, of one environment.
void check(const ZylModel& model, const char* modelText, const ZylExtractable& element,
           const char* elementText, const char* mismatchText) {
  const ZylModelI* owner = zyl::detail::checked(model, emptyHandle(modelText));
  zyl::detail::require(owner->getEnv(), mismatchText, argument(element, emptyHandle(elementText)));
}

void check(const ZylModel& model, const char* modelText, const ZylExtractableArray& elements,
           const char* mismatchText) {
  const ZylModelI* owner = zyl::detail::checked(model, emptyHandle(modelText));
  static_cast<void>(zyl::detail::checkedArray(elements));
  zyl::detail::requireEnv(owner->getEnv(), elements, mismatchText);
}

constexpr const char* AddMismatch = "extractables can only be added to ZylModel of the same env";
constexpr const char* RemoveMismatch =
    "extractables can only be ZylRemoved from ZylModel of the same env";

}  // namespace

ZylModel::ZylModel(const ZylEnv& env, const char* name) {
  _impl = new (zyl::detail::checked(env)) ZylModelI(env.getImpl(), name);
}

ZylExtractable ZylModel::add(const ZylExtractable& element) const {
  check(*this, "trying to add to an empty handle ZylModel", element,
        "trying to add an empty handle extractable", AddMismatch);
  return ZylExtractable(getImpl()->add(element.getImpl()));
}

const ZylExtractableArray& ZylModel::add(const ZylExtractableArray& elements) const {
  check(*this, "trying to add 0 extractor handle", elements, AddMismatch);
  getImpl()->add(elements);
  return elements;
}

void ZylModel::remove(const ZylExtractable& element) const {
  check(*this, "trying to remove 0 extractor handle", element,
        "trying to remove 0 extractable handle", RemoveMismatch);
  getImpl()->remove(element.getImpl());
}

void ZylModel::remove(const ZylExtractableArray& elements) const {
  check(*this, "trying to remove 0 extractor handle", elements, RemoveMismatch);
  getImpl()->remove(elements);
}

void ZylModel::expand(const ZylExtractable& element, const char* first, const char* second) const {
  check(*this, "Expanding to an empty ZylModel handle.", element,
        "trying to expand an empty extractable handle",
        "extractables can only be expanded to ZylModel of the same env");
  element.getImpl()->expandTo(getImpl(), first, second);
}

ZylModel ZylModel::getClone(const ZylEnv& env) const {
  return ZylModel(zyl::detail::cloneIn(env, *this, emptyHandle("Using empty Handle")));
}

ZylModel::Iterator::Iterator(const ZylModel& model)
    : _cells(model.checked("Using empty Handle")->getElements()) {}

bool ZylExtractable::isModel() const { return checked()->isType(ZylModelI::GetTypeInfo()); }
ZylModel ZylExtractable::asModel() const { return ZylModel(zyl::as<ZylModelI>(checked())); }
