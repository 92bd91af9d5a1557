// Model files, plain or compressed, read by the solver's readers once a survey lets them.

#include "reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

#include <CoinError.hpp>
#include <CoinFileIO.hpp>
#include <CoinLpIO.hpp>
#include <CoinMessageHandler.hpp>
#include <CoinMpsIO.hpp>
#include <CoinPackedMatrix.hpp>

#include "survey.h"

namespace zyl::solve {

namespace {

constexpr double FileInfinity = 1e30;

// Keeps the first complaint of a reader instead of printing it.
class Complaints : public CoinMessageHandler {
 public:
  Complaints() { setLogLevel(1); }
  int print() override {
    std::string text = messageBuffer();
    // Plain news ends in I, complaints in W or E, behind the message's number.
    const std::size_t blank = text.find(' ');
    if (blank != std::string::npos && blank > 0 && text[blank - 1] != 'I' && _first.empty()) {
      _first = text.substr(blank + 1);
    }
    return 0;
  }
  CoinMessageHandler* clone() const override { return new Complaints(*this); }
  const std::string& first() const { return _first; }

 private:
  std::string _first;
};

void checkCharacters(std::string_view text, long& line) {
  for (const char c : text) {
    if (c == '\n') ++line;
    const auto byte = static_cast<unsigned char>(c);
    if ((byte < 0x20 && std::isspace(byte) == 0) || byte == 0x7f) {
      throw LineError(line, "not a text file");
    }
  }
}

std::string readFile(const std::string& path) {
  struct stat info {};
  if (stat(path.c_str(), &info) != 0) throw ReadError(std::strerror(errno));
  if (S_ISDIR(info.st_mode)) throw ReadError("is a directory");
  if (!S_ISREG(info.st_mode)) throw ReadError("is not a regular file");
  if (info.st_size == 0) throw ReadError("is empty");
  std::unique_ptr<CoinFileInput> input;
  try {
    input.reset(CoinFileInput::create(path));
  } catch (const CoinError& error) {
    throw ReadError(error.message());
  }
  std::string text;
  std::vector<char> buffer(1U << 18U);
  int count = 0;
  long line = 1;
  while ((count = input->read(buffer.data(), static_cast<int>(buffer.size()))) > 0) {
    // At once, for what is no text may have no end either.
    const std::string_view block(buffer.data(), static_cast<std::size_t>(count));
    checkCharacters(block, line);
    text.append(block);
  }
  if (count < 0) throw ReadError("is damaged");
  return text;
}

// The word that opens the file, behind empty lines and the comments of either format.
std::string firstWord(std::string_view text) {
  Lines lines(text);
  std::string_view line;
  while (lines.next(line)) {
    const std::size_t begin = line.find_first_not_of(" \t");
    if (begin == std::string_view::npos || line[0] == '*' || line[0] == '/' ||
        line[begin] == '\\') {
      continue;
    }
    line.remove_prefix(begin);
    return upperCase(line.substr(0, line.find_first_of(" \t")));
  }
  throw ReadError("holds no model");
}

// Keeps what a reader says away from the results.
class Silence {
 public:
  Silence() {
    std::fflush(stdout);
    _output = dup(STDOUT_FILENO);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0) return;
    dup2(nowhere, STDOUT_FILENO);
    close(nowhere);
  }
  ~Silence() {
    std::fflush(stdout);
    if (_output < 0) return;
    dup2(_output, STDOUT_FILENO);
    close(_output);
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

 private:
  int _output;
};

// The plain copy, as a file.
class CopyInput : public CoinFileInput {
 public:
  explicit CopyInput(std::string_view text) : CoinFileInput("copy"), _rest(text) {}
  int read(void* buffer, int size) override {
    return static_cast<int>(take(static_cast<char*>(buffer), static_cast<std::size_t>(size)));
  }
  char* gets(char* buffer, int size) override {
    const std::size_t end = _rest.find('\n');
    const std::size_t length = end == std::string_view::npos ? _rest.size() : end + 1;
    const std::size_t count = take(buffer, std::min(length, static_cast<std::size_t>(size - 1)));
    buffer[count] = '\0';
    return count > 0 ? buffer : nullptr;
  }

