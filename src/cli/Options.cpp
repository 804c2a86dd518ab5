#include "cli/Options.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <memory>
#include <string_view>

#include <CLI/CLI.hpp>

#include "cli/Failure.h"

namespace zelnor::cli {

namespace {

constexpr auto kHint = "; see zelnor-find --help";

constexpr auto kDescription =
    "Finds files and folders by name in the index of Zelnor.\n"
    "Words are looked for anywhere in the name; a query with * or ? must match the whole name;\n"
    "r:EXPR is a regular expression.";

constexpr auto kFooter =
    "Exit status: 0 if anything was found, 1 if not, 2 for an error.\n"
    "A query that begins with '-' goes after '--'.";

template <class Enum>
std::string rawValues() {
  std::string list;
  for (const auto& candidate : kCases<Enum>) {
    if (!list.empty()) list += ", ";
    list += candidate.rawValue;
  }
  return list;
}

/// An option whose value is the raw value of an enumeration.
template <class Enum>
void addEnumeration(CLI::App& app, const std::string& name, Enum& value,
                    const std::string& description) {
  const auto read = [&value, name](const std::string& text) {
    const auto found = fromRawValue<Enum>(text);
    if (!found) throw Failure(name + ": '" + text + "' is none of " + rawValues<Enum>());
    value = *found;
  };
  app.add_option_function<std::string>(name, read, description + ": " + rawValues<Enum>())
      ->type_name("NAME");
}

void readLimit(const std::string& text, std::int64_t& limit) {
  const auto* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, limit);
  if (error != std::errc() || rest != end || limit < 0) {
    throw Failure("--limit: '" + text + "' is no number of rows" + kHint);
  }
  if (limit == 0) limit = std::numeric_limits<std::int64_t>::max();
}

/// The words of the query, from what is no option that the library knows.
std::vector<std::string> words(std::vector<std::string> rest) {
  const auto mark = std::ranges::find(rest, "--");
  const auto unknown = std::find_if(rest.begin(), mark, [](const std::string& word) {
    return word.size() > 1 && word.front() == '-';
  });
  if (unknown != mark) {
    throw Failure("unknown option " + *unknown + "; a query that begins with '-' goes after '--'");
  }
  if (mark != rest.end()) rest.erase(mark);
  return rest;
}

/// Leaves out of the help which options go together; an error says so when it matters.
class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_usage(const CLI::App* /*app*/, std::string /*name*/) const override {
    return "Usage: zelnor-find [OPTIONS] [--] [QUERY...]\n";
  }
  std::string make_option_opts(const CLI::Option* option) const override {
    return option->get_type_size() == 0 ? std::string() : " " + option->get_type_name();
  }
};

/// The command line while it is read.
class CommandLine {
 public:
  CommandLine() {
    app_.set_version_flag("--version", "zelnor-find " ZELNOR_VERSION);
    app_.footer(kFooter);
    app_.formatter(std::make_shared<HelpFormatter>());
    // As an argument of the library's a word such as "[a,b]" would be taken for a list.
    app_.allow_extras();
    addSearchOptions();
    addOutputOptions();
    addRebuildOptions();
    addIndexOptions();
  }

  Options parse(std::vector<std::string> arguments) {
    std::ranges::reverse(arguments);  // as the library wants them
    try {
      app_.parse(arguments);
    } catch (const CLI::CallForHelp&) {
      options_.information = app_.help();
      return options_;
    } catch (const CLI::CallForVersion& version) {
      options_.information = std::string(version.what()) + "\n";
      return options_;
    } catch (const CLI::ParseError& error) {
      throw Failure(error.what() + std::string(kHint));
    }
    finish();
    return options_;
  }

 private:
  void addSearchOptions() {
    addEnumeration(app_, "--category", options_.filter.category, "Only this type of file");
    addEnumeration(app_, "--size", options_.filter.sizePreset, "Only sizes in this range");
    addEnumeration(app_, "--date", options_.filter.datePreset,
                   "Only what was modified in this time");
    addEnumeration(app_, "--sort", options_.sortBy, "Sort by");
    app_.add_flag("--desc", descending_, "Sort in descending order");
  }

