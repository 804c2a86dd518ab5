#include "cli/FindCommand.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <limits>

#include "cli/Diagnostics.h"
#include "cli/Failure.h"
#include "search/RegularExpression.h"

namespace zelnor::cli {

namespace {

/// Rows that are in memory at once.
constexpr std::int64_t kPageRows = 100'000;

void requireSomethingToFind(const SearchQuery& query) {
  if (query.mode.kind == SearchMode::Kind::empty) {
    throw Failure("nothing to search for: give a part of a name; see zelnor-find --help");
  }
  if (query.mode.kind == SearchMode::Kind::regex &&
      !RegularExpression::compile(query.mode.pattern)) {
    throw Failure("the regular expression " + query.mode.pattern +
                  " does not compile; leave out the prefix to search for the text itself");
  }
}

std::string existingIndex(const IndexLocation& location) {
  location.requireIndex();
  return location.dataFolder;
}

bool isInteractive() { return ::isatty(STDIN_FILENO) == 1 && ::isatty(STDERR_FILENO) == 1; }

}  // namespace

FindCommand::FindCommand(const Options& options, const IndexLocation& location,
                         StandardOutput& output)
    : options_(options),
      output_(output),
      pool_(tasks::processorCount()),
      database_(existingIndex(location), pool_.executor(), DatabaseManager::Access::readOnly),
      engine_(database_, pool_.executor()) {}

ExitStatus FindCommand::find(const std::string& text) {
  const auto query = options_.query(text);
  requireSomethingToFind(query);
  std::int64_t found = 0;
  if (options_.countOnly) {
    found = count(query);
    output_.write(std::to_string(found) + '\n');
  } else {
    const bool isExpression = query.mode.kind == SearchMode::Kind::regex;
    found = isExpression ? printExpressionMatches(query) : printPages(query);
  }
  output_.flush();
  return found > 0 ? ExitStatus::matches : ExitStatus::noMatches;
}

std::int64_t FindCommand::count(const SearchQuery& query) {
  if (query.mode.kind == SearchMode::Kind::regex)
    return static_cast<std::int64_t>(expressionMatches(query).size());
  return loop_.await(engine_.searchCount(query, /*stop=*/{}));
}

std::vector<SearchResult> FindCommand::expressionMatches(const SearchQuery& query) {
  // An expression's matches all come at once, whatever the limit.
  auto page = loop_.await(engine_.search(query, options_.limit, /*offset=*/0, /*stop=*/{}));
  if (page.isIncomplete) report("there may be more matches: some names took too long to look at");
  return std::move(page.results);
}

std::int64_t FindCommand::printExpressionMatches(const SearchQuery& query) {
  auto results = expressionMatches(query);
  if (std::cmp_greater(results.size(), options_.limit))
    results.resize(static_cast<std::size_t>(options_.limit));
  print(results);
  return static_cast<std::int64_t>(results.size());
}

std::int64_t FindCommand::printPages(const SearchQuery& query) {
  std::int64_t printed = 0;
  while (printed < options_.limit) {
    const auto rows = std::min(options_.limit - printed, kPageRows);
    const auto page = loop_.await(engine_.search(query, rows, printed, /*stop=*/{})).results;
    print(page);
    printed += static_cast<std::int64_t>(page.size());
    if (std::cmp_less(page.size(), rows)) break;
  }
  return printed;
}

void FindCommand::print(const std::vector<SearchResult>& results) {
  for (const auto& result : results) {
    output_.write(formatted(result.record, options_.format, output_.isTerminal()));
  }
}

ExitStatus FindCommand::answerStandardInput() {
  auto status = ExitStatus::noMatches;
  const bool prompts = isInteractive();
  if (prompts) std::cerr << "> ";
  for (std::string line; std::getline(std::cin, line);) {
    // The worst there was; matches of one query make up for none of another.
    const auto answered = answer(line);
    if (answered != ExitStatus::noMatches && status != ExitStatus::error) status = answered;
    if (prompts) std::cerr << "> ";
  }
  if (prompts) std::cerr << '\n';
  return status;
}

ExitStatus FindCommand::answer(const std::string& line) {
  if (QueryParser::parse(line) == SearchMode::empty()) return ExitStatus::noMatches;
  try {
    const auto status = find(line);
    if (status == ExitStatus::noMatches && isInteractive()) std::cerr << "no matches\n";
    return status;
  } catch (const Failure& failure) {
    report(failure.what());
  } catch (const DatabaseError& error) {
    report(described(error));
  }
  return ExitStatus::error;
}

}  // namespace zelnor::cli
