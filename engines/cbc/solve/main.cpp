// vorlane-solve: reads a linear model, states it through the public interface, solves it.

#include <getopt.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>
#include <thread>

#include "reader.h"
#include "vorlane/cbc.h"

namespace {

using zyl::solve::FileModel;

constexpr int ExitSolved = 0;
constexpr int ExitNoAnswer = 1;
constexpr int ExitUsage = 2;

constexpr const char* Help =
    "usage: vorlane-solve [options] FILE\n"
    "\n"
    "Solves the linear or mixed integer model in FILE: MPS (free or fixed) or LP format, plain or\n"
    "gzip. Prints one 'key: value' a line.\n"
    "\n"
    "  --print-model     the model's own text form, before the results\n"
    "  --solution        the non-zero values by name, behind the results\n"
    "  --relax           take integer variables as continuous\n"
    "  --time-limit S    stop after S seconds\n"
    "  --gap G           stop at the relative gap G\n"
    "  --quiet           no progress line\n"
    "  --help            this text\n"
    "  --version         the version\n"
    "\n"
    "Ctrl-C or a SIGTERM ends the search with the best solution so far, a second one the process.\n"
    "Exit status: 0 solved, also when proved infeasible or unbounded; 1 stopped at a limit without\n"
    "an answer; 2 bad usage or bad input.\n";

struct Options {
  std::string file;
  bool printModel = false;
  bool solution = false;
  bool relax = false;
  bool quiet = false;
  double timeLimit = -1.0;
  double gap = -1.0;
};

// One line, whatever a reader put into its complaint.
[[noreturn]] void fail(std::string what) {
  for (char& c : what) {
    if (c == '\n' || c == '\r') c = ' ';
  }
  what.erase(what.find_last_not_of(' ') + 1);
  std::cerr << "vorlane-solve: " << what << std::endl;
  std::exit(ExitUsage);
}

// The results count only if they got out.
int finish(int status) {
  std::cout.flush();
  if (!std::cout) fail(std::string("standard output: ") + std::strerror(errno));
  return status;
}

double parseNumber(const char* option, const char* text) {
  char* end = nullptr;
  const double value = std::strtod(text, &end);
  if (end == text || *end != '\0' || !(value >= 0.0) || std::isinf(value)) {
    fail(std::string("option --") + option + ": '" + text + "' is not a number of 0 or more");
  }
  return value;
}

// The option that was not understood. `word` has been left behind, unless it is a letter among
// several, which is known by itself alone.
std::string unknownOption(const char* word) {
  if (optopt == 0 || std::strncmp(word, "--", 2) == 0) return word;
  return std::string("-") + static_cast<char>(optopt);
}

Options parse(int argc, char** argv) {
  static const option table[] = {{"print-model", no_argument, nullptr, 'p'},
                                 {"solution", no_argument, nullptr, 's'},
                                 {"relax", no_argument, nullptr, 'r'},
                                 {"time-limit", required_argument, nullptr, 't'},
                                 {"gap", required_argument, nullptr, 'g'},
                                 {"quiet", no_argument, nullptr, 'q'},
                                 {"help", no_argument, nullptr, 'h'},
                                 {"version", no_argument, nullptr, 'v'},
                                 {nullptr, 0, nullptr, 0}};
  Options options;
  opterr = 0;
  for (int c = 0; (c = getopt_long(argc, argv, ":", table, nullptr)) != -1;) {
    switch (c) {
      case 'p': options.printModel = true; break;
      case 's': options.solution = true; break;
      case 'r': options.relax = true; break;
      case 't': options.timeLimit = parseNumber("time-limit", optarg); break;
      case 'g': options.gap = parseNumber("gap", optarg); break;
      case 'q': options.quiet = true; break;
      case 'h': std::cout << Help << std::flush; std::exit(finish(ExitSolved));
      case 'v':
        std::cout << "vorlane-solve " << ZylVorlaneVersion::_ZYL_MAJOR_VERSION << "."
                  << ZylVorlaneVersion::_ZYL_MINOR_VERSION << std::endl;
        std::exit(finish(ExitSolved));
      case ':': fail(std::string("option ") + argv[optind - 1] + " needs a value");
      default: fail("unknown option " + unknownOption(argv[optind - 1]) + " (try --help)");
    }
  }
  if (optind == argc) fail("no file given (try --help)");
  if (optind + 1 < argc) fail(std::string("more than one file given: ") + argv[optind + 1]);
  options.file = argv[optind];
  return options;
}

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// A model of the library with the handles that the results need.
struct Statement {
  ZylModel model;
  ZylNumVarArray variables;
  long terms = 0;
};

Statement state(const ZylEnv& env, const FileModel& file, bool relax) {
  Statement result{ZylModel(env, file.name.empty() ? nullptr : file.name.c_str()),
                   ZylNumVarArray(env, 0L)};
  for (const FileModel::Column& column : file.columns) {
    const bool integer = column.integer && !relax;
    // Inwards, with room for numbers that a program wrote: the variable itself takes the nearest.
    result.variables.add(ZylNumVar(env, integer ? std::ceil(column.lower - 1e-9) : column.lower,
                                   integer ? std::floor(column.upper + 1e-9) : column.upper,
                                   integer ? ZylNumVar::Int : ZylNumVar::Float,
                                   column.name.c_str()));
  }
  result.model.add(result.variables);

  ZylExpr cost(env, file.constant);
  for (std::size_t j = 0; j < file.columns.size(); ++j) {
    if (file.columns[j].cost != 0.0) cost += file.columns[j].cost * result.variables[j];
  }
  const auto sense = file.maximize ? ZylObjective::Maximize : ZylObjective::Minimize;
  result.model.add(ZylObjective(env, cost, sense,
                                file.objective.empty() ? "objective" : file.objective.c_str()));
  cost.end();

  for (std::size_t i = 0; i < file.rows.size(); ++i) {
    ZylExpr sum(env);
    for (int k = file.rows[i].first; k < file.end(i); ++k) {
      const auto entry = static_cast<std::size_t>(k);
      sum += file.elements[entry] * result.variables[file.indices[entry]];
    }
    result.model.add(
        ZylRange(env, file.rows[i].lower, sum, file.rows[i].upper, file.rows[i].name.c_str()));
    sum.end();
  }
  result.terms = static_cast<long>(file.elements.size());
  return result;
}

// One line on the terminal, rewritten as the search goes on.
class ProgressLine : public ZylCbcListener {
 public:
  ~ProgressLine() override { clear(); }
  void onProgress(const ZylCbcProgress& progress) override {
    if (progress.seconds - _last < 0.1 && _shown) return;
    _last = progress.seconds;
    _shown = true;
    char value[32] = "-";
    if (progress.hasValue) std::snprintf(value, sizeof(value), "%.8g", progress.value);
    std::fprintf(stderr, "\r\033[Kbest %s  bound %.8g  gap %.2f%%  nodes %ld  %.1f s", value,
                 progress.bound, 100.0 * progress.gap, progress.nodes, progress.seconds);
    std::fflush(stderr);
  }
  void clear() {
    if (_shown) std::fputs("\r\033[K", stderr);
    _shown = false;
  }

