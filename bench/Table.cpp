#include "bench/Table.h"

#include <algorithm>
#include <cstddef>
#include <iomanip>
#include <sstream>

namespace zelnor::bench {
namespace {

/// Columns a text takes on a terminal, near enough: characters, those of three bytes and more
/// counting two (CJK).
std::size_t displayWidth(const std::string& text) {
  std::size_t width = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0xE0U) ++width;
    if ((byte & 0xC0U) != 0x80U) ++width;
  }
  return width;
}

std::vector<std::size_t> columnWidths(const std::vector<Table::Row>& rows) {
  std::vector<std::size_t> widths(rows.front().size());
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < widths.size(); ++i)
      widths[i] = std::max(widths[i], displayWidth(row.at(i)));
  }
  return widths;
}

}  // namespace

std::string Table::text() const {
  const auto widths = columnWidths(rows_);
  std::string text;
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string padding(widths[i] - displayWidth(row[i]), ' ');
      text += i == 0 ? row[i] + padding : "  " + padding + row[i];
    }
    text += '\n';
  }
  return text;
}

std::string fixed(double value, int digits) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(digits) << value;
  return text.str();
}

std::string megabytes(std::int64_t bytes) {
  constexpr double kMegabyte = 1e6;
  return fixed(static_cast<double>(bytes) / kMegabyte, /*digits=*/1);
}

}  // namespace zelnor::bench
