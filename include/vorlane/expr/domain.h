// Domains: what a variable may take, as bounds and optional values.

#ifndef ZYL_EXPR_DOMAIN_H
#define ZYL_EXPR_DOMAIN_H

#include <iosfwd>

#include "vorlane/env/array.h"
#include "vorlane/expr/variable.h"

/// The domain of a variable.
///
/// No extractable: allocated from the environment, and given back by `suicide`. A shared domain is
/// interned, never changes, and lives as long as its environment; a private one belongs to its
/// variable.
class ZYL_EXPORT ZylVarDomainI {
 public:
  virtual ~ZylVarDomainI();
  ZylVarDomainI(const ZylVarDomainI&) = delete;
  ZylVarDomainI& operator=(const ZylVarDomainI&) = delete;

  static void* operator new(std::size_t size, ZylEnvI* env) { return env->alloc(size); }
  static void* operator new(std::size_t size, const ZylEnv& env) {
    return zyl::detail::ownerOf(env)->alloc(size);
  }
  // Storage goes back in `suicide`, which knows the environment.
  static void operator delete(void*) noexcept {}  // NOLINT(misc-new-delete-overloads)
  static void operator delete(void*, ZylEnvI*) noexcept {}
  static void operator delete(void*, const ZylEnv&) noexcept {}

  virtual double getLB() const = 0;
  virtual void setLB(double lower) = 0;
  virtual double getUB() const = 0;
  virtual void setUB(double upper) = 0;
  virtual zyl::VariableType getType() const = 0;
  /// Integer bounds; 0 in a float domain, whatever its bounds.
  virtual long getMin() const = 0;
  virtual long getMax() const = 0;
  virtual bool isEnumerated() const = 0;
  /// Whether the values are addresses of objects.
  virtual bool isAny() const = 0;
  /// The values; empty handles where there are none of that kind. Owned by the domain.
  virtual ZylNumArray getNumValues() const = 0;
  virtual ZylIntArray getIntValues() const = 0;
  /// Take the array over, ending the one before; the bounds become its minimum and maximum. No
  /// effect on a domain of another kind, which ends the array.
  virtual void setNumValues(ZylNumArray values) = 0;
  virtual void setIntValues(ZylIntArray values) = 0;
  /// Ends the values and gives `self`, this domain's storage, back to the environment.
  virtual void suicide(ZylEnvI* env, void* self) = 0;
  virtual void display(std::ostream& stream) const = 0;
  /// A private domain of the same contents in `env`.
  [[nodiscard]] virtual ZylVarDomainI* makeClone(ZylEnvI* env) const = 0;
  virtual bool isShared() const;
  virtual bool isIntDomain() const;
  virtual bool isNumDomain() const;
  virtual bool isBoolDomain() const;

 protected:
  ZylVarDomainI() = default;
};

/// A float domain.
class ZYL_EXPORT ZylNumVarDomainI : public ZylVarDomainI {
 public:
  ZylNumVarDomainI(double lower, double upper) : _lower(lower), _upper(upper) {}
  /// Takes the values over.
  explicit ZylNumVarDomainI(ZylNumArray values);

  double getLB() const override { return _lower; }
  /// Stores the bound, then raises `ZylNotSupportedOperation` if the domain has values.
  void setLB(double lower) override;
  double getUB() const override { return _upper; }
  void setUB(double upper) override;
  zyl::VariableType getType() const override { return zyl::Float; }
  long getMin() const override { return 0; }
  long getMax() const override { return 0; }
  bool isEnumerated() const override { return _values.getImpl() != nullptr; }
  bool isAny() const override { return false; }
  ZylNumArray getNumValues() const override { return _values; }
  ZylIntArray getIntValues() const override { return ZylIntArray(); }
  void setNumValues(ZylNumArray values) override;
  void setIntValues(ZylIntArray values) override;
  void suicide(ZylEnvI* env, void* self) override;
  void display(std::ostream& stream) const override;
  ZylVarDomainI* makeClone(ZylEnvI* env) const override;
  bool isNumDomain() const override { return true; }