 private:
  std::size_t take(char* buffer, std::size_t size) {
    const std::size_t count = _rest.copy(buffer, size);
    _rest.remove_prefix(count);
    return count;
  }
  std::string_view _rest;
};

class MpsReader : public CoinMpsIO {
 public:
  int readCopy(std::string_view text) {
    cardReader_ = new CoinMpsCardReader(new CopyInput(text), this);  // the base class deletes both
    return readMps();
  }
};

double bound(double value) {
  if (value >= FileInfinity) return HUGE_VAL;
  if (value <= -FileInfinity) return -HUGE_VAL;
  return value;
}

// A file that passed the survey is read as the survey told, or not at all.
[[noreturn]] void raiseMisread(const std::string& complaint) {
  throw ReadError("is not understood by the reader" +
                  (complaint.empty() ? std::string() : ": " + complaint));
}

// The number in a stand-in's name.
std::size_t indexOf(const char* name, char kind, std::size_t count) {
  std::size_t index = count;
  if (name == nullptr || name[0] != kind) raiseMisread("");
  const char* end = name + std::strlen(name);
  if (std::from_chars(name + 1, end, index).ptr != end || index >= count) raiseMisread(name);
  return index;
}

// MPS and LP readers answer to the same names.
template <class Reader>
FileModel take(Reader& reader, const Survey& survey, double constant) {
  FileModel model;
  model.name = survey.name;
  model.objective = survey.objective;
  model.maximize = survey.maximize;
  model.constant = constant + 0.0;  // no negative zero
  const auto columns = static_cast<std::size_t>(reader.getNumCols());
  const auto rows = static_cast<std::size_t>(reader.getNumRows());
  if (columns != survey.columns.size() || rows + survey.freeRows != survey.rows.size()) {
    raiseMisread("sizes differ");
  }
  std::vector<bool> isInteger(columns, false);
  for (const std::size_t index : survey.integers) isInteger[index] = true;
  model.columns.reserve(columns);
  for (std::size_t j = 0; j < columns; ++j) {
    const int column = static_cast<int>(j);
    const std::size_t index = indexOf(reader.columnName(column), 'x', columns);
    model.columns.push_back({std::string(survey.columns[index]), bound(reader.getColLower()[j]),
                             bound(reader.getColUpper()[j]), reader.getObjCoefficients()[j],
                             isInteger[index] || reader.isInteger(column)});
  }
  const CoinPackedMatrix* matrix = reader.getMatrixByRow();
  model.rows.reserve(rows);
  std::size_t terms = 0;
  for (std::size_t i = 0; i < rows; ++i) {
    const int row = static_cast<int>(i);
    const std::size_t index = indexOf(reader.rowName(row), 'r', survey.rows.size());
    model.rows.push_back({survey.rows[index], bound(reader.getRowLower()[i]),
                          bound(reader.getRowUpper()[i]), static_cast<int>(model.indices.size())});
    const auto other = survey.lower.find(index);
    if (other != survey.lower.end()) model.rows.back().lower = other->second;
    const CoinBigIndex first = matrix->getVectorFirst(row);
    for (CoinBigIndex k = first; k < first + matrix->getVectorSize(row); ++k) {
      const double element = matrix->getElements()[k];
      if (element != 0.0) ++terms;
      model.indices.push_back(matrix->getIndices()[k]);
      model.elements.push_back(element);
    }
  }
  if (terms != survey.terms) raiseMisread("sizes differ");
  return model;
}

FileModel readMps(const Survey& survey) {
  MpsReader reader;
  Complaints complaints;
  reader.passInMessageHandler(&complaints);
  reader.setInfinity(HUGE_VAL);
  if (reader.readCopy(survey.text) != 0 || !complaints.first().empty()) {
    raiseMisread(complaints.first());
  }
  // The reader keeps what has to be taken from the objective.
  return take(reader, survey, -reader.objectiveOffset());
}

FileModel readLp(const Survey& survey) {
  CoinLpIO reader;
  Complaints complaints;
  reader.passInMessageHandler(&complaints);
  reader.setInfinity(HUGE_VAL);
  std::string copy = survey.text;
  FILE* file = fmemopen(copy.data(), copy.size(), "r");
  if (file == nullptr) throw ReadError(std::strerror(errno));
  reader.readLp(file, 1e-12);  // closes the file
  if (!complaints.first().empty()) raiseMisread(complaints.first());
  return take(reader, survey, reader.objectiveOffset());
}

}  // namespace

FileModel readModel(const std::string& path) {
  const std::string file = readFile(path);
  std::string_view text = file;
  if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
  const std::string word = firstWord(text);
  const bool isMps = word == "NAME" || word == "ROWS" || word == "OBJSENSE";
  const Survey survey = isMps ? surveyMps(text) : surveyLp(text);
  const Silence silence;
  try {
    return isMps ? readMps(survey) : readLp(survey);
  } catch (const CoinError& error) {
    raiseMisread(error.message());
  }
}

}  // namespace zyl::solve
