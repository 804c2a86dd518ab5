#include "tests/torture/StoredIndex.h"

#include <filesystem>
#include <utility>

#include "store/IndexReader.h"
#include "tests/support/RawDatabase.h"

namespace zelnor::test {

namespace {

constexpr auto kFile = "/index.sqlite";
constexpr std::size_t kMoreThanAll = 10'000'000;

}  // namespace

Rows storedRows(const std::string& folder) {
  Rows rows;
  if (!std::filesystem::exists(folder + kFile)) return rows;
  for (auto& row : IndexReader(folder).recordsFrom("", kMoreThanAll)) {
    row.id = 0;
    auto path = row.path;
    rows.emplace(std::move(path), std::move(row));
  }
  return rows;
}

bool isHalfBuilt(const std::string& folder) {
  return RawDatabase(folder + kFile).integer("PRAGMA user_version") != 0;
}

std::string unsoundness(const std::string& folder) {
  const RawDatabase database(folder + kFile);
  database.exec("PRAGMA busy_timeout = 20000");
  const auto complaint = database.complaint();
  if (complaint.empty()) return {};
  return "  the database is not sound: " + complaint + '\n';
}

}  // namespace zelnor::test
