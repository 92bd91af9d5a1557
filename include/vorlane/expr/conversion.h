// Conversions: engines are to treat variables as another type.

#ifndef ZYL_EXPR_CONVERSION_H
#define ZYL_EXPR_CONVERSION_H

#include "vorlane/expr/var_array.h"
#include "vorlane/expr/variable_change.h"

/// Tells an engine to treat the variables as another type; they keep their own domains.
class ZYL_EXPORT ZylConversionI final : public ZylExtractableI {
  ZYL_TYPE(ZylConversionI, ZylExtractableI)
  ZYL_CP_HOOKS(ZylConversionI)
 public:
  /// Takes the array over.
  ZylConversionI(ZylEnvI* env, const ZylNumVarArray& variables, ZylNumVar::Type type,
                 const char* name = nullptr);
  ~ZylConversionI() override;

  ZylExtractableI* makeClone(ZylEnvI* env) const override;
  void atRemove(ZylExtractableI* removed, void* extra) override;
  void visitSubExtractables(ZylExtractableVisitor* visitor) override;
  void display(std::ostream& stream) const override;

  /// Takes every occurrence of the variable out, each with a `ZylConversionRemoveVar`.
  void removeVar(const ZylNumVar& variable);
  const ZylNumVarArray& getVars() const noexcept { return _variables; }
  ZylNumVar::Type getType() const noexcept { return _type; }

 private:
  ZylNumVarArray _variables;
  ZylNumVar::Type _type;
};

/// Handle of a conversion. Raises `ZylEmptyHandleException` for an empty argument; arrays are
/// copied.
class ZYL_EXPORT ZylConversion : public ZylExtractable {
  ZYL_HANDLE(ZylConversion, ZylExtractable, ZylConversionI)
 public:
  ZylConversion(const ZylEnv& env, const ZylNumVar& variable, ZylNumVar::Type type,
                const char* name = nullptr);
  ZylConversion(const ZylEnv& env, const ZylNumVarArray& variables, ZylNumVar::Type type,
                const char* name = nullptr);
  ZylConversion(const ZylEnv& env, const ZylIntVarArray& variables, ZylNumVar::Type type,
                const char* name = nullptr);
  ZylNumVar::Type getType() const { return checked("Using empty Handle")->getType(); }
};

#endif
