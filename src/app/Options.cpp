#include "app/Options.h"

#include <filesystem>

#include <CLI/CLI.hpp>

#include "platform/UserFolders.h"

namespace zelnor::app {

namespace {

constexpr int kUsageError = 2;

std::string absolute(const std::string& path) {
  auto folder = std::filesystem::absolute(path).lexically_normal();
  // Paths below a root are made by appending to it.
  if (!folder.has_filename() && folder.has_relative_path()) folder = folder.parent_path();
  return folder.string();
}

}  // namespace

std::variant<Options, int> Options::parse(int argc, const char* const* argv) {
  std::string index;
  std::vector<std::string> roots;
  CLI::App parser("Zelnor finds files by name.", "zelnor");
  parser
      .add_option("--index", index,
                  "Keep index and settings in this folder, apart from the user's own")
      ->type_name("DIR");
  parser
      .add_option("--root", roots, "Index this folder instead of the configured ones (repeatable)")
      ->type_name("DIR")
      ->check(CLI::ExistingDirectory);
  try {
    parser.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return parser.exit(error) == 0 ? 0 : kUsageError;
  }

  const auto folders = platform::UserFolders::current();
  Options options{folders.home, folders.data, folders.config, {}};
  if (!index.empty()) options.dataFolder = options.settingsFolder = absolute(index);
  for (const auto& root : roots) options.roots.push_back(absolute(root));
  return options;
}

}  // namespace zelnor::app