 private:
  double _last = 0.0;
  bool _shown = false;
};

// Hears SIGINT and SIGTERM while it lives: the first one asks for what was found so far, the next
// one ends the process. A thread waits for them, as the solver installs a handler of its own for
// SIGINT in places, which would swallow what comes meanwhile.
class Signals {
 public:
  explicit Signals(ZylCbcI* engine) : _engine(engine) {
    sigemptyset(&_set);
    sigaddset(&_set, SIGINT);
    sigaddset(&_set, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &_set, nullptr);
    // Never run; but what is ignored, as a shell may have it, would be dropped while it waits.
    for (const int signal : {SIGINT, SIGTERM}) std::signal(signal, [](int) {});
    _thread = std::thread([this] { wait(); });
  }
  ~Signals() {
    _done = true;
    // Wakes the thread, which waits for it. NOLINTNEXTLINE(bugprone-bad-signal-to-kill-thread)
    pthread_kill(_thread.native_handle(), SIGTERM);
    _thread.join();
    pthread_sigmask(SIG_UNBLOCK, &_set, nullptr);
  }
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

 private:
  void wait() {
    for (bool isFirst = true;;) {
      int signal = 0;
      if (sigwait(&_set, &signal) != 0) continue;
      if (_done) return;
      if (!isFirst) {
        std::signal(signal, SIG_DFL);
        pthread_sigmask(SIG_UNBLOCK, &_set, nullptr);
        std::raise(signal);
      }
      isFirst = false;
      _engine->interrupt();
    }
  }

