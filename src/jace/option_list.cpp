#include "vorlane/jace/option_list.h"

#include <cstring>
#include <string>

namespace jace {
namespace {

char* newCopy(const std::string& text) {
  char* copy = new char[text.size() + 1];
  std::memcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

}  // namespace

void OptionList::push_back(const Option& option) {
  _options.push_back(counted_ptr<Option>(option.clone()));
}

JavaVMOption* OptionList::createJniOptions() const {
  JavaVMOption* result = new JavaVMOption[_options.size()]();
  try {
    JavaVMOption* next = result;
    for (const counted_ptr<Option>& option : _options) {
      next->optionString = newCopy(option->stringValue());
      next->extraInfo = option->extraInfo();
      ++next;
    }
  } catch (...) {
    destroyJniOptions(result);
    throw;
  }
  return result;
}

void OptionList::destroyJniOptions(JavaVMOption* options) const {
  if (options == nullptr) return;
  for (std::size_t i = 0; i < _options.size(); ++i) delete[] options[i].optionString;
  delete[] options;
}

}  // namespace jace
