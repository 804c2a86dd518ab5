#include "cli/StatusCommand.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "cli/FindCommand.h"
#include "cli/RebuildCommand.h"

namespace zelnor::cli {

namespace {

struct FileState {
  std::int64_t size = 0;
  std::int64_t mtime = 0;
};

/// Zeros for a file that is not there, as SQLite's log is not between writers.
FileState stateOf(const std::string& path) {
  struct stat state{};
  if (::stat(path.c_str(), &state) != 0) return {};
  return {state.st_size, state.st_mtim.tv_sec};
}

struct IndexState {
  std::string path;
  std::int64_t entries = 0;
  FileState database;
  FileState log;
  std::vector<std::string> roots;

  /// What was written last may still be in the log.
  [[nodiscard]] std::int64_t date() const { return std::max(database.mtime, log.mtime); }
};

std::string asLines(const IndexState& index, bool forTerminal) {
  const auto shown = [&](const std::string& path) { return forTerminal ? visible(path) : path; };
  std::ostringstream text;
  text << "entries:  " << index.entries << '\n'
       << "date:     " << localTime(index.date()) << '\n'
       << "database: " << index.database.size << " bytes, " << shown(index.path) << '\n'
       << "log:      " << index.log.size << " bytes\n";
  for (const auto& root : index.roots) text << "root:     " << shown(root) << '\n';
  return text.str();
}

std::string asJson(const IndexState& index) {
  std::string roots;
  for (const auto& root : index.roots) {
    if (!roots.empty()) roots += ',';
    roots += jsonString(root);
  }
  std::ostringstream text;
  text << R"({"entries":)" << index.entries << R"(,"date":)" << index.date() << R"(,"database":)"
       << jsonString(index.path) << R"(,"databaseSize":)" << index.database.size << R"(,"logSize":)"
       << index.log.size << R"(,"roots":[)" << roots << "]}\n";
  return text.str();
}

}  // namespace

void printStatus(const Options& options, const IndexLocation& location, StandardOutput& output) {
  const auto path = location.databasePath();
  IndexState index;
  index.path = path;
  index.entries = FindCommand(options, location, output).entryCount();
  index.database = stateOf(path);
  index.log = stateOf(path + "-wal");
  index.roots = recordedConfiguration(location).includedPaths;
  const bool asObject = options.format == OutputFormat::json;
  output.write(asObject ? asJson(index) : asLines(index, output.isTerminal()));
  output.flush();
}

}  // namespace zelnor::cli