  ZylCbcI* _engine;
  sigset_t _set{};
  std::atomic<bool> _done{false};
  std::thread _thread;
};

double peakMib() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

template <class Value>
void print(const char* key, const Value& value) {
  std::cout << key << ": " << value << "\n";
}

// Integers as they are, everything else as short as it can be told.
std::string number(double value) {
  if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
  char text[40];
  std::snprintf(text, sizeof(text), "%.12g", value);
  return text;
}

std::string seconds(double value) {
  char text[40];
  std::snprintf(text, sizeof(text), "%.4f", value);
  return text;
}

int run(const Options& options, const ZylEnv& env) {
  const double begin = now();
  FileModel file;
  try {
    file = zyl::solve::readModel(options.file);
  } catch (const zyl::solve::ReadError& error) {
    fail(options.file + ": " + error.what());
  }
  const double read = now();
  const Statement statement = state(env, file, options.relax);
  const double stated = now();
  ZylCbc engine(env);
  engine.setLogLevel(0);
  engine.extract(statement.model);
  const double extracted = now();

  if (options.printModel) std::cout << statement.model;
  std::unique_ptr<ProgressLine> progress;
  if (!options.quiet && isatty(STDERR_FILENO) != 0 && isatty(STDOUT_FILENO) != 0) {
    progress = std::make_unique<ProgressLine>();
    engine.setListener(progress.get());
  }
  if (options.timeLimit >= 0.0) engine.setTimeLimit(options.timeLimit);
  if (options.gap >= 0.0) engine.setGapLimit(options.gap);
  const Signals signals(engine.getImpl());
  const bool found = engine.solve();
  if (progress != nullptr) progress->clear();
  engine.setListener(nullptr);
  const double solved = now();

  const ZylAlgorithm::Status status = engine.getStatus();
  print("status", status);
  print("objective", found ? number(engine.getObjValue()) : "none");
  print("bound", status == ZylAlgorithm::Infeasible ? "none" : number(engine.getBestBound()));
  print("gap", number(engine.getGap()));
  print("variables", file.columns.size());
  print("constraints", file.rows.size());
  print("terms", statement.terms);
  print("read_s", seconds(read - begin));
  print("state_s", seconds(stated - read));
  print("extract_s", seconds(extracted - stated));
  print("solve_s", seconds(solved - extracted));
  print("peak_mib", number(std::round(10.0 * peakMib()) / 10.0));
  if (options.solution && found) {
    for (long j = 0; j < statement.variables.getSize(); ++j) {
      const double value = engine.getValue(statement.variables[j]);
      if (value != 0.0) print(statement.variables[j].getName(), number(value));
    }
  }
  return finish(status == ZylAlgorithm::Unknown || status == ZylAlgorithm::Error ? ExitNoAnswer
                                                                                 : ExitSolved);
}

}  // namespace

int main(int argc, char** argv) {
  const Options options = parse(argc, argv);
  try {
    ZylEnv env;
    const int result = run(options, env);
    env.end();
    return result;
  } catch (const ZylException& exception) {
    std::cerr << "vorlane-solve: " << options.file << ": " << exception << std::endl;
  } catch (const std::exception& exception) {
    std::cerr << "vorlane-solve: " << options.file << ": " << exception.what() << std::endl;
  }
  return ExitUsage;
}
