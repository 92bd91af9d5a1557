// Numeric linear sums: combining, normal form, and edits of coefficients.

#include "vorlane/expr/lin_term.h"

#include <exception>
#include <utility>

#include "common/build.h"
#include "common/own_linear.h"
#include "expr/linear_node.h"
#include "vorlane/env/number.h"
#include "vorlane/expr/operators.h"
#include "vorlane/expr/var_array.h"
#include "vorlane/model/algorithm_handle.h"
#include "vorlane/model/visitor.h"

ZYL_EXTRACTABLE_DEF(ZylNumLinTermI, ZylNumExprI)

using zyl::detail::EnvLock;
using zyl::detail::ItemList;
using zyl::detail::TermList;
using zyl::detail::Unfinished;

ZylNumLinTermI::ZylNumLinTermI(ZylEnvI* env, double constant)
    : ZylNumExprI(env), _constant(constant) {}

ZylNumLinTermI::ZylNumLinTermI(const ZylNumLinExprTerm& term)
    : ZylNumLinTermI(term.getEnvI(), 0.0) {
  _terms.append(term.getImpl());
}

ZylNumLinTermI::ZylNumLinTermI(const ZylIntLinExprTerm& term)
    : ZylNumLinTermI(term.getEnvI(), 0.0) {
  _terms.append(term.getImpl());
}

ZylNumLinTermI::~ZylNumLinTermI() {
  _terms.clear(_env);
  _items.clear(_env);
}

ZylExtractableI* ZylNumLinTermI::makeClone(ZylEnvI* env) const {
  Unfinished clone(new (env) ZylNumLinTermI(env, _constant));
  clone->_items.appendClones(env, _items);
  clone->_terms.appendClones(env, _terms);
  return clone.finish();
}

void ZylNumLinTermI::atRemove(ZylExtractableI* removed, void*) {
  zyl::detail::leaveLinear<ZylNumLinTermRemoveVar>(this, removed);
}

void ZylNumLinTermI::visitSubExtractables(ZylExtractableVisitor* visitor) {
  zyl::detail::visitLinear(this, _terms, _items, visitor);
}

void ZylNumLinTermI::display(std::ostream& stream) const {
  zyl::detail::displayLinear(stream, *this, _terms, _items, _constant);
}

std::ostream& operator<<(std::ostream& stream, const zyl::detail::TermHandle& term) {
  // A sum for the display alone, its one term on the stack.
  struct Sum {
    ZylEnvI* env;
    ZylEnvI* getEnv() const { return env; }
    static long displayTerm(std::ostream& out, const ZylNumLinExprTermI* t) {
      return zyl::detail::displayLinearTerm(out, t);
    }
  };
  ZylNumLinExprTermI record{term.getVarI(), nullptr, term.getCoef()};
  zyl::detail::TermList terms;
  terms.append(&record);
  zyl::detail::displayLinear(stream, Sum{term.getEnvI()}, terms, {}, 0.0);
  return stream;
}

long ZylNumLinTermI::displayTerm(std::ostream& stream, const ZylNumLinExprTermI* term) const {
  return zyl::detail::displayLinearTerm(stream, term);
}

ZylNumExprI* ZylNumLinTermI::copy() {
  Unfinished result(new (_env) ZylNumLinTermI(_env, _constant));
  result->_items.appendCopies(_env, _items);
  result->_terms.appendCopies(_env, _terms);
  return result.finish();
}

ZylNumLinTermI* ZylNumLinTermI::toNumLinTermI() { return this; }

bool ZylNumLinTermI::isInteger() const {
  for (const ZylLinExprNonLinearItem* item = _items._head; item != nullptr; item = item->_next) {
    if (!item->_expr->isInteger()) return false;
  }
  for (const ZylNumLinExprTermI* term = _terms._head; term != nullptr; term = term->_next) {
    if (!term->_var->isInteger() || !ZylNumIsInteger(term->_coef)) return false;
  }
  return ZylNumIsInteger(_constant);
}

double ZylNumLinTermI::eval(const ZylAlgorithm algorithm) const {
  return zyl::detail::evalLinear(_terms, _items, algorithm) + _constant;
}

double ZylNumLinTermI::getNumConstant() const { return _constant; }

// --- combining -----------------------------------------------------------------------------------