  void addOutputOptions() {
    app_.add_option_function<std::string>(
            "-n,--limit", [this](const std::string& text) { readLimit(text, options_.limit); },
            "Rows to print, 200 unless given; 0 for all")
        ->type_name("N");
    app_.add_flag("-c,--count", options_.countOnly, "Print the number of matches only");
    auto* const longFormat =
        addFormat("-l,--long", OutputFormat::longLines, "Print kind, size, time and path");
    auto* const null = addFormat("-0,--null", OutputFormat::null, "End each path with NUL");
    auto* const json = addFormat("--json", OutputFormat::json, "Print one JSON object per line");
    longFormat->excludes(null)->excludes(json);
    null->excludes(json);
  }

  CLI::Option* addFormat(const std::string& name, OutputFormat format,
                         const std::string& description) {
    return app_.add_flag_callback(name, [this, format] { options_.format = format; }, description);
  }

  void addRebuildOptions() {
    auto* const rebuild =
        app_.add_flag("--rebuild", options_.rebuild, "Build the index anew first");
    addList("--root", options_.roots, "With --rebuild: index this folder instead (repeatable)")
        ->type_name("DIR")
        ->needs(rebuild);
    addList("--exclude", options_.excluded,
            "With --rebuild: leave out paths that begin so (repeatable)")
        ->type_name("PREFIX")
        ->needs(rebuild);
    app_.add_option("--skip-packages", options_.skipPackages,
                    "With --rebuild: leave out what is in packages")
        ->type_name("BOOL")
        ->needs(rebuild);
    addSwitch("--skip-hidden", options_.skipHidden, "With --rebuild: leave out hidden entries")
        ->needs(rebuild);
    addSwitch("--skip-symlinks", options_.skipSymlinks, "With --rebuild: leave out symbolic links")
        ->needs(rebuild);
  }

  CLI::Option* addList(const std::string& name, std::optional<std::vector<std::string>>& list,
                       const std::string& description) {
    const auto append = [&list](const std::string& text) {
      if (!list) list.emplace();
      list->push_back(text);
    };
    return app_.add_option_function<std::string>(name, append, description)
        ->multi_option_policy(CLI::MultiOptionPolicy::Throw)
        ->trigger_on_parse();
  }

  CLI::Option* addSwitch(const std::string& name, std::optional<bool>& value,
                         const std::string& description) {
    return app_.add_flag_callback(name, [&value] { value = true; }, description);
  }

  void addIndexOptions() {
    app_.add_option("--index", options_.index, "Use the index in this data folder")
        ->type_name("DIR");
    auto* const status = app_.add_flag("--status", options_.status, "Describe the index");
    auto* const standardInput = app_.add_flag("--stdin", options_.answersStandardInput,
                                              "Answer each line of standard input");
    status->excludes(standardInput);
  }

  void finish() {
    options_.sortAscending = !descending_;
    for (const auto& word : words(app_.remaining())) {
      if (options_.hasQuery) options_.queryText += ' ';
      options_.queryText += word;
      options_.hasQuery = true;
    }
    if (options_.hasQuery && (options_.status || options_.answersStandardInput)) {
      throw Failure("a query cannot be combined with --status or --stdin" + std::string(kHint));
    }
    const bool doesSomething = options_.rebuild || options_.status || options_.answersStandardInput;
    if (!options_.hasQuery && !doesSomething) {
      throw Failure("nothing to search for: give a part of a name" + std::string(kHint));
    }
  }

  CLI::App app_{kDescription, "zelnor-find"};
  Options options_;
  bool descending_ = false;
};

}  // namespace

Options parseOptions(const std::vector<std::string>& arguments) {
  return CommandLine().parse(arguments);
}

}  // namespace zelnor::cli
