#include "reader.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdarg>
#include <cstring>
#include <memory>

#include <CoinError.hpp>
#include <CoinFileIO.hpp>
#include <CoinLpIO.hpp>
#include <CoinMessageHandler.hpp>
#include <CoinMpsIO.hpp>
#include <CoinPackedMatrix.hpp>

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

std::string upperCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

// What a look at every line tells before a reader is trusted with the file.
struct Survey {
  bool isMps = false;
  bool hasEnd = false;
  long lines = 0;
};

void checkPath(const std::string& path) {
  struct stat info {};
  if (stat(path.c_str(), &info) != 0) throw ReadError(std::strerror(errno));
  if (S_ISDIR(info.st_mode)) throw ReadError("is a directory");
  if (info.st_size == 0 && S_ISREG(info.st_mode)) throw ReadError("is empty");
}

// A word of an MPS or LP file that ends it.
bool isEndWord(const std::string& word, bool mps) { return mps ? word == "ENDATA" : word == "END"; }

Survey survey(const std::string& path) {
  std::unique_ptr<CoinFileInput> input;
  try {
    input.reset(CoinFileInput::create(path));
  } catch (const CoinError& error) {
    throw ReadError(error.message());
  }
  Survey result;
  bool seen = false;
  bool lineStart = true;
  char buffer[4096];
  while (input->gets(buffer, sizeof(buffer)) != nullptr) {
    const std::size_t length = std::strlen(buffer);
    const bool whole = length > 0 && buffer[length - 1] == '\n';
    if (lineStart) ++result.lines;
    for (std::size_t i = 0; i < length; ++i) {
      const auto c = static_cast<unsigned char>(buffer[i]);
      if (c < 0x20 && std::isspace(c) == 0) {
        throw ReadError("line " + std::to_string(result.lines) + ": not a text file");
      }
    }
    if (lineStart && length > 0 && buffer[0] != '*' && buffer[0] != '\\') {
      std::string word = buffer;
      word.erase(0, word.find_first_not_of(" \t"));
      word = upperCase(word.substr(0, word.find_first_of(" \t\r\n")));
      if (!word.empty() && !seen) {
        seen = true;
        result.isMps = word == "NAME" || word == "ROWS" || word == "OBJSENSE" || word == "OBJSENSE:";
      }
      if (isEndWord(word, result.isMps)) result.hasEnd = true;
    }
    lineStart = whole;
  }
  if (!seen) throw ReadError("holds no model");
  return result;
}

double bound(double value) {
  if (value >= FileInfinity) return HUGE_VAL;
  if (value <= -FileInfinity) return -HUGE_VAL;
  return value;
}

[[noreturn]] void raiseNumber(const std::string& what, const std::string& name) {
  throw ReadError(what + " of " + name + ": number out of range");
}

// MPS and LP readers answer to the same names.
template <class Reader>
FileModel take(Reader& reader, bool (*isInteger)(Reader&, int)) {
  FileModel model;
  model.name = reader.getProblemName() != nullptr ? reader.getProblemName() : "";
  model.constant = -reader.objectiveOffset();
  if (!std::isfinite(model.constant)) raiseNumber("constant", "the objective");
  const int columns = reader.getNumCols();
  const int rows = reader.getNumRows();
  model.columns.reserve(static_cast<std::size_t>(columns));
  for (int j = 0; j < columns; ++j) {
    FileModel::Column column{reader.columnName(j), bound(reader.getColLower()[j]),
                             bound(reader.getColUpper()[j]), reader.getObjCoefficients()[j],
                             isInteger(reader, j)};
    if (std::isnan(column.lower) || std::isnan(column.upper)) raiseNumber("bound", column.name);
    if (!(std::fabs(column.cost) < FileInfinity)) raiseNumber("objective coefficient", column.name);
    model.columns.push_back(std::move(column));
  }
  const CoinPackedMatrix* matrix = reader.getMatrixByRow();
  model.rows.reserve(static_cast<std::size_t>(rows));
  for (int i = 0; i < rows; ++i) {
    FileModel::Row row{reader.rowName(i), bound(reader.getRowLower()[i]),
                       bound(reader.getRowUpper()[i]), static_cast<int>(model.indices.size())};
    if (std::isnan(row.lower) || std::isnan(row.upper) || row.lower == HUGE_VAL ||
        row.upper == -HUGE_VAL) {
      raiseNumber("right-hand side", row.name);
    }
    const CoinBigIndex first = matrix->getVectorFirst(i);
    for (int k = 0; k < matrix->getVectorSize(i); ++k) {
      const double element = matrix->getElements()[first + k];
      if (!(std::fabs(element) < FileInfinity)) raiseNumber("coefficient", row.name);
      model.indices.push_back(matrix->getIndices()[first + k]);
      model.elements.push_back(element);
    }
    model.rows.push_back(std::move(row));
  }
  return model;
}

FileModel readMps(const std::string& path) {
  CoinMpsIO reader;
  Complaints complaints;
  reader.passInMessageHandler(&complaints);
  reader.setInfinity(HUGE_VAL);
  const int errors = reader.readMps(path.c_str(), "");
  if (errors != 0 || !complaints.first().empty()) {
    throw ReadError(complaints.first().empty() ? "not a valid MPS file" : complaints.first());
  }
  return take<CoinMpsIO>(reader, [](CoinMpsIO& r, int j) { return r.isInteger(j); });
}

FileModel readLp(const std::string& path) {
  CoinLpIO reader;
  Complaints complaints;
  reader.passInMessageHandler(&complaints);
  reader.setInfinity(HUGE_VAL);
  try {
    std::unique_ptr<CoinFileInput> input(CoinFileInput::create(path));
    // The reader knows no compressed files: it gets the unpacked text.
    std::unique_ptr<FILE, int (*)(FILE*)> text(tmpfile(), &fclose);
    if (text == nullptr) throw ReadError(std::strerror(errno));
    char buffer[4096];
    while (input->gets(buffer, sizeof(buffer)) != nullptr) std::fputs(buffer, text.get());
    std::rewind(text.get());
    // The reader closes what it is given.
    reader.readLp(text.release(), 1e-12);
  } catch (const CoinError& error) {
    throw ReadError(error.message());
  }
  FileModel model = take<CoinLpIO>(reader, [](CoinLpIO& r, int j) { return r.isInteger(j); });
  return model;
}

}  // namespace

FileModel readModel(const std::string& path) {
  checkPath(path);
  const Survey found = survey(path);
  if (!found.hasEnd) {
    throw ReadError("line " + std::to_string(found.lines) +
                    ": the file ends before its " + (found.isMps ? "ENDATA" : "End"));
  }
  return found.isMps ? readMps(path) : readLp(path);
}

}  // namespace zyl::solve
