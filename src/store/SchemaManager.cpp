#include "store/SchemaManager.h"

#include <array>
#include <memory>
#include <string_view>

#include <sqlite3.h>

#include "store/DatabaseError.h"

namespace zelnor {

namespace {

struct SecondaryIndex {
  std::string_view name;
  std::string_view expression;
};

constexpr std::array kSecondaryIndexes{
    SecondaryIndex{"idx_files_mtime", "mtime DESC"},
    SecondaryIndex{"idx_files_kind", "kind"},
    SecondaryIndex{"idx_files_size", "size"},
    SecondaryIndex{"idx_files_inode", "inode"},
    SecondaryIndex{"idx_files_name_lower", "lower(name)"},
};

constexpr std::array kTables{
    "CREATE TABLE IF NOT EXISTS files ( "
    "id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL, path TEXT NOT NULL, "
    "size INTEGER NOT NULL DEFAULT 0, mtime INTEGER NOT NULL DEFAULT 0, kind INTEGER NOT NULL "
    "DEFAULT 0, "
    "inode INTEGER NOT NULL DEFAULT 0, UNIQUE(path) ) STRICT",
    "CREATE VIRTUAL TABLE IF NOT EXISTS files_fts USING fts5 ( "
    "name, path, content = files, content_rowid = id, tokenize = 'trigram case_sensitive 0' )",
    "CREATE TRIGGER IF NOT EXISTS files_ai AFTER INSERT ON files BEGIN "
    "INSERT INTO files_fts(rowid, name, path) VALUES (new.id, new.name, new.path); END",
    "CREATE TRIGGER IF NOT EXISTS files_ad AFTER DELETE ON files BEGIN "
    "INSERT INTO files_fts(files_fts, rowid, name, path) VALUES ('delete', old.id, old.name, "
    "old.path); END",
    "CREATE TRIGGER IF NOT EXISTS files_au AFTER UPDATE ON files BEGIN "
    "INSERT INTO files_fts(files_fts, rowid, name, path) VALUES ('delete', old.id, old.name, "
    "old.path); "
    "INSERT INTO files_fts(rowid, name, path) VALUES (new.id, new.name, new.path); END",
    "CREATE TABLE IF NOT EXISTS schema_version ( version INTEGER NOT NULL )",
    "INSERT OR IGNORE INTO schema_version(version) VALUES (1)",
};

constexpr int kMemoryMapBytes = 128 << 20;
constexpr int kPageCacheKiB = 32 << 10;

struct SqliteFree {
  void operator()(char* text) const { sqlite3_free(text); }
};

}  // namespace

void SchemaManager::exec(sqlite3* db, const std::string& sql) {
  char* text = nullptr;
  const int code = sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &text);
  const std::unique_ptr<char, SqliteFree> message(text);
  if (code != SQLITE_OK)
    throw DatabaseError::execFailed(sql, message ? message.get() : "Unknown error", code);
}

void SchemaManager::enableWAL(sqlite3* db) {
  exec(db, "PRAGMA journal_mode=WAL");
  exec(db, "PRAGMA synchronous=NORMAL");
  tuneReader(db);
}

void SchemaManager::tuneReader(sqlite3* db) {
  exec(db, "PRAGMA mmap_size=" + std::to_string(kMemoryMapBytes));
  exec(db, "PRAGMA cache_size=-" + std::to_string(kPageCacheKiB));
  exec(db, "PRAGMA temp_store=MEMORY");
  exec(db, "PRAGMA foreign_keys=ON");
}

void SchemaManager::createTables(sqlite3* db) {
  for (const auto* statement : kTables) exec(db, statement);
}

void SchemaManager::createIndexes(sqlite3* db) {
  for (const auto& index : kSecondaryIndexes) {
    exec(db, "CREATE INDEX IF NOT EXISTS " + std::string(index.name) + " ON files(" +
                 std::string(index.expression) + ")");
  }
}

void SchemaManager::dropIndexes(sqlite3* db) {
  for (const auto& index : kSecondaryIndexes)
    exec(db, "DROP INDEX IF EXISTS " + std::string(index.name));
}

}  // namespace zelnor