namespace {
// The sum is what it should be: without memory for the marks, normalising waits for who asks next.
void normalizeIfPossible(ZylNumLinTermI* sum) {
  try {
    sum->normalize();
  } catch (const ZylMemoryException&) {
  }
}
}  // namespace

void ZylNumLinTermI::append(ZylNumLinTermI* other) {
  if (!other->_terms.isEmpty()) _normalized = 0;
  _constant += other->_constant;
  _terms.splice(&other->_terms);
  _items.splice(&other->_items);
  other->_constant = 0.0;
  other->end();
  normalizeIfPossible(this);
}

void ZylNumLinTermI::append(ZylNumExprI* expr) {
  _items.append(_env, expr);
  normalizeIfPossible(this);
}

void ZylNumLinTermI::prepend(ZylNumLinExprTermI* term) {
  _terms.prepend(term);
  normalizeIfPossible(this);
}

void ZylNumLinTermI::multiply(double factor) {
  ItemList items = zyl::detail::rebuilt(
      _env, _items, [factor](ZylNumExprI* expr) { return zyl::detail::scaleNum(expr, factor); });
  _items.forget(_env);
  _items = items;
  for (ZylNumLinExprTermI* term = _terms._head; term != nullptr; term = term->_next) {
    term->_coef *= factor;
  }
  _constant *= factor;
}

void ZylNumLinTermI::divide(double divisor) {
  ItemList items = zyl::detail::rebuilt(
      _env, _items, [divisor](ZylNumExprI* expr) { return zyl::detail::divideNum(expr, divisor); });
  _items.forget(_env);
  _items = items;
  for (ZylNumLinExprTermI* term = _terms._head; term != nullptr; term = term->_next) {
    term->_coef /= divisor;
  }
  _constant /= divisor;
}

// --- normal form ---------------------------------------------------------------------------------

namespace {

// Where a normalisation keeps the last term of each variable: in the variables themselves, ...
struct VariableMarks {
  static void set(ZylNumLinExprTermI* term) noexcept { term->_var->setMark(term); }
  static ZylNumLinExprTermI* get(const ZylNumVarI* variable) noexcept {
    return variable->getMark();
  }
  static void clear(const ZylNumVarI*) noexcept {}
  static void prefetch(const ZylNumVarI* variable) noexcept { variable->prefetchMark(); }
};

// ... or, where several threads normalise, in an array of its own, by id and all zero between uses.
class ArrayMarks {
 public:
  ArrayMarks(ZylEnvI* env, const TermList& terms)
      : _env(env), _marks(env->getMarkArray()), _terms(&terms) {}
  ~ArrayMarks() {
    for (const ZylNumLinExprTermI* term = _terms->_head; term != nullptr; term = term->_next) {
      clear(term->_var);
    }
    _env->releaseMarkArray(_marks);
  }
  ArrayMarks(const ArrayMarks&) = delete;
  ArrayMarks& operator=(const ArrayMarks&) = delete;

  void set(ZylNumLinExprTermI* term) const noexcept { _marks[term->_var->getId()] = term; }
  ZylNumLinExprTermI* get(const ZylNumVarI* variable) const noexcept {
    return static_cast<ZylNumLinExprTermI*>(_marks[variable->getId()]);
  }
  void clear(const ZylNumVarI* variable) const noexcept { _marks[variable->getId()] = nullptr; }
  static void prefetch(const ZylNumVarI* variable) noexcept { __builtin_prefetch(variable); }

 private:
  ZylEnvI* _env;
  void** _marks;
  const TermList* _terms;
};

// Sets the tail of a list from the last record known to stay, whatever leaves the walk.
struct TailAtEnd {
  TermList* _terms;
  ZylNumLinExprTermI* _last = nullptr;
  ~TailAtEnd() {
    auto* next = _last != nullptr ? _last->_next : _terms->_head;
    for (; next != nullptr; next = next->_next) _last = next;
    _terms->_tail = _last;
  }
};

/// Runs ahead of a walk and asks for what it will need: marks lie scattered, and whether a term is
/// the last one cannot be predicted, so without this each of them waits for memory in turn.
template <class Ask>
class Lookahead {
 public:
  Lookahead(ZylNumLinExprTermI* head, int distance, Ask ask) : _ahead(head), _ask(ask) {
    for (int i = 0; i < distance; ++i) step();
  }
  // What lies ahead is never unlinked before the walk comes to it.
  void step() {
    if (_ahead == nullptr) return;
    _ask(_ahead);
    _ahead = _ahead->_next;
  }

