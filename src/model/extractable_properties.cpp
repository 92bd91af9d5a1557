#include "env/property_check.h"
#include "vorlane/model/extractable.h"

using zyl::detail::checkedProperty;
using zyl::detail::checkedSet;

namespace {
const char* checkedName(const char* name) {
  return zyl::detail::checkedName(name, "Using empty Handle");
}
}  // namespace

const char* ZylExtractable::getName() const { return checked()->getName(); }
void ZylExtractable::setName(const char* name) const { checked()->setName(name); }
void* ZylExtractable::getObject() const { return checked()->getObject(); }
void ZylExtractable::setObject(void* object) const { checked()->setObject(object); }
ZylNamedPropertySet ZylExtractable::getProperties() const {
  return ZylNamedPropertySet(checked()->getProperties());
}
void ZylExtractable::setProperties(ZylNamedPropertySet properties) const {
  checked()->setProperties(checkedSet(properties));
}
void ZylExtractable::removeAllProperties() const { checked()->removeAllProperties(); }
void ZylExtractable::addProperty(ZylNamedProperty property) const {
  checked()->addProperty(checkedProperty(property));
}
void ZylExtractable::addClonedProperty(ZylNamedProperty property) const {
  checked()->addClonedProperty(checkedProperty(property));
}
void ZylExtractable::addProperties(ZylNamedPropertySet properties) const {
  checked()->addProperties(checkedSet(properties));
}
bool ZylExtractable::hasProperty(const char* name) const {
  return checked()->hasProperty(checkedName(name));
}
ZylNamedProperty ZylExtractable::getProperty(const char* name) const {
  return ZylNamedProperty(checked()->getProperty(checkedName(name)));
}
const char* ZylExtractable::getStringProperty(const char* name) const {
  return checked()->getStringProperty(checkedName(name));
}
void* ZylExtractable::getAnyProperty(const char* name) const {
  return checked()->getAnyProperty(checkedName(name));
}
double ZylExtractable::getNumProperty(const char* name) const {
  return checked()->getNumProperty(checkedName(name));
}
long ZylExtractable::getIntProperty(const char* name) const {
  return checked()->getIntProperty(checkedName(name));
}
void ZylExtractable::setStringProperty(const char* name, const char* value) const {
  checked()->setStringProperty(checkedName(name), value);
}
void ZylExtractable::setAnyProperty(const char* name, void* value) const {
  checked()->setAnyProperty(checkedName(name), value);
}
void ZylExtractable::setNumProperty(const char* name, double value) const {
  checked()->setNumProperty(checkedName(name), value);
}
void ZylExtractable::setIntProperty(const char* name, long value) const {
  checked()->setIntProperty(checkedName(name), value);
}
void ZylExtractable::removeProperty(const char* name) const {
  checked()->removeProperty(checkedName(name));
}
