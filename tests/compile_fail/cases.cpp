// What must not compile, each beside the nearest thing that does.
//
// A line of CASE, a name and a pattern begins a case: with the macro of that name the compiler must
// refuse this file, with an error that matches the pattern. Without any macro the file must
// compile, so that a wrong include path or a change of names cannot pass for a refusal.

#include "vorlane/engine.h"
#include "vorlane/vorlane.h"

namespace {

class Plain : public ZylExtractableI {
  using ZylExtractableI::ZylExtractableI;
// CASE class_without_type_declaration: abstract
// Without its macros a class has no identity, so an engine would take it for its base.
#ifndef class_without_type_declaration
  ZYL_EXTRACTABLE(Plain, ZylExtractableI)
#endif
  void visitSubExtractables(ZylExtractableVisitor*) override {}
};

[[maybe_unused]] ZylExtractableI* makePlain(ZylEnvI* env) { return new (env) Plain(env, nullptr); }

// CASE type_declared_with_wrong_base: is not a base of
#ifdef type_declared_with_wrong_base
#define BASE_OF_PLAIN ZylModelI
#else
#define BASE_OF_PLAIN ZylExtractableI
#endif
ZYL_EXTRACTABLE_DEF(Plain, BASE_OF_PLAIN)

[[maybe_unused]] void cases(ZylEnv env, ZylNumVar x, ZylNumVar y, ZylIntVar i, ZylIntVar j,
                            ZylModel model, ZylNumArray nums, ZylIntArray ints,
                            ZylIntVarArray intVars, ZylBoolVarArray boolVars) {
// CASE int_var_from_num_var: ZylNumVar.* to .*ZylIntVar
// It raises for a float variable, so it must be seen.
#ifdef int_var_from_num_var
  ZylIntVar narrowed = x;
#else
  ZylIntVar narrowed(x);
#endif

// CASE bool_var_from_int_var: ZylIntVar.* to .*ZylBoolVar
#ifdef bool_var_from_int_var
  ZylBoolVar boolean = i;
#else
  ZylBoolVar boolean(i);
#endif

// CASE bool_vars_from_int_vars: no match for 'operator='|no viable overloaded '='
#ifdef bool_vars_from_int_vars
  boolVars = intVars;
#else
  intVars = boolVars;
#endif

// CASE nums_from_ints: no match for 'operator='|no viable overloaded '='
// Sharing the pages would read integers as numbers.
#ifdef nums_from_ints
  nums = ints;
#else
  nums = ints.toNumArray();
#endif

// CASE fractional_index: operator\[\]
#ifdef fractional_index
  nums[0.5] = 1.0;
#else
  nums[0] = 1.0;
#endif

// CASE text_among_numbers: ZylNumArray
#ifdef text_among_numbers
  nums = ZylNumArray(env, 2, 1.0, "2");
#else
  nums = ZylNumArray(env, 2, 1.0, 2);
#endif

// CASE numbers_as_objects: ZylExtractableArray
#ifdef numbers_as_objects
  ZylExtractableArray objects(env, 2, 1.0, 2.0);
#else
  ZylExtractableArray objects(env, 2, x, i);
#endif

// CASE model_from_number: ZylModel
#ifdef model_from_number
  model = ZylModel(7);
#else
  model = ZylModel(env);
#endif

// CASE model_from_environment_unasked: no match for 'operator='|no viable overloaded '='
// An environment given for a model would make a model that nobody holds.
#ifdef model_from_environment_unasked
  model = env;
#else
  model = ZylModel(env, "model");
#endif

// CASE sum_of_models: no match for 'operator\+'|invalid operands
#ifdef sum_of_models
  model + model;
#else
  model.add(x + y <= 1);
#endif

  // CASE sum_with_scoped_constant: no match for 'operator\+'|invalid operands
  // An unscoped constant is an integer; a scoped one says that it is none.
  enum Unscoped { One };
  enum class Scoped { One };
#ifdef sum_with_scoped_constant
  x + Scoped::One;
#else
  x + One;
#endif

// CASE modulo_of_num_vars: no match for 'operator%'|invalid operands
#ifdef modulo_of_num_vars
  x % y;
#else
  i % j;
#endif

// CASE constraint_as_condition: bool
// A comparison of variables states a constraint; it does not compare.
#ifdef constraint_as_condition
  if (x <= y) return;
#else
  if (ZylConstraint(x <= y).getImpl() != nullptr) return;
#endif

// CASE new_without_environment: operator new
// The heap would own what the pools are to free.
#ifdef new_without_environment
  new ZylModelI(env.getImpl());
#else
  new (env.getImpl()) ZylModelI(env.getImpl());
#endif

// CASE copied_environment: deleted
#ifdef copied_environment
  ZylEnvI copy(*env.getImpl());
#else
  ZylEnv copy(env);
#endif

// CASE copied_implementation: deleted
#ifdef copied_implementation
  new (env.getImpl()) ZylModelI(*model.getImpl());
#else
  model.getImpl()->makeClone(env.getImpl());
#endif

// CASE protected_constructor: protected
// Each engine raises one of the three kinds of refusal.
#ifdef protected_constructor
  throw ZylAlgorithm::Refusal("refused", nullptr);
#else
  throw ZylAlgorithm::CannotRemoveException(nullptr);
#endif
}

[[maybe_unused]] const ZylModelI* cast(const ZylExtractableI* object, const ZylArrayI* stranger) {
// CASE cast_to_unrelated_class: unrelated classes
#ifdef cast_to_unrelated_class
  return zyl::as<ZylModelI>(stranger);
#else
  static_cast<void>(stranger);
  return zyl::as<ZylModelI>(object);
#endif
}

}  // namespace