 private:
  ZylNumLinExprTermI* _ahead;
  Ask _ask;
};

constexpr int FarAhead = 24;
constexpr int NearAhead = 8;

// Pass one marks each variable with its last term. Pass two adds every other term to the marked
// one, which comes later; a zero is dropped when its own turn comes, when all has been added to it.
template <class Marks>
long mergeTerms(ZylEnvI* env, TermList* terms, const Marks& marks) {
  const auto askForMark = [&](const ZylNumLinExprTermI* term) { marks.prefetch(term->_var); };
  Lookahead markWalk(terms->_head, FarAhead, askForMark);
  for (ZylNumLinExprTermI* term = terms->_head; term != nullptr; term = term->_next) {
    markWalk.step();
    marks.set(term);
  }
  const auto askForLast = [&](const ZylNumLinExprTermI* term) {
    __builtin_prefetch(marks.get(term->_var), /*rw=*/1);
  };
  Lookahead far(terms->_head, FarAhead, askForMark);
  Lookahead near(terms->_head, NearAhead, askForLast);
  TailAtEnd tail{terms};
  long merged = 0;
  ZylNumLinExprTermI** link = &terms->_head;
  while (ZylNumLinExprTermI* term = *link) {
    far.step();
    near.step();
    ZylNumLinExprTermI* last = marks.get(term->_var);
    if (last == term) {
      if (term->_coef != 0.0) {
        tail._last = term;
        link = &term->_next;
        continue;
      }
      marks.clear(term->_var);
    } else {
      last->_coef += term->_coef;
      ++merged;
    }
    *link = term->_next;
    env->recycleTerm(term);
  }
  return merged;
}

}  // namespace

long ZylNumLinTermI::normalize() {
  if (_normalized != 0 || _env->isNormalizationInhibited()) return 0;
  const long merged = normalizeTerms();
  _normalized = 1;
  return merged;
}

long ZylNumLinTermI::normalizeTerms() {
  if (_terms._head == nullptr) return 0;
  if (_env->isMTSafeNormalization()) {
    const ArrayMarks marks(_env, _terms);
    return mergeTerms(_env, &_terms, marks);
  }
  const EnvLock lock(_env->getMutex());
  return mergeTerms(_env, &_terms, VariableMarks());
}

bool ZylNumLinTermI::containsAggregate() {
  // Terms are searched only where an aggregate variable, or one over an aggregate, can be among
  // them.
  if (_items.isEmpty() && !_env->mayHoldAggregates()) return false;
  ZylFindAggregate visitor;
  visitSubExtractables(&visitor);
  return visitor.getResult() != 0;
}

// --- editing -------------------------------------------------------------------------------------

namespace {

void checkVariable(const ZylEnvI* env, const ZylExtractableI* variable) {
  if (ZYL_UNLIKELY(variable == nullptr)) ZylRaiseEmptyHandle();
  if (ZYL_UNLIKELY(variable->getEnv() != env)) throw ZylEnvironmentMismatch();
}

}  // namespace

double ZylNumLinTermI::setCoef(const ZylNumVar& variable, double coefficient) {
  ZylNumVarI* const var = variable.getImpl();
  if (_normalized == 0) normalize();
  if (hasNonLinearPart()) {
    ZylRaiseWrongUsage("You can not change the coefficient of a nonlinear expression");
  }
  ZylNumLinExprTermI* before = nullptr;
  ZylNumLinExprTermI* term = _terms._head;
  while (term != nullptr && term->_var != var) {
    before = term;
    term = term->_next;
  }
  if (term == nullptr) {
    // A variable that the sum knows needs no test, which would cost a look at scattered memory.
    checkVariable(_env, var);
    if (coefficient != 0.0) _terms.append(_env->newTerm(var, coefficient));
    _normalized = 1;
    if (coefficient != 0.0) notify(ZylNumLinTermAddVar(this, var));
    return 0.0;
  }
  const double old = term->_coef;
  if (coefficient != 0.0) {
    term->_coef = coefficient;
  } else {
    (before != nullptr ? before->_next : _terms._head) = term->_next;
    if (_terms._tail == term) _terms._tail = before;
    _env->recycleTerm(term);
  }
  if (old != 0.0) notify(ZylNumLinTermRemoveVar(this, var));
  return old;
}

