#include "cli/IndexLocation.h"

#include <filesystem>

#include "cli/Failure.h"
#include "platform/UserFolders.h"

namespace zelnor::cli {

IndexLocation IndexLocation::find(const std::optional<std::string>& folder) {
  if (folder && folder->empty()) throw Failure("--index: give the folder of an index");
  if (folder) {
    const auto absolute = platform::absolutePath(*folder);
    return {absolute, absolute, /*isUsers=*/false};
  }
  const auto folders = platform::UserFolders::current();
  return {folders.data, folders.config, /*isUsers=*/true};
}

void IndexLocation::requireIndex() const {
  std::error_code error;
  if (std::filesystem::exists(databasePath(), error)) return;
  // A folder that cannot be looked into is another matter than one without an index.
  if (error && error != std::errc::no_such_file_or_directory &&
      error != std::errc::not_a_directory) {
    throw Failure("cannot read " + databasePath() + ": " + error.message());
  }
  const auto option = isUsers ? std::string() : " --index '" + dataFolder + "'";
  throw Failure("no index in " + dataFolder + " yet: run zelnor-find" + option + " --rebuild");
}

}  // namespace zelnor::cli
