// Operations that a class of collections refuses.

#ifndef ZYL_SRC_COLLECTION_NOT_IMPLEMENTED_H
#define ZYL_SRC_COLLECTION_NOT_IMPLEMENTED_H

// A const operation of one parameter, whose type the text gives under its name for clients.
#define ZYL_NOT_IMPLEMENTED(Result, Class, operation, Parameter, parameterName)               \
  Result Class::operation(Parameter) const {                                                  \
    throw ZylNotImplemented(#Class "::" #operation "(" parameterName ") is not implemented"); \
  }

#endif