void ZylNumLinTermI::setCoef(const ZylNumVarArray& variables, const ZylNumArray& coefs,
                             const ZylNumArray& oldCoefs) {
  const long size = variables.getSize();
  if (coefs.getSize() != size || (oldCoefs.getImpl() != nullptr && oldCoefs.getSize() < size)) {
    throw ZylArrayError("ZylNumLinTermI::setCoef: arrays have different size");
  }
  for (long i = 0; i < size; ++i) checkVariable(_env, variables.getI(i));
  normalize();
  if (hasNonLinearPart()) {
    ZylRaiseWrongUsage("You can not use change the coefficient of a nonlinear expression");
  }
  // What is sent follows from old and new, so the old are needed whether the caller wants them or
  // not.
  if (oldCoefs.getImpl() == nullptr) {
    const zyl::detail::ScopedNumArray scratch(_env, size);
    setCoef(variables, coefs, scratch);
    return;
  }
  writeCoefs(variables, coefs, oldCoefs);
  sendCoefChanges(variables, coefs, oldCoefs);
}

void ZylNumLinTermI::writeCoefs(const ZylNumVarArray& variables, const ZylNumArray& coefs,
                                const ZylNumArray& oldCoefs) {
  const EnvLock lock(_env->getMutex());
  const long size = variables.getSize();
  for (long i = 0; i < size; ++i) variables[i].getImpl()->setMark(nullptr);
  for (ZylNumLinExprTermI* term = _terms._head; term != nullptr; term = term->_next) {
    term->_var->setMark(term);
  }
  // New terms gather apart, so that a failed allocation finds the sum's own list untouched.
  TermList added;
  for (long i = 0; i < size; ++i) {
    ZylNumVarI* variable = variables[i].getImpl();
    if (variable->getMark() != nullptr || coefs[i] == 0.0) continue;
    try {
      added.append(_env->newTerm(variable, 0.0));
    } catch (...) {
      added.clear(_env);
      throw;
    }
    variable->setMark(added._tail);
  }
  _terms.splice(&added);
  for (long i = 0; i < size; ++i) {
    ZylNumLinExprTermI* term = variables[i].getImpl()->getMark();
    oldCoefs[i] = term != nullptr ? term->_coef : 0.0;
    if (term != nullptr) term->_coef = coefs[i];
  }
  _normalized = 1;
}

// Sent when all marks have done their work: a receiver may normalise, which moves them. A refusal
// is raised when everything has been told.
void ZylNumLinTermI::sendCoefChanges(const ZylNumVarArray& variables, const ZylNumArray& coefs,
                                     const ZylNumArray& oldCoefs) {
  std::exception_ptr refusal;
  for (long i = 0; i < variables.getSize(); ++i) {
    ZylNumVarI* variable = variables[i].getImpl();
    const bool was = oldCoefs[i] != 0.0;
    const bool is = coefs[i] != 0.0;
    if (was == is) continue;
    try {
      if (is) {
        notify(ZylNumLinTermAddVar(this, variable));
      } else {
        notify(ZylNumLinTermRemoveVar(this, variable));
      }
    } catch (ZylAlgorithm::CannotChangeException& exception) {
      if (refusal == nullptr) {
        refusal = std::current_exception();
      } else {
        exception.end();
      }
    }
  }
  if (refusal != nullptr) std::rethrow_exception(refusal);
}

void ZylNumLinTermI::remove(ZylNumVarI* variable) { _terms.removeFirst(_env, variable); }

void ZylNumLinTermI::remove(const ZylExtractableArray& objects) {
  zyl::detail::removeObjects(_env, &_terms, &_items, objects);
}

void ZylNumLinTermI::removeMarked() {
  _items.removeMarked(_env);
  _terms.removeMarked(_env);
}

void ZylNumLinTermI::clear() {
  _constant = 0.0;
  _normalized = 0;
  _terms.clear(_env);
  _items.clear(_env);
}
