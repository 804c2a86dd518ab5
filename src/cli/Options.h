#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/OutputFormat.h"
#include "search/SearchQuery.h"

namespace zelnor::cli {

/// What the command line asks for.
struct Options {
  /// Text to print instead of doing anything: the help, the version.
  std::string information;

  bool hasQuery = false;
  std::string queryText;  ///< the words of the command line with a space between them
  SearchFilter filter;
  SortField sortBy = SortField::relevance;
  bool sortAscending = true;

  std::int64_t limit = 200;  ///< rows to print; the greatest number for all
  bool countOnly = false;
  OutputFormat format = OutputFormat::plain;
  bool answersStandardInput = false;  ///< each line is a query

  /// Rebuild first; a field that is present takes the place of the configured one.
  bool rebuild = false;
  std::optional<std::vector<std::string>> roots;
  std::optional<std::vector<std::string>> excluded;
  std::optional<bool> skipHidden;
  std::optional<bool> skipPackages;
  std::optional<bool> skipSymlinks;

  bool status = false;
  /// The data folder to use instead of the user's.
  std::optional<std::string> index;

  /// The query on its own, or the one for a line of standard input.
  [[nodiscard]] SearchQuery query(std::string text) const {
    return SearchQuery::parsed(std::move(text), filter, sortBy, sortAscending);
  }
};

/// Reads the arguments, without the program's name. Throws Failure.
Options parseOptions(const std::vector<std::string>& arguments);

}  // namespace zelnor::cli
