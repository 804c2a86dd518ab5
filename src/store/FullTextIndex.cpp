#include "store/FullTextIndex.h"

#include <algorithm>

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

void FullTextIndex::remove(std::vector<Row> rows) {
  // FTS5 flushes its pending terms whenever a row id is smaller than the one before.
  std::ranges::sort(rows, {}, &Row::id);
  for (const auto& row : rows) run(remove_, row.id, row.name, row.path);
}

void FullTextIndex::move(std::vector<Move> moves) {
  std::ranges::sort(moves, {}, [](const Move& move) { return move.row.id; });
  for (const auto& [row, path] : moves) {
    run(remove_, row.id, row.name, row.path);
    run(add_, row.id, row.name, path);
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

void FullTextIndex::configure(const std::string& option, int value) {
  // Options are stored in the index, so they are only written where they differ.
  Statement stored(connection_, "SELECT v FROM files_fts_config WHERE k = ?");
  stored.bind(/*index=*/1, std::string_view(option));
  if (stored.step() && stored.integer(/*column=*/0) == value) return;
  stored.reset();
  SchemaManager::exec(connection_, "INSERT INTO files_fts(files_fts, rank) VALUES('" + option +
                                       "', " + std::to_string(value) + ")");
}

}  // namespace zelnor
