// Files of linear models, as plain rows and columns.

#ifndef ZYL_CBC_SOLVE_READER_H
#define ZYL_CBC_SOLVE_READER_H

#include <stdexcept>
#include <string>
#include <vector>

namespace zyl::solve {

/// A file cannot be read; the text says what is wrong and, where known, in which line.
class ReadError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A model as the file states it. Rows are compressed; bounds beyond 1e30 are infinite.
struct FileModel {
  struct Column {
    std::string name;
    double lower;
    double upper;
    double cost;
    bool integer;
  };
  struct Row {
    std::string name;
    double lower;
    double upper;
    int first;  // of its entries, which end where the next row's begin
  };
  std::string name;
  std::string objective;  // its name
  bool maximize = false;
  double constant = 0.0;
  std::vector<Column> columns;
  std::vector<Row> rows;
  std::vector<int> indices;
  std::vector<double> elements;

  int end(std::size_t row) const {
    return row + 1 < rows.size() ? rows[row + 1].first : static_cast<int>(indices.size());
  }
};

/// Reads free or fixed MPS, or LP format, plain or gzip. The format is told by the contents. Raises
/// `ReadError`.
FileModel readModel(const std::string& path);

}  // namespace zyl::solve

#endif