 private:
  double _lower;
  double _upper;
  ZylNumArray _values;
};

/// An integer domain.
class ZYL_EXPORT ZylIntVarDomainI : public ZylVarDomainI {
 public:
  ZylIntVarDomainI(long lower, long upper, long any = 0)
      : _lower(lower), _upper(upper), _any(any) {}
  /// Takes the values over; with `any` they are addresses of objects.
  explicit ZylIntVarDomainI(ZylIntArray values, long any = 0);

  double getLB() const override { return static_cast<double>(_lower); }
  /// Rounds up, and keeps the values in step with the bound.
  void setLB(double lower) override;
  double getUB() const override { return static_cast<double>(_upper); }
  void setUB(double upper) override;
  zyl::VariableType getType() const override { return zyl::Int; }
  long getMin() const override { return _lower; }
  long getMax() const override { return _upper; }
  bool isEnumerated() const override { return _values.getImpl() != nullptr; }
  bool isAny() const override { return _any != 0; }
  ZylNumArray getNumValues() const override { return ZylNumArray(); }
  ZylIntArray getIntValues() const override { return _values; }
  void setNumValues(ZylNumArray values) override;
  void setIntValues(ZylIntArray values) override;
  void suicide(ZylEnvI* env, void* self) override;
  void display(std::ostream& stream) const override;
  ZylVarDomainI* makeClone(ZylEnvI* env) const override;
  bool isIntDomain() const override { return true; }

  /// Removes the values outside the new bounds, and appends every integer between the old bounds
  /// and wider new ones: the values are not sorted afterwards.
  void cleanArray(long newLower, long newUpper);
  /// Makes room for the values that such bounds add: setting them then needs no memory. Raises
  /// `ZylMemoryException`, which changes nothing.
  void reserveBounds(long newLower, long newUpper) const;

 private:
  long _lower;
  long _upper;
  ZylIntArray _values;
  long _any;
};

/// A domain of 0 and 1; other bounds are stored as they are. Never has values.
class ZYL_EXPORT ZylBoolVarDomainI : public ZylVarDomainI {
 public:
  ZylBoolVarDomainI(long lower, long upper) : _lower(lower), _upper(upper) {}

  double getLB() const override { return static_cast<double>(_lower); }
  /// Truncates toward zero.
  void setLB(double lower) override;
  double getUB() const override { return static_cast<double>(_upper); }
  void setUB(double upper) override;
  zyl::VariableType getType() const override { return zyl::Bool; }
  long getMin() const override { return _lower; }
  long getMax() const override { return _upper; }
  bool isEnumerated() const override { return false; }
  bool isAny() const override { return false; }
  ZylNumArray getNumValues() const override { return ZylNumArray(); }
  ZylIntArray getIntValues() const override { return ZylIntArray(); }
  void setNumValues(ZylNumArray values) override;
  void setIntValues(ZylIntArray values) override;
  void suicide(ZylEnvI* env, void* self) override;
  void display(std::ostream& stream) const override;
  ZylVarDomainI* makeClone(ZylEnvI* env) const override;
  bool isBoolDomain() const override { return true; }

 private:
  long _lower;
  long _upper;
};

/// The interned kinds.
class ZYL_EXPORT ZylNumSharedVarDomainI final : public ZylNumVarDomainI {
 public:
  using ZylNumVarDomainI::ZylNumVarDomainI;
  bool isShared() const override { return true; }
};

/// Interned, of an integer variable.
class ZYL_EXPORT ZylIntSharedVarDomainI final : public ZylIntVarDomainI {
 public:
  using ZylIntVarDomainI::ZylIntVarDomainI;
  bool isShared() const override { return true; }
};

/// Interned, of a boolean variable.
class ZYL_EXPORT ZylBoolSharedVarDomainI final : public ZylBoolVarDomainI {
 public:
  using ZylBoolVarDomainI::ZylBoolVarDomainI;
  bool isShared() const override { return true; }
};

#endif
