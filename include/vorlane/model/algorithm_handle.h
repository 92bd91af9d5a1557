// The handle of algorithms. The hooks of every extractable class take it by value, so it stands
// below all of them; what an algorithm is, they need not know.

#ifndef ZYL_MODEL_ALGORITHM_HANDLE_H
#define ZYL_MODEL_ALGORITHM_HANDLE_H

#include <iosfwd>

#include "vorlane/model/extractable_array.h"

class ZylIntVar;
class ZylIntVarArray;
class ZylNumVarArray;

/// Handle of an algorithm: one pointer, owning nothing.
class ZYL_EXPORT ZylAlgorithm {
 public:
  using ImplClass = ZylAlgorithmI;

  enum Status : int {
    Unknown = 0,
    Feasible = 1,
    Optimal = 2,
    Infeasible = 3,
    Unbounded = 4,
    InfeasibleOrUnbounded = 5,
    Error = 6
  };

  /// Root of the failures of algorithms.
  class ZYL_EXPORT Exception : public ZylException {
   public:
    explicit Exception(const char* message = nullptr, long deleteMessage = 0);
  };
  /// An engine cannot extract an object; turned into `CannotExtractException` at the outermost
  /// entry.
  class ZYL_EXPORT ExtractFailure : public Exception {
   public:
    explicit ExtractFailure(const char* typeName = nullptr);
  };
  /// An engine cannot remove or modify an object.
  class ZYL_EXPORT RemoveFailure : public Exception {
   public:
    RemoveFailure();
  };

  /// A refusal with the objects it concerns.
  ///
  /// Their array lives in the algorithm's environment and is shared by copies of the exception;
  /// whoever catches the exception calls `end` once, or the environment's end takes it.
  class ZYL_EXPORT Refusal : public Exception {
   public:
    void end() override;
    ZylAlgorithm getAlgorithm() const;
    ZylAlgorithmI* getAlgorithmI() const noexcept { return _algorithm; }
    const ZylExtractableArray& getExtractables() const noexcept { return _extractables; }
    /// Hands the array over to the caller.
    ZylExtractableArray takeExtractables() noexcept;

   protected:
    Refusal(const char* message, ZylAlgorithmI* algorithm);
    Refusal(const char* message, ZylAlgorithmI* algorithm, const ZylExtractableArray& objects);
    ZylAlgorithmI* _algorithm;
    ZylExtractableArray _extractables;
  };
  /// The engine refused objects that it was given.
  class ZYL_EXPORT CannotExtractException : public Refusal {
   public:
    explicit CannotExtractException(ZylAlgorithmI* algorithm);
    CannotExtractException(ZylAlgorithmI* algorithm, const ZylExtractableI* first);
    void print(std::ostream& stream) const override;
  };
  /// The engine refused an edit.
  class ZYL_EXPORT CannotChangeException : public Refusal {
   public:
    explicit CannotChangeException(ZylAlgorithmI* algorithm);
    /// Takes the array over.
    CannotChangeException(ZylAlgorithmI* algorithm, const ZylExtractableArray& objects);
    void print(std::ostream& stream) const override;
  };
  /// The engine refused a removal.
  class ZYL_EXPORT CannotRemoveException : public Refusal {
   public:
    explicit CannotRemoveException(ZylAlgorithmI* algorithm);
    void print(std::ostream& stream) const override;
  };
  /// An engine was asked about an object that it was never given.
  class ZYL_EXPORT NotExtractedException : public Exception {
   public:
    NotExtractedException(const ZylAlgorithmI* algorithm, const ZylExtractableI* extractable);
    void print(std::ostream& stream) const override;
    const ZylAlgorithmI* getAlgorithmI() const noexcept { return _algorithm; }
    const ZylExtractableI* getExtractable() const noexcept { return _extractable; }

   private:
    const ZylAlgorithmI* _algorithm;
    const ZylExtractableI* _extractable;
  };
  /// A value of the objective was asked for, and there is no objective.
  class ZYL_EXPORT NoObjectiveException : public Exception {
   public:
    explicit NoObjectiveException(const ZylAlgorithmI* algorithm);
    void print(std::ostream& stream) const override;
    const ZylAlgorithmI* getAlgorithmI() const noexcept { return _algorithm; }

   private:
    const ZylAlgorithmI* _algorithm;
  };

  ZylAlgorithm() = default;
  explicit ZylAlgorithm(ZylAlgorithmI* impl) noexcept : _impl(impl) {}
  ZylAlgorithmI* getImpl() const noexcept { return _impl; }
  /// Deletes the algorithm; nothing on an empty handle.
  void end();

  ZylEnv getEnv() const;
  ZylModel getModel() const;
  /// Clears the algorithm and loads the model. Raises `CannotExtractException`, which names every
  /// object that the engine refuses and leaves the algorithm empty.
  void extract(const ZylModel& model) const;
  /// Forgets everything extracted; nothing on an empty handle.
  void clear() const;
  bool isExtracted(const ZylExtractable& extractable) const;
  /// Runs the engine with the timer on; true if it found a solution.
  bool solve() const;
  /// Also resets and restarts the timer.
  Status getStatus() const;
  double getObjValue() const;
  double getValue(const ZylNumVar& variable) const;
  double getValue(const ZylIntVar& variable) const;
  double getValue(const ZylObjective& objective) const;
  double getValue(const ZylNumExprArg& expr) const;
  /// Rounded to the nearest integer.
  long getIntValue(const ZylIntVar& variable) const;
  /// Clear the output array, then append one value for each variable.
  void getValues(const ZylNumVarArray& variables, const ZylNumArray& values) const;
  void getValues(const ZylIntVarArray& variables, const ZylNumArray& values) const;
  void getIntValues(const ZylIntVarArray& variables, const ZylIntArray& values) const;

  /// Processor seconds since the last reset.
  double getTime() const;
  void printTime() const;
  void resetTime() const;
  std::ostream& out() const;
  std::ostream& warning() const;
  std::ostream& error() const;
  void setOut(std::ostream& stream) const;
  void setWarning(std::ostream& stream) const;
  void setError(std::ostream& stream) const;

  ZYL_PROPERTY_OPERATIONS

 protected:
  // The implementation, or what an operation raises on an empty handle. Clients tell these apart,
  // so each operation keeps its own: `used` raises `ZylWrongUsage`, `called` the same text as
  // `ZylEmptyHandleException`, `owner` that class with the text of properties.
  ZylAlgorithmI* used() const;
  ZylAlgorithmI* called() const;
  ZylAlgorithmI* owner() const;
  ZylAlgorithmI* _impl = nullptr;
};

ZYL_EXPORT std::ostream& operator<<(std::ostream& stream, ZylAlgorithm::Status status);

#endif
