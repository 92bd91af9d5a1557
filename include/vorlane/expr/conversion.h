// Conversions: engines are to treat variables as another type.

#ifndef ZYL_EXPR_CONVERSION_H
#define ZYL_EXPR_CONVERSION_H

#include "vorlane/expr/var_array.h"
#include "vorlane/expr/variable_change.h"
#include "vorlane/model/record.h"

/// Tells an engine to treat the variables as another type; they keep their own domains.
class ZYL_EXPORT ZylConversionI final : public zyl::Record<ZylConversionI, ZylExtractableI> {
  ZYL_RECORD(ZylConversionI, ZylExtractableI)
 public:
  /// Takes the array over.
  ZylConversionI(ZylEnvI* env, const ZylNumVarArray& variables, ZylNumVar::Type type,
                 const char* name = nullptr)
      : Record(env, name), _variables(variables), _type(type) {}
  /// Variables that are removed drop out.
  void atRemove(ZylExtractableI* removed, void* extra) override;

  /// Takes every occurrence of the variable out, each with a `ZylConversionRemoveVar`.
  void removeVar(const ZylNumVar& variable);
  const ZylNumVarArray& getVars() const noexcept { return _variables; }
  ZylNumVar::Type getType() const noexcept { return _type; }

 private:
  auto fields() { return zyl::fields("vars", _variables, "type", _type); }
  zyl::Owned<ZylNumVarArray> _variables;
  ZylNumVar::Type _type;
};

ZYL_CHANGE_FIELD(Conversion, ZylConversionI*, ZylConversionI*, getConversionI)

/// A variable left a conversion.
class ZYL_EXPORT ZylConversionRemoveVar final
    : public zyl::LeftFrom<zyl::change::Var, zyl::change::Conversion> {
  ZYL_CHANGE(ZylConversionRemoveVar, ZylChange)
 public:
  using LeftFrom::LeftFrom;
};

/// Handle of a conversion. Raises `ZylEmptyHandleException` for an empty argument or
/// element; arrays are copied.
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
