#include "app/Options.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <system_error>

#include <CLI/CLI.hpp>

#include "platform/UserFolders.h"

namespace zelnor::app {

namespace {

constexpr int kUsageError = 2;

/// A mistake on the command line, in one line for whoever made it.
class Mistake : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

std::string existingFolder(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_directory(path, error)) {
    throw Mistake("'" + path + "' is no folder that can be read");
  }
  return platform::absolutePath(path);
}

/// The folders in what is no option that the library knows.
std::vector<std::string> foldersIn(const std::vector<std::string>& rest) {
  std::vector<std::string> folders;
  bool areOptionsOver = false;
  for (const auto& word : rest) {
    if (!areOptionsOver && word == "--") {
      areOptionsOver = true;
    } else if (!areOptionsOver && word.size() > 1 && word.front() == '-') {
      throw Mistake("unknown option " + word + "; a folder that begins with '-' goes after '--'");
    } else {
      folders.push_back(existingFolder(word));
    }
  }
  return folders;
}

class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_usage(const CLI::App* /*app*/, std::string /*name*/) const override {
    return "Usage: zelnor [OPTIONS] [--] [DIR...]\n"
           "DIR is a folder to index, instead of the configured ones.\n";
  }
};

/// The command line while it is read.
class CommandLine {
 public:
  CommandLine() {
    parser_.formatter(std::make_shared<HelpFormatter>());
    // As an argument of the library's a folder such as "[a,b]" would be taken for a list.
    parser_.allow_extras();
    parser_
        .add_option("--index", index_,
                    "Keep index and settings in this folder, apart from the user's own")
        ->type_name("DIR");
    parser_.add_flag("--background", isInBackground_,
                     "Start without showing anything; the hot key and the tray show the panel");
    const auto does = [this](const char* action) {
      return [this, action](std::int64_t) { action_ = action; };
    };
    parser_.add_flag("--preferences", does("preferences"), "Show the settings");
    parser_.add_flag("--quit", does("quit"), "End the Zelnor that is running");
    const auto addRoot = [this](const std::string& path) { roots_.push_back(path); };
    parser_
        .add_option_function<std::string>("--root", addRoot,
                                          "Index this folder, as DIR does (repeatable)")
        ->type_name("DIR")
        ->multi_option_policy(CLI::MultiOptionPolicy::Throw)
        ->trigger_on_parse();
  }

  Options parse(int argc, const char* const* argv) {
    parser_.parse(argc, argv);
    const auto folders = platform::UserFolders::current();
    Options options;
    options.homeFolder = folders.home;
    options.dataFolder = folders.data;
    options.settingsFolder = folders.config;
    options.isApart = !index_.empty();
    if (options.isApart)
      options.dataFolder = options.settingsFolder = platform::absolutePath(index_);
    options.isInBackground = isInBackground_;
    options.action = action_;
    for (const auto& root : roots_) options.roots.push_back(existingFolder(root));
    for (auto& folder : foldersIn(parser_.remaining())) options.roots.push_back(std::move(folder));
    return options;
  }

  [[nodiscard]] std::string help() const { return parser_.help(); }

 private:
  CLI::App parser_{"Zelnor finds files by name.", "zelnor"};
  std::string index_;
  bool isInBackground_ = false;
  std::string action_;
  std::vector<std::string> roots_;
};

int failed(const char* mistake) {
  std::fprintf(stderr, "zelnor: %s; see zelnor --help\n", mistake);
  return kUsageError;
}

}  // namespace

std::variant<Options, int> Options::parse(int argc, const char* const* argv) {
  CommandLine commandLine;
  try {
    return commandLine.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    std::fputs(commandLine.help().c_str(), stdout);
    return 0;
  } catch (const CLI::ParseError& error) {
    return failed(error.what());
  } catch (const Mistake& mistake) {
    return failed(mistake.what());
  }
}

}  // namespace zelnor::app
