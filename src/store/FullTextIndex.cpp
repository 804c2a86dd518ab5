#include "store/FullTextIndex.h"

#include <algorithm>
#include <utility>

#include "store/SchemaManager.h"

namespace zelnor {

namespace {

// FTS5's own defaults.
constexpr int kAutomerge = 4;
constexpr int kCrisismerge = 16;
// A flush makes a piece of about a megabyte of pending terms, and a search looks into every piece.
// Beyond this number (some two million files) they are merged even during a bulk load.
constexpr int kBulkCrisismerge = 1000;
// Pages written per step: short enough to stop soon, and to keep the log short.
constexpr int kMergeStepPages = 250;

void run(Statement& statement, std::int64_t id, const std::string& name, const std::string& path) {
  statement.bind(/*index=*/1, id);
  statement.bind(/*index=*/2, std::string_view(name));
  statement.bind(/*index=*/3, std::string_view(path));
  statement.run();
}

}  // namespace

FullTextIndex::Row FullTextIndex::Row::of(FileRecord record) {
  return {.id = record.id, .name = std::move(record.name), .path = std::move(record.path)};
}

FullTextIndex::FullTextIndex(sqlite3* connection)
    : connection_(connection),
      addRows_(
          connection,
          "INSERT INTO files_fts(rowid, name, path) SELECT id, name, path FROM files WHERE id > ? "
          "ORDER BY id",
          /*persistent=*/true),
      add_(connection, "INSERT INTO files_fts(rowid, name, path) VALUES (?, ?, ?)",
           /*persistent=*/true),
      remove_(connection,
              "INSERT INTO files_fts(files_fts, rowid, name, path) VALUES ('delete', ?, ?, ?)",
              /*persistent=*/true) {}

void FullTextIndex::addRowsAfter(std::int64_t id) {
  addRows_.bind(/*index=*/1, id);
  addRows_.run();
}

void FullTextIndex::change(std::vector<Change> changes) {
  // FTS5 flushes its pending terms whenever a row id is smaller than the one before.
  std::ranges::sort(changes, {}, [](const Change& change) { return change.row.id; });
  for (const auto& [row, path] : changes) {
    run(remove_, row.id, row.name, row.path);
    if (path) run(add_, row.id, row.name, *path);
  }
}

void FullTextIndex::rebuild() {
  SchemaManager::exec(connection_, "INSERT INTO files_fts(files_fts) VALUES('rebuild')");
}

void FullTextIndex::clear() {
  SchemaManager::exec(connection_, "INSERT INTO files_fts(files_fts) VALUES('delete-all')");
}

void FullTextIndex::deferMerging() {
  configure("automerge", 0);
  configure("crisismerge", kBulkCrisismerge);
}

void FullTextIndex::resumeMerging() {
  configure("automerge", kAutomerge);
  configure("crisismerge", kCrisismerge);
}

bool FullTextIndex::mergeStep() {
  const auto before = sqlite3_total_changes64(connection_);
  SchemaManager::exec(connection_, "INSERT INTO files_fts(files_fts, rank) VALUES('merge', " +
                                       std::to_string(kMergeStepPages) + ")");
  // The statement itself counts as one change (FTS5 manual, section 6.8).
  return sqlite3_total_changes64(connection_) - before >= 2;
}

bool FullTextIndex::isMergingDeferred() { return configured("automerge") == 0; }

std::optional<std::int64_t> FullTextIndex::configured(const std::string& option) const {
  Statement stored(connection_, "SELECT v FROM files_fts_config WHERE k = ?");
  stored.bind(/*index=*/1, std::string_view(option));
  return stored.step() ? std::optional(stored.integer(/*column=*/0)) : std::nullopt;
}

void FullTextIndex::configure(const std::string& option, int value) {
  // Options are stored in the index, so they are only written where they differ.
  if (configured(option) == value) return;
  SchemaManager::exec(connection_, "INSERT INTO files_fts(files_fts, rank) VALUES('" + option +
                                       "', " + std::to_string(value) + ")");
}

}  // namespace zelnor
