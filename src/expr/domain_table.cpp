// Looks up the one domain of given bounds, or makes it.

#include "vorlane/expr/domain_table.h"

#include <cstdint>

namespace {

bool isExtreme(long bound) { return bound == ZylIntMin || bound == ZylIntMax; }
bool isInfinite(double bound) { return bound < -ZylNumMax || bound > ZylNumMax; }

long bucketOf(std::uint64_t hash, long n) {
  return static_cast<long>(hash % static_cast<std::uint64_t>(n));
}

// Bounds without a limit share a stand-in, so that they do not all meet in one bucket.
long hashOf(long lower, long upper, long n) {
  const auto p =
      static_cast<std::uint64_t>(ZylIntDataTableHashFunction(isExtreme(lower) ? 13 : lower, n));
  const auto q =
      static_cast<std::uint64_t>(ZylIntDataTableHashFunction(isExtreme(upper) ? 113 : upper, n));
  return bucketOf((p * 17) ^ q, n);
}

long hashOf(double lower, double upper, long n) {
  const auto p =
      static_cast<std::uint64_t>(ZylNumDataTableHashFunction(isInfinite(lower) ? -14.0 : lower, n));
  const auto q =
      static_cast<std::uint64_t>(ZylNumDataTableHashFunction(isInfinite(upper) ? 27.0 : upper, n));
  return bucketOf(p + q, n);
}

// Looks the bounds up without making a range for them.
template <class Table, class Bound>
ZylVarDomainI* known(const Table* table, Bound lower, Bound upper) {
  const auto* entry = table->getChain(hashOf(lower, upper, table->getBucketCount()));
  for (; entry != nullptr; entry = entry->next) {
    if (entry->key->getUB() == upper && entry->key->getLB() == lower) return entry->value;
  }
  return nullptr;
}

// Enters a domain under a key; both are given back if that fails.
template <class Table, class Range>
ZylVarDomainI* enter(ZylEnvI* env, Table* table, Range* key, ZylVarDomainI* domain) {
  try {
    table->add(key, domain);
  } catch (...) {
    domain->suicide(env, domain);
    throw;
  }
  return domain;
}

bool isBoolean(long lower, long upper) { return lower == 0 && upper == 1; }

ZylVarDomainI* makeShared(ZylEnvI* env, long lower, long upper) {
  if (isBoolean(lower, upper)) return new (env) ZylBoolSharedVarDomainI(lower, upper);
  return new (env) ZylIntSharedVarDomainI(lower, upper);
}

ZylVarDomainI* makeShared(ZylEnvI* env, double lower, double upper) {
  return new (env) ZylNumSharedVarDomainI(lower, upper);
}

template <class Range, class Table, class Bound>
ZylVarDomainI* internShared(ZylEnvI* env, Table* table, Bound lower, Bound upper) {
  if (ZylVarDomainI* domain = table->getRecent(lower, upper)) return domain;
  if (ZylVarDomainI* domain = known(table, lower, upper)) {
    return table->setRecent(lower, upper, domain);
  }
  auto* key = new (env) Range(env, lower, upper);
  try {
    return enter(env, table, key, makeShared(env, lower, upper));
  } catch (...) {
    delete key;
    throw;
  }
}

// While a local environment is installed nothing is shared.
ZylVarDomainI* makePrivate(ZylEnvI* env, long lower, long upper) {
  if (isBoolean(lower, upper)) return new (env) ZylBoolVarDomainI(lower, upper);
  return new (env) ZylIntVarDomainI(lower, upper, 0);
}

bool isDefault(double lower, double upper) { return lower == 0.0 && upper > ZylNumMax; }

}  // namespace

long ZylIntDomainHashFunction(ZylIntRangeI* range, long n) {
  return hashOf(range->getLB(), range->getUB(), n);
}

long ZylIntDomainCompFunction(ZylIntRangeI* a, ZylIntRangeI* b) {
  return a->getUB() == b->getUB() && a->getLB() == b->getLB() ? 1 : 0;
}

long ZylNumDomainHashFunction(ZylNumRangeI* range, long n) {
  return hashOf(range->getLB(), range->getUB(), n);
}

long ZylNumDomainCompFunction(ZylNumRangeI* a, ZylNumRangeI* b) {
  return a->getUB() == b->getUB() && a->getLB() == b->getLB() ? 1 : 0;
}

ZylVarDomainI* ZylEnvI::getOrMakeSharedDomain(long lower, long upper) {
  if (_localEnv != nullptr) return makePrivate(this, lower, upper);
  return internShared<ZylIntRangeI>(this, _intSharedDomains, lower, upper);
}

// The key is a range of the table's own, so the caller's may die.
ZylVarDomainI* ZylEnvI::getOrMakeSharedDomain(ZylIntRangeI* range) {
  return getOrMakeSharedDomain(range->getLB(), range->getUB());
}

ZylVarDomainI* ZylEnvI::getOrMakeSharedDomain(double lower, double upper) {
  if (isDefault(lower, upper)) return nullptr;
  if (_localEnv != nullptr) return new (this) ZylNumVarDomainI(lower, upper);
  return internShared<ZylNumRangeI>(this, _numSharedDomains, lower, upper);
}

// Unlike the form with bounds, a local environment comes first here.
ZylVarDomainI* ZylEnvI::getOrMakeSharedDomain(ZylNumRangeI* range) {
  if (_localEnv != nullptr) return new (this) ZylNumVarDomainI(range->getLB(), range->getUB());
  return getOrMakeSharedDomain(range->getLB(), range->getUB());
}
