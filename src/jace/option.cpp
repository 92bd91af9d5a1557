#include "vorlane/jace/option.h"

#include <utility>

namespace jace {

Option::~Option() = default;

SystemProperty::SystemProperty(std::string name, std::string value)
    : _name(std::move(name)), _value(std::move(value)) {}

std::string SystemProperty::stringValue() { return "-D" + _name + "=" + _value; }

void* SystemProperty::extraInfo() { return nullptr; }

Option* SystemProperty::clone() const { return new SystemProperty(_name, _value); }

std::string SystemProperty::name() { return _name; }

std::string SystemProperty::value() { return _value; }

ClassPath::ClassPath(const std::string& path) : SystemProperty("java.class.path", path) {}

CustomOption::CustomOption(std::string value) : _value(std::move(value)) {}

std::string CustomOption::stringValue() { return _value; }

void* CustomOption::extraInfo() { return nullptr; }

Option* CustomOption::clone() const { return new CustomOption(_value); }

Verbose::Verbose(const std::string& option) : _options{option} {}

Verbose::Verbose(const std::string& first, const std::string& second) : _options{first, second} {}

Verbose::Verbose(const std::string& first, const std::string& second, const std::string& third)
    : _options{first, second, third} {}

std::string Verbose::stringValue() {
  std::string text = "-verbose:";
  const char* separator = "";
  for (const std::string& option : _options) {
    text += separator + option;
    separator = ",";
  }
  return text;
}

void* Verbose::extraInfo() { return nullptr; }

Option* Verbose::clone() const { return new Verbose(*this); }

VfprintfHook::VfprintfHook(Function function) : _function(function) {}

std::string VfprintfHook::stringValue() { return "vfprintf"; }

void* VfprintfHook::extraInfo() { return reinterpret_cast<void*>(_function); }

Option* VfprintfHook::clone() const { return new VfprintfHook(_function); }

ExitHook::ExitHook(Function function) : _function(function) {}

std::string ExitHook::stringValue() { return "exit"; }

void* ExitHook::extraInfo() { return reinterpret_cast<void*>(_function); }

Option* ExitHook::clone() const { return new ExitHook(_function); }

AbortHook::AbortHook(Function function) : _function(function) {}

std::string AbortHook::stringValue() { return "abort"; }

void* AbortHook::extraInfo() { return reinterpret_cast<void*>(_function); }

Option* AbortHook::clone() const { return new AbortHook(_function); }

}  // namespace jace
