#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "bench/Commands.h"

namespace zelnor::bench {
namespace {

/// The program beside this one that has a window; so that no other measurement carries Qt along.
[[noreturn]] void becomeWindowProgram(std::vector<std::string> arguments) {
  const auto program =
      std::filesystem::read_symlink("/proc/self/exe").replace_filename("zelnor-bench-window");
  arguments.insert(arguments.begin(), program.string());
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (auto& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  execv(program.c_str(), pointers.data());
  throw std::system_error(errno, std::generic_category(), program.string());
}

}  // namespace

void addWindowCommands(CLI::App& program) {
  const auto add = [&program](const std::string& name, const std::string& description) {
    auto* const command = program.add_subcommand(name, description);
    command->prefix_command();
    command->set_help_flag();  // the other program has its own
    command->callback([command, name] {
      auto arguments = command->remaining();
      arguments.insert(arguments.begin(), name);
      becomeWindowProgram(std::move(arguments));
    });
  };
  add("typing", "Measure typing into the panel while a tree is indexed");
  add("panel", "Measure the panel on an index");
  add("screens", "Draw every state of the panel into PNG files");
}

}  // namespace zelnor::bench
