// The failures of algorithms, and the texts in which they name what was refused.

#include <ostream>

#include "vorlane/algorithm/algorithm.h"

namespace {

// An address as text, the same form for every stream state.
const void* address(const ZylAlgorithmI* algorithm) { return algorithm; }

long idAt(const ZylExtractableArray& objects, long i) {
  if (i < 0 || i >= objects.getSize() || objects.getI(i) == nullptr) return 0;
  return objects.getI(i)->getId();
}

// The ids behind " extractable" or " extractables": all but the last `tail` each with a comma, then
// the two given, joined by "and".
void printList(std::ostream& stream, const ZylExtractableArray& objects, long commas, long last) {
  const long n = objects.getImpl() != nullptr ? objects.getSize() : 0;
  if (n == 0) return;
  if (n == 1) {
    stream << " extractable " << idAt(objects, 0);
    return;
  }
  stream << " extractables ";
  for (long i = 0; i < commas; ++i) stream << idAt(objects, i) << ", ";
  stream << idAt(objects, n - 2) << " and " << idAt(objects, last);
}

void printList(std::ostream& stream, const ZylExtractableArray& objects) {
  const long n = objects.getImpl() != nullptr ? objects.getSize() : 0;
  printList(stream, objects, n - 2, n - 1);
}

}  // namespace

ZylNoChangeDuringSearchException::ZylNoChangeDuringSearchException()
    : ZylException("This change is not allowed during a search.") {}

ZylAlgorithm::Exception::Exception(const char* message, long deleteMessage)
    : ZylException(message, deleteMessage) {}

ZylAlgorithm::ExtractFailure::ExtractFailure(const char* typeName) : Exception(typeName) {}
ZylAlgorithm::RemoveFailure::RemoveFailure() = default;

ZylAlgorithm::Refusal::Refusal(const char* message, ZylAlgorithmI* algorithm)
    : Exception(message), _algorithm(algorithm) {
  if (algorithm != nullptr) _extractables = ZylExtractableArray(algorithm->getEnv());
}

ZylAlgorithm::Refusal::Refusal(const char* message, ZylAlgorithmI* algorithm,
                               const ZylExtractableArray& objects)
    : Exception(message), _algorithm(algorithm), _extractables(objects) {}

void ZylAlgorithm::Refusal::end() { _extractables.end(); }

ZylAlgorithm ZylAlgorithm::Refusal::getAlgorithm() const { return ZylAlgorithm(_algorithm); }

ZylExtractableArray ZylAlgorithm::Refusal::takeExtractables() noexcept {
  ZylExtractableArray objects = _extractables;
  _extractables = ZylExtractableArray();
  return objects;
}

ZylAlgorithm::CannotExtractException::CannotExtractException(ZylAlgorithmI* algorithm)
    : Refusal("ZylAlgorithm cannot extract extractable", algorithm) {}

ZylAlgorithm::CannotExtractException::CannotExtractException(ZylAlgorithmI* algorithm,
                                                             const ZylExtractableI* first)
    : CannotExtractException(algorithm) {
  _extractables.addI(const_cast<ZylExtractableI*>(first));  // NOLINT: named, not edited
}

void ZylAlgorithm::CannotExtractException::print(std::ostream& stream) const {
  stream << "ZylAlgorithm cannot extract";
  printList(stream, _extractables);
}

ZylAlgorithm::CannotChangeException::CannotChangeException(ZylAlgorithmI* algorithm)
    : Refusal("ZylAlgorithm cannot change extractable", algorithm) {}

ZylAlgorithm::CannotChangeException::CannotChangeException(ZylAlgorithmI* algorithm,
                                                           const ZylExtractableArray& objects)
    : Refusal("ZylAlgorithm cannot change extractable", algorithm, objects) {}

void ZylAlgorithm::CannotChangeException::print(std::ostream& stream) const {
  stream << "ZylAlgorithm " << address(_algorithm) << " cannot change";
  printList(stream, _extractables);
}

ZylAlgorithm::CannotRemoveException::CannotRemoveException(ZylAlgorithmI* algorithm)
    : Refusal("ZylAlgorithm cannot remove extractable", algorithm) {}

// Clients read this form: the last but one twice, then one past the end, which prints as 0.
void ZylAlgorithm::CannotRemoveException::print(std::ostream& stream) const {
  stream << "ZylAlgorithm " << address(_algorithm) << " cannot remove";
  const long n = _extractables.getImpl() != nullptr ? _extractables.getSize() : 0;
  printList(stream, _extractables, n - 1, n);
}

ZylAlgorithm::NotExtractedException::NotExtractedException(const ZylAlgorithmI* algorithm,
                                                           const ZylExtractableI* extractable)
    : Exception("The referenced ZylExtractable has not been extracted by the ZylAlgorithm"),
      _algorithm(algorithm), _extractable(extractable) {}

void ZylAlgorithm::NotExtractedException::print(std::ostream& stream) const {
  stream << "ZylExtractable " << _extractable->getId() << " " << _extractable->getRttiTypeName()
         << " has not been extracted by ZylAlgorithm " << address(_algorithm);
}

ZylAlgorithm::NoObjectiveException::NoObjectiveException(const ZylAlgorithmI* algorithm)
    : Exception("No Objective has been extracted by the ZylAlgorithm"), _algorithm(algorithm) {}

void ZylAlgorithm::NoObjectiveException::print(std::ostream& stream) const {
  stream << " No Objective has been extracted by ZylAlgorithm " << address(_algorithm);
}

std::ostream& operator<<(std::ostream& stream, ZylAlgorithm::Status status) {
  switch (status) {
    case ZylAlgorithm::Unknown: return stream << "Unknown";
    case ZylAlgorithm::Feasible: return stream << "Feasible";
    case ZylAlgorithm::Optimal: return stream << "Optimal";
    case ZylAlgorithm::Infeasible: return stream << "Infeasible";
    case ZylAlgorithm::Unbounded: return stream << "Unbounded";
    case ZylAlgorithm::InfeasibleOrUnbounded: return stream << "Infeasible or Unbounded";
    case ZylAlgorithm::Error: break;
  }
  return stream << "Error";
}
