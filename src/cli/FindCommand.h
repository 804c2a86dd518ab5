#pragma once

#include <string>

#include "cli/ExitStatus.h"
#include "cli/IndexLocation.h"
#include "cli/Options.h"
#include "cli/StandardOutput.h"
#include "search/SearchEngine.h"
#include "store/DatabaseManager.h"
#include "tasks/RunLoop.h"
#include "tasks/ThreadPool.h"

namespace zelnor::cli {

/// Answers queries from an index, of which nothing is written.
class FindCommand {
 public:
  /// Opens the index. Throws Failure if there is none, DatabaseError if it cannot be read.
  FindCommand(const Options& options, const IndexLocation& location, StandardOutput& output);

  /// Prints what the text finds. Says on standard error if there may be more. Throws Failure for a
  /// text with nothing to find and for a regular expression that does not compile, DatabaseError,
  /// and what the output throws.
  ExitStatus find(const std::string& text);

  /// Answers each line of standard input. A query that cannot be answered is reported, and the next
  /// one answered.
  ExitStatus answerStandardInput();

  /// The number of entries in the index.
  std::int64_t entryCount() { return loop_.await(engine_.totalIndexedCount()); }

 private:
  std::int64_t count(const SearchQuery& query);
  std::vector<SearchResult> expressionMatches(const SearchQuery& query);
  std::int64_t printExpressionMatches(const SearchQuery& query);
  std::int64_t printPages(const SearchQuery& query);
  void print(const std::vector<SearchResult>& results);
  ExitStatus answer(const std::string& line);

  const Options& options_;
  StandardOutput& output_;
  tasks::RunLoop loop_;
  tasks::ThreadPool pool_;
  DatabaseManager database_;
  SearchEngine engine_;
};

}  // namespace zelnor::cli
