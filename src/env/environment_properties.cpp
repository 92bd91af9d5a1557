#include "env/property_check.h"
#include "vorlane/env/environment.h"

using zyl::detail::checkedProperty;
using zyl::detail::checkedSet;
using zyl::detail::Extended;

const char* ZylEnvI::getName() const { return Extended::getName(_extension); }
void* ZylEnvI::getObject() const { return Extended::getObject(_extension); }
ZylNamedPropertySetI* ZylEnvI::getProperties() const { return Extended::getProperties(_extension); }
void ZylEnvI::removeAllProperties() { setProperties(nullptr); }
void ZylEnvI::setName(const char* name) { Extended::setName(_alloc, &_extension, name); }
void ZylEnvI::setObject(void* object) { Extended::setObject(_alloc, &_extension, object); }
void ZylEnvI::setProperties(ZylNamedPropertySetI* properties) {
  Extended::setProperties(_alloc, &_extension, properties);
}
void ZylEnvI::addProperty(ZylNamedPropertyI* property) {
  Extended::addProperty(_alloc, &_extension, property);
}
void ZylEnvI::addClonedProperty(ZylNamedPropertyI* property) {
  Extended::addClonedProperty(_alloc, &_extension, property);
}
void ZylEnvI::addProperties(ZylNamedPropertySetI* properties) {
  Extended::addProperties(_alloc, &_extension, properties);
}
bool ZylEnvI::hasProperty(const char* name) const {
  return Extended::hasProperty(_extension, name);
}
ZylNamedPropertyI* ZylEnvI::getProperty(const char* name) const {
  return Extended::getProperty(_extension, name);
}
const char* ZylEnvI::getStringProperty(const char* name) const {
  return Extended::getStringProperty(_extension, name);
}
void* ZylEnvI::getAnyProperty(const char* name) const {
  return Extended::getAnyProperty(_extension, name);
}
double ZylEnvI::getNumProperty(const char* name) const {
  return Extended::getNumProperty(_extension, name);
}
long ZylEnvI::getIntProperty(const char* name) const {
  return Extended::getIntProperty(_extension, name);
}
void ZylEnvI::setStringProperty(const char* name, const char* value) {
  Extended::setStringProperty(_alloc, &_extension, name, value);
}
void ZylEnvI::setAnyProperty(const char* name, void* value) {
  Extended::setAnyProperty(_alloc, &_extension, name, value);
}
void ZylEnvI::setNumProperty(const char* name, double value) {
  Extended::setNumProperty(_alloc, &_extension, name, value);
}
void ZylEnvI::setIntProperty(const char* name, long value) {
  Extended::setIntProperty(_alloc, &_extension, name, value);
}
void ZylEnvI::removeProperty(const char* name) { Extended::removeProperty(_extension, name); }
void ZylEnvI::removeProperty(ZylNamedPropertyI* property) {
  Extended::removeProperty(_extension, property);
}

// --- handle
// ---------------------------------------------------------------------------------------

namespace {

ZylEnvI* owner(const ZylEnv& env) {
  if (env.getImpl() == nullptr) ZylRaiseEmptyHandle("ZylEnv: Using empty handle");
  return env.getImpl();
}

const char* checkedName(const char* name) {
  return zyl::detail::checkedName(name, "ZylEnv: Using empty string");
}

}  // namespace

const char* ZylEnv::getName() const { return owner(*this)->getName(); }
void ZylEnv::setName(const char* name) const { owner(*this)->setName(name); }
void* ZylEnv::getObject() const { return owner(*this)->getObject(); }
void ZylEnv::setObject(void* object) const { owner(*this)->setObject(object); }
ZylNamedPropertySet ZylEnv::getProperties() const {
  return ZylNamedPropertySet(owner(*this)->getProperties());
}
void ZylEnv::setProperties(ZylNamedPropertySet properties) const {
  owner(*this)->setProperties(checkedSet(properties));
}
void ZylEnv::removeAllProperties() const { owner(*this)->removeAllProperties(); }
void ZylEnv::addProperty(ZylNamedProperty property) const {
  owner(*this)->addProperty(checkedProperty(property));
}
void ZylEnv::addClonedProperty(ZylNamedProperty property) const {
  owner(*this)->addClonedProperty(checkedProperty(property));
}
void ZylEnv::addProperties(ZylNamedPropertySet properties) const {
  owner(*this)->addProperties(checkedSet(properties));
}
bool ZylEnv::hasProperty(const char* name) const {
  return owner(*this)->hasProperty(checkedName(name));
}
ZylNamedProperty ZylEnv::getProperty(const char* name) const {
  return ZylNamedProperty(owner(*this)->getProperty(checkedName(name)));
}
ZylNamedPropertyI* ZylEnv::getPropertyI(const char* name) const {
  return owner(*this)->getProperty(checkedName(name));
}
const char* ZylEnv::getStringProperty(const char* name) const {
  return owner(*this)->getStringProperty(checkedName(name));
}
void* ZylEnv::getAnyProperty(const char* name) const {
  return owner(*this)->getAnyProperty(checkedName(name));
}
double ZylEnv::getNumProperty(const char* name) const {
  return owner(*this)->getNumProperty(checkedName(name));
}
long ZylEnv::getIntProperty(const char* name) const {
  return owner(*this)->getIntProperty(checkedName(name));
}
void ZylEnv::setStringProperty(const char* name, const char* value) const {
  owner(*this)->setStringProperty(checkedName(name), value);
}
void ZylEnv::setAnyProperty(const char* name, void* value) const {
  owner(*this)->setAnyProperty(checkedName(name), value);
}
void ZylEnv::setNumProperty(const char* name, double value) const {
  owner(*this)->setNumProperty(checkedName(name), value);
}
void ZylEnv::setIntProperty(const char* name, long value) const {
  owner(*this)->setIntProperty(checkedName(name), value);
}
void ZylEnv::removeProperty(const char* name) const {
  owner(*this)->removeProperty(checkedName(name));
}
