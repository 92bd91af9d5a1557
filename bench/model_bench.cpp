// Stating, normalising, editing, loading and ending models, each beside its floor.

#include <vorlane/engine.h>

#include "floor.h"

namespace {

constexpr long Terms = 10;

// --- 1,000,000 ranges of 10 terms over as many variables, scattered columns ----------------------

void BM_Ranges_floor(benchmark::State& state) {
  const long n = state.range(0);
  for (auto _ : state) {
    state.PauseTiming();
    auto* bump = new floors::Bump();
    std::vector<floors::Variable*> variables;
    for (long i = 0; i < n; ++i)
      variables.push_back(bump->make(floors::Variable{0, 1, nullptr, i, 2}));
    std::vector<floors::Row*> rows;
    floors::Scatter scatter(static_cast<std::uint64_t>(n));
    state.ResumeTiming();
    for (long r = 0; r < n; ++r) {
      auto* row = bump->make(floors::Row{nullptr, nullptr, -1e30, 10.0});
      for (long t = 0; t < Terms; ++t) {
        auto* term = bump->make(
            floors::Term{variables[scatter.next()], nullptr, static_cast<double>(t + 1)});
        if (row->tail != nullptr) {
          row->tail->next = term;
        } else {
          row->head = term;
        }
        row->tail = term;
      }
      rows.push_back(row);
    }
    benchmark::DoNotOptimize(rows.data());
    state.PauseTiming();
    delete bump;
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * n * Terms);
}

void BM_Ranges_vorlane(benchmark::State& state) {
  const long n = state.range(0);
  double bytes = 0.0;
  for (auto _ : state) {
    state.PauseTiming();
    ZylEnv env;
    ZylModel model(env);
    ZylNumVarArray x(env, 0L);
    for (long i = 0; i < n; ++i) x.add(ZylNumVar(env, 0, 1e9));
    floors::Scatter scatter(static_cast<std::uint64_t>(n));
    const auto before = static_cast<double>(env.getTotalMemoryUsage());
    state.ResumeTiming();
    for (long r = 0; r < n; ++r) {
      ZylExpr e(env);
      for (long t = 0; t < Terms; ++t) e += static_cast<double>(t + 1) * x[scatter.next()];
      model.add(e <= 10.0);
    }
    state.PauseTiming();
    bytes =
        (static_cast<double>(env.getTotalMemoryUsage()) - before) / static_cast<double>(n * Terms);
    env.end();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * n * Terms);
  state.counters["bytes_per_term"] = bytes;
}

void BM_RangesByScalProd_vorlane(benchmark::State& state) {
  const long n = state.range(0);
  for (auto _ : state) {
    state.PauseTiming();
    ZylEnv env;
    ZylModel model(env);
    ZylNumVarArray x(env, 0L);
    for (long i = 0; i < n; ++i) x.add(ZylNumVar(env, 0, 1e9));
    ZylNumVarArray row(env, Terms);
    ZylNumArray coefs(env, Terms);
    for (long t = 0; t < Terms; ++t) coefs[t] = static_cast<double>(t + 1);
    floors::Scatter scatter(static_cast<std::uint64_t>(n));
    state.ResumeTiming();
    for (long r = 0; r < n; ++r) {
      for (long t = 0; t < Terms; ++t) row[t] = x[scatter.next()];
      model.add(ZylScalProd(coefs, row) <= 10.0);
    }
    state.PauseTiming();
    env.end();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * n * Terms);
}

void BM_RangesByScalProd_floor(benchmark::State& state) { BM_Ranges_floor(state); }

// --- normalising expressions in which every variable stands twice, in scattered order
// ---------------

// The variable of the t-th of n terms: all of them once in some order, then again in the same.
std::size_t scattered(long t, long n) { return static_cast<std::size_t>(t * 314159 % (n / 2)); }

void BM_Normalize_floor(benchmark::State& state) {
  const long n = state.range(0);
  floors::Bump bump;
  std::vector<floors::Variable*> variables;
  for (long i = 0; i < n / 2; ++i)
    variables.push_back(bump.make(floors::Variable{0, 1, nullptr, i, 2}));
  for (auto _ : state) {
    state.PauseTiming();
    floors::Bump terms;
    floors::Row row{nullptr, nullptr, 0, 0};
    for (long t = 0; t < n; ++t) {
      auto* term = terms.make(floors::Term{variables[scattered(t, n)], nullptr, 1.0});
      (row.tail != nullptr ? row.tail->next : row.head) = term;
      row.tail = term;
    }
    state.ResumeTiming();
    for (floors::Term* t = row.head; t != nullptr; t = t->next) t->variable->mark = t;
    for (floors::Term** link = &row.head; *link != nullptr;) {
      floors::Term* t = *link;
      if (t->variable->mark == t) {
        link = &t->next;
        continue;
      }
      t->variable->mark->coef += t->coef;
      *link = t->next;
    }
    benchmark::DoNotOptimize(row.head);
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_Normalize_vorlane(benchmark::State& state) {
  const long n = state.range(0);
  ZylEnv env;
  ZylNumVarArray x(env, n / 2, 0.0, 1e9);
  double allocated = 0.0;
  for (auto _ : state) {
    state.PauseTiming();
    ZylExpr e(env);
    for (long t = 0; t < n; ++t) e += x[static_cast<long>(scattered(t, n))];
    const long before = env.getTotalMemoryUsage();
    state.ResumeTiming();
    e.normalize();
    state.PauseTiming();
    allocated += static_cast<double>(env.getTotalMemoryUsage() - before);
    e.end();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * n);
  state.counters["bytes_allocated"] = allocated;
  env.end();
}

// --- boolean variables ---------------------------------------------------------------------------

void BM_BoolVars_floor(benchmark::State& state) {
  const long n = state.range(0);
  for (auto _ : state) {
    auto* bump = new floors::Bump();
    std::vector<floors::Variable*> variables(static_cast<std::size_t>(n));
    for (long i = 0; i < n; ++i) {
      variables[static_cast<std::size_t>(i)] = bump->make(floors::Variable{0, 1, nullptr, i, 3});
    }
    benchmark::DoNotOptimize(variables.data());
    state.PauseTiming();
    delete bump;
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_BoolVars_vorlane(benchmark::State& state) {
  const long n = state.range(0);
  double bytes = 0.0;
  for (auto _ : state) {
    state.PauseTiming();
    ZylEnv env;
    std::vector<ZylBoolVar> variables(static_cast<std::size_t>(n));
    const auto before = static_cast<double>(env.getTotalMemoryUsage());
    state.ResumeTiming();
    for (long i = 0; i < n; ++i) variables[static_cast<std::size_t>(i)] = ZylBoolVar(env);
    benchmark::DoNotOptimize(variables.data());
    state.PauseTiming();
    bytes = (static_cast<double>(env.getTotalMemoryUsage()) - before) / static_cast<double>(n);
    env.end();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * n);
  state.counters["bytes_each"] = bytes;
}

// --- trees: ZylMax(x, y) + ZylAbs(x - y) ---------------------------------------------------------

// A node of the sizes that the library's own have: maximum, absolute value, two sums, two terms,
// two items.
template <std::size_t Bytes>
struct Record {
  void* words[Bytes / 8];
};

void BM_Trees_floor(benchmark::State& state) {
  const long n = state.range(0);
  for (auto _ : state) {
    auto* bump = new floors::Bump();
    void* last = nullptr;
    for (long i = 0; i < n; ++i) {
      auto* maximum = bump->make(Record<56>{{last}});
      auto* term1 = bump->make(Record<24>{{last}});
      auto* term2 = bump->make(Record<24>{{term1}});
      auto* difference = bump->make(Record<88>{{term1, term2}});
      auto* absolute = bump->make(Record<48>{{difference}});
      auto* item1 = bump->make(Record<16>{{maximum}});
      auto* item2 = bump->make(Record<16>{{absolute, item1}});
      last = bump->make(Record<88>{{item1, item2}});
    }
    benchmark::DoNotOptimize(last);
    state.PauseTiming();
    delete bump;
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_Trees_vorlane(benchmark::State& state) {
  const long n = state.range(0);
  for (auto _ : state) {
    state.PauseTiming();
    ZylEnv env;
    ZylNumVar x(env, 0, 10);
    ZylNumVar y(env, 0, 10);
    state.ResumeTiming();
    for (long i = 0; i < n; ++i) {
      const ZylNumExprArg tree = ZylMax(x, y) + ZylAbs(x - y);
      benchmark::DoNotOptimize(tree.getImpl());
    }
    state.PauseTiming();
    env.end();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * n);
}

// --- edits of a loaded model: a bound and one of the first five coefficients of each range
// -------------

/// An engine that only counts.
class Counter : public ZylAlgorithmI {
 public:
  explicit Counter(ZylEnvI* env) : ZylAlgorithmI(env) {}
  bool doExtract(const ZylExtractableI* object, void** handle) override {
    *handle = this;
    if (const auto* model = zyl::as<ZylModelI>(object)) {
      for (ZylModelI::Iterator it(model->getElements()); it.ok(); ++it) extract(*it);
    }
    return true;
  }
  bool doRemove(const ZylExtractableI*, void*) override { return true; }
  bool doApply(const ZylChange*, void**, const ZylExtractableI*) override {
    ++edits;
    return true;
  }
  double getObjValue() const override { return 0; }
  double getValue(const ZylNumVarI*) const override { return 0; }
  double getValue(const ZylObjectiveI*) const override { return 0; }
  using ZylAlgorithmI::getValue;
  long edits = 0;
};

struct EditModel {
  explicit EditModel(long n) : model(env), x(env, n, 0.0, 1e9), ranges(env, 0L) {
    floors::Scatter scatter(static_cast<std::uint64_t>(n));
    floors::Scatter which(Terms / 2);
    for (long r = 0; r < n; ++r) {
      ZylExpr e(env);
      for (long t = 0; t < Terms; ++t) e += static_cast<double>(t + 1) * x[scatter.next()];
      const ZylRange range = e <= 10.0;
      e.end();
      range.getImpl()->normalize();
      const ZylNumLinExprTermI* term = range.getImpl()->getExprI()->getTermHead();
      for (std::size_t t = which.next(); t > 0; --t) term = term->_next;
      edited.push_back(term->_var);
      ranges.add(range);
      model.add(range);
    }
  }
  ~EditModel() { env.end(); }
  void edit(double value) {
    for (long r = 0; r < ranges.getSize(); ++r) {
      ranges[r].setUB(value);
      ranges[r].setLinearCoef(ZylNumVar(edited[static_cast<std::size_t>(r)]), value);
    }
  }
  ZylEnv env;
  ZylModel model;
  ZylNumVarArray x;
  ZylRangeArray ranges;
  std::vector<ZylNumVarI*> edited;
};

void BM_Edits_floor(benchmark::State& state) {
  const long n = state.range(0);
  floors::Bump bump;
  std::vector<floors::Variable*> variables;
  for (long i = 0; i < n; ++i)
    variables.push_back(bump.make(floors::Variable{0, 1, nullptr, i, 2}));
  std::vector<floors::Row*> rows;
  std::vector<floors::Variable*> edited;
  floors::Scatter scatter(static_cast<std::uint64_t>(n));
  floors::Scatter which(Terms / 2);
  for (long r = 0; r < n; ++r) {
    auto* row = bump.make(floors::Row{nullptr, nullptr, 0, 10});
    for (long t = 0; t < Terms; ++t) {
      auto* term = bump.make(floors::Term{variables[scatter.next()], nullptr, 1.0});
      (row->tail != nullptr ? row->tail->next : row->head) = term;
      row->tail = term;
    }
    rows.push_back(row);
    const floors::Term* term = row->head;
    for (std::size_t t = which.next(); t > 0; --t) term = term->next;
    edited.push_back(term->variable);
  }
  double value = 1.0;
  for (auto _ : state) {
    value += 1.0;
    for (std::size_t r = 0; r < rows.size(); ++r) {
      rows[r]->upper = value;
      floors::Term* term = rows[r]->head;
      while (term->variable != edited[r]) term = term->next;
      term->coef = value;
    }
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * n * 2);
}

void BM_Edits_vorlane(benchmark::State& state) {
  EditModel model(state.range(0));
  double value = 1.0;
  for (auto _ : state) model.edit(value += 1.0);
  state.SetItemsProcessed(state.iterations() * state.range(0) * 2);
}

void BM_EditsWithEngine_floor(benchmark::State& state) { BM_Edits_floor(state); }

void BM_EditsWithEngine_vorlane(benchmark::State& state) {
  EditModel model(state.range(0));
  Counter engine(model.env.getImpl());
  engine.load(model.model.getImpl());
  double value = 1.0;
  for (auto _ : state) model.edit(value += 1.0);
  state.SetItemsProcessed(state.iterations() * state.range(0) * 2);
  state.counters["heard"] = static_cast<double>(engine.edits);
}

// --- loading into the base evaluator, and ending the environment ---------------------------------

void BM_Load_floor(benchmark::State& state) {
  EditModel model(state.range(0));
  for (auto _ : state) {
    double sum = 0.0;
    for (long r = 0; r < model.ranges.getSize(); ++r) {
      const ZylNumLinExprTermI* term = model.ranges[r].getImpl()->getExprI()->getTermHead();
      for (; term != nullptr; term = term->_next) sum += term->_coef;
    }
    benchmark::DoNotOptimize(sum);
  }
}

void BM_Load_vorlane(benchmark::State& state) {
  EditModel model(state.range(0));
  ZylModelEvaluatorI* evaluator = model.env.getImpl()->getModelEvaluator();
  for (auto _ : state) evaluator->load(model.model.getImpl());
}

void BM_End_floor(benchmark::State& state) {
  const long n = state.range(0);
  for (auto _ : state) {
    state.PauseTiming();
    auto* bump = new floors::Bump();
    for (long r = 0; r < n; ++r) {
      bump->make(floors::Variable{});
      bump->make(floors::Row{});
      for (long t = 0; t < Terms; ++t) bump->make(floors::Term{});
      // What the library's objects carry beside the bare records.
      bump->alloc(24 + 32 + 88 + 16 + 16);
    }
    state.ResumeTiming();
    delete bump;
  }
}

void BM_End_vorlane(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    auto* model = new EditModel(state.range(0));
    ZylEnv env = model->env;
    state.ResumeTiming();
    env.end();
    state.PauseTiming();
    model->env = ZylEnv(static_cast<ZylEnvI*>(nullptr));
    delete model;
    state.ResumeTiming();
  }
}

#define ZYL_PAIR(name, size)                                              \
  BENCHMARK(BM_##name##_floor)->Arg(size)->Unit(benchmark::kMillisecond); \
  BENCHMARK(BM_##name##_vorlane)->Arg(size)->Unit(benchmark::kMillisecond)

ZYL_PAIR(Ranges, 1000000);
ZYL_PAIR(RangesByScalProd, 1000000);
ZYL_PAIR(Normalize, 1000000);
ZYL_PAIR(BoolVars, 1000000);
ZYL_PAIR(Trees, 1000000);
ZYL_PAIR(Edits, 100000);
ZYL_PAIR(EditsWithEngine, 100000);
ZYL_PAIR(Load, 1000000);
ZYL_PAIR(End, 1000000);

}  // namespace

BENCHMARK_MAIN();
