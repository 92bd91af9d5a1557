// The tables of shared domains: one domain for all variables of equal plain bounds.

#ifndef ZYL_EXPR_DOMAIN_TABLE_H
#define ZYL_EXPR_DOMAIN_TABLE_H

#include <utility>

#include "vorlane/collection/range.h"
#include "vorlane/env/hash_table.h"
#include "vorlane/expr/domain.h"

ZYL_EXPORT long ZylIntDomainHashFunction(ZylIntRangeI* range, long n);
ZYL_EXPORT long ZylIntDomainCompFunction(ZylIntRangeI* a, ZylIntRangeI* b);
ZYL_EXPORT long ZylNumDomainHashFunction(ZylNumRangeI* range, long n);
/// A NaN bound equals nothing.
ZYL_EXPORT long ZylNumDomainCompFunction(ZylNumRangeI* a, ZylNumRangeI* b);

/// Maps ranges to domains; owns both.
template <class K>
class ZylSharedDomainHash : public ZylEnvHashTable<K, ZylVarDomainI*> {
 public:
  using Table = ZylEnvHashTable<K, ZylVarDomainI*>;
  using Bound = decltype(std::declval<K>()->getLB());
  using Table::Table;
  ~ZylSharedDomainHash() override {
    ZylEnvI* env = this->getEnv();
    this->forEach([env](K range, ZylVarDomainI* domain) {
      domain->suicide(env, domain);
      delete range;
    });
  }

  /// The last answer, which variables that are stated in a row ask for again and again; null for
  /// other bounds.
  ZylVarDomainI* getRecent(Bound lower, Bound upper) const noexcept {
    return lower == _recentLower && upper == _recentUpper ? _recent : nullptr;
  }
  ZylVarDomainI* setRecent(Bound lower, Bound upper, ZylVarDomainI* domain) noexcept {
    _recentLower = lower;
    _recentUpper = upper;
    return _recent = domain;
  }

 private:
  Bound _recentLower = 0;
  Bound _recentUpper = 0;
  ZylVarDomainI* _recent = nullptr;
};

/// The domains of an environment with integer bounds.
class ZYL_EXPORT ZylIntSharedDomainHash final : public ZylSharedDomainHash<ZylIntRangeI*> {
 public:
  ZylIntSharedDomainHash(ZylEnvI* env, long buckets)
      : ZylSharedDomainHash<ZylIntRangeI*>(env->getGenAlloc(), buckets, &ZylIntDomainHashFunction,
                                           &ZylIntDomainCompFunction) {}
};

/// The domains of an environment with numeric bounds.
class ZYL_EXPORT ZylNumSharedDomainHash final : public ZylSharedDomainHash<ZylNumRangeI*> {
 public:
  ZylNumSharedDomainHash(ZylEnvI* env, long buckets)
      : ZylSharedDomainHash<ZylNumRangeI*>(env->getGenAlloc(), buckets, &ZylNumDomainHashFunction,
                                           &ZylNumDomainCompFunction) {}
};

#endif
