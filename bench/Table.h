#pragma once

#include <string>
#include <vector>

namespace zelnor::bench {

/// Rows of text in columns as wide as they need; the first column to the left, the others to the
/// right.
class Table {
 public:
  using Row = std::vector<std::string>;

  explicit Table(Row header) : rows_{std::move(header)} {}
  /// `row` has as many cells as the header.
  void add(Row row) { rows_.push_back(std::move(row)); }
  [[nodiscard]] std::string text() const;

 private:
  std::vector<Row> rows_;
};

/// `value` with this many digits after the point.
std::string fixed(double value, int digits);
/// In units of 1,000,000 bytes, to one digit.
std::string megabytes(std::int64_t bytes);

}  // namespace zelnor::bench
