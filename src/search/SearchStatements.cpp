#include "search/SearchStatements.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <unicode/ubrk.h>
#include <unicode/utext.h>

namespace zelnor {

namespace {

/// The trigram index knows nothing of shorter terms.
constexpr std::ptrdiff_t kShortestIndexedTerm = 3;
/// How much of a regular expression's text its count looks for.
constexpr int kCountedCharacters = 10;

constexpr std::string_view kSelect =
    "SELECT f.id, f.name, f.path, f.size, f.mtime, f.kind, f.inode";

/// Collects the conditions of a query with their parameters, in step.
class Conditions {
 public:
  void add(std::string condition) { conditions_.push_back(std::move(condition)); }
  void add(std::string condition, Binding binding) {
    add(std::move(condition));
    bind(std::move(binding));
  }
  void bind(Binding binding) { bindings_.push_back(std::move(binding)); }

  [[nodiscard]] SelectStatement where() && {
    std::string sql;
    for (const auto& condition : conditions_) {
      sql += sql.empty() ? "WHERE " : " AND ";
      sql += condition;
    }
    return {std::move(sql), std::move(bindings_)};
  }

 private:
  std::vector<std::string> conditions_;
  std::vector<Binding> bindings_;
};

std::string containing(std::string_view text) {
  std::string pattern("%");
  pattern += text;
  return pattern += '%';
}

std::vector<std::string_view> words(std::string_view pattern) {
  std::vector<std::string_view> terms;
  while (!pattern.empty()) {
    const auto end = std::min(pattern.find(' '), pattern.size());
    if (end > 0) terms.push_back(pattern.substr(0, end));
    pattern.remove_prefix(std::min(end + 1, pattern.size()));
  }
  return terms;
}

/// Counts the bytes that begin a character. Of text that is not UTF-8 the index may see more
/// characters, never fewer.
bool isIndexed(std::string_view term) {
  const auto continues = [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
  };
  return std::count_if(term.begin(), term.end(), std::not_fn(continues)) >= kShortestIndexedTerm;
}

/// The term as a phrase that is looked for in names alone. Only quotes mean anything inside a
/// phrase.
std::string phrase(std::string_view term) {
  std::string quoted = "name:\"";
  for (const char byte : term) {
    if (byte == '"') quoted += '"';
    quoted += byte;
  }
  return quoted += '"';
}

void addContains(Conditions& conditions, const std::string& pattern) {
  auto terms = words(pattern);
  const auto firstShort = std::ranges::stable_partition(terms, isIndexed).begin();
  if (firstShort == terms.begin()) return conditions.add("f.name LIKE ?", containing(pattern));

  std::string match;
  for (auto term = terms.begin(); term != firstShort; ++term) {
    if (!match.empty()) match += ' ';
    match += phrase(*term);
  }
  conditions.add("f.id IN (SELECT rowid FROM files_fts WHERE files_fts MATCH ?)", std::move(match));
  for (auto term = firstShort; term != terms.end(); ++term) {
    conditions.add("f.name LIKE ?", containing(*term));
  }
}

std::string without(std::string text, std::string_view part) {
  for (auto found = text.find(part); found != std::string::npos; found = text.find(part, found)) {
    text.erase(found, part.size());
  }
  return text;
}

/// The first characters as a reader counts them: a letter and its accents are one.
std::string_view firstCharacters(std::string_view text, int count) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UText, decltype(&utext_close)> source(
      utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status),
      utext_close);
  const std::unique_ptr<UBreakIterator, decltype(&ubrk_close)> characters(
      ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status), ubrk_close);
  ubrk_setUText(characters.get(), source.get(), &status);
  if (U_FAILURE(status)) return text;
  int end = 0;
  for (int taken = 0; taken < count && end != UBRK_DONE; ++taken) end = ubrk_next(characters.get());
  return end == UBRK_DONE ? text : text.substr(0, static_cast<std::size_t>(end));
}

void addRegularExpression(Conditions& conditions, const std::string& text) {
  if (text.empty()) return conditions.add("1=1");
  const auto pattern = without(without(text, "r:"), "re:");
  conditions.add("f.name LIKE ?", containing(firstCharacters(pattern, kCountedCharacters)));
}

void addMode(Conditions& conditions, const SearchQuery& query) {
  switch (query.mode.kind) {
    case SearchMode::Kind::fts:
      return addContains(conditions, query.mode.pattern);
    case SearchMode::Kind::glob:
      return conditions.add("lower(f.name) GLOB lower(?)", query.mode.pattern);
    case SearchMode::Kind::regex:
      return addRegularExpression(conditions, query.text);
    case SearchMode::Kind::empty:
      break;
  }
}

void addCategory(Conditions& conditions, FileTypeCategory category) {
  if (category == FileTypeCategory::folder) return conditions.add("f.kind = 1");
  std::string placeholders;
  for (const auto extension : extensionsForCategory(category)) {
    placeholders += placeholders.empty() ? "?" : ", ?";
    conditions.bind(std::string(extension));
  }
  if (placeholders.empty()) return;
  conditions.add("lower(substr(f.name, instr(f.name, '.') + 1)) IN (" + placeholders + ")");
}

void addFilter(Conditions& conditions, const SearchFilter& filter, Date now) {
  addCategory(conditions, filter.category);
  if (const auto size = filter.minSize()) conditions.add("f.size >= ?", *size);
  if (const auto size = filter.maxSize()) conditions.add("f.size <= ?", *size);
  if (const auto date = filter.fromDate(now))
    conditions.add("f.mtime >= ?", date->wholeUnixSeconds());
  if (const auto date = filter.toDate()) conditions.add("f.mtime <= ?", date->wholeUnixSeconds());
}

std::string_view sortColumn(SortField field) {
  switch (field) {
    case SortField::name:
      return "lower(f.name)";
    case SortField::path:
      return "f.path";
    case SortField::size:
      return "f.size";
    case SortField::date:
      return "f.mtime";
    case SortField::relevance:
      break;
  }
  return {};
}

std::string orderClause(SortField field, bool ascending) {
  if (field == SortField::relevance) return {};
  return "ORDER BY " + std::string(sortColumn(field)) + (ascending ? " ASC" : " DESC");
}

std::string pageClause(std::int64_t limit, std::int64_t offset) {
  return "LIMIT " + std::to_string(limit) + " OFFSET " + std::to_string(offset);
}

}  // namespace

std::vector<std::string_view> extensionsForCategory(FileTypeCategory category) {
  const auto set = extensions(category);
  return {set.begin(), set.end()};
}

SelectStatement buildWhereClause(const SearchQuery& query, Date now) {
  if (query.mode.kind == SearchMode::Kind::empty) return {};
  Conditions conditions;
  addMode(conditions, query);
  addFilter(conditions, query.filter, now);
  return std::move(conditions).where();
}

SelectStatement buildSearchSQL(const SearchQuery& query, std::int64_t limit, std::int64_t offset,
                               Date now) {
  const auto select = std::string(kSelect);
  const auto page = pageClause(limit, offset);
  if (query.mode.kind == SearchMode::Kind::empty) return {select + " FROM files f " + page, {}};
  auto statement = buildWhereClause(query, now);
  statement.sql = select + "\nFROM files f\n" + statement.sql + "\n" +
                  orderClause(query.sortBy, query.sortAscending) + "\n" + page;
  return statement;
}

SelectStatement buildCountSQL(const SearchQuery& query, Date now) {
  auto statement = buildWhereClause(query, now);
  statement.sql = "SELECT COUNT(*) FROM files f " + statement.sql;
  return statement;
}

}  // namespace zelnor
