// The call of a label callback, and what it leaves behind.

#include "vorlane/algorithm/label_callback.h"

ZYL_TYPE_DEF(ZylLabelCallbackI, ZylDestroyableI)

const char* const ZylLabelCallbackI::CALLBACK_PROPERTY_NAME = "__ForAll_Callback";
const char* const ZylLabelCallbackI::LABEL_PROPERTY_NAME = "__KVL_label";

void ZylLabelCallbackI::initializeConstraint(ZylConstraintI* constraint) noexcept {
  _constraint = constraint;
  _label = nullptr;
}

void ZylLabelCallbackI::callmain(const char* label) {
  if (_state != 0) ZylRaiseWrongUsage("ZylLabelCallbackI::callmain: the callback is running");
  struct Running {
    ZylLabelCallbackI* callback;
    ~Running() {
      callback->_label = nullptr;
      callback->_state = 0;
    }
  } running{this};
  _label = label;
  _state = 1;
  main(label);
}
