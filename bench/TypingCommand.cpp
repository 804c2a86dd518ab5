#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <CLI/CLI.hpp>

#include "bench/Commands.h"

namespace zelnor::bench {
namespace {

/// The program beside this one that has a window; so that no other measurement carries Qt along.
[[noreturn]] void becomeTypingProgram(std::vector<std::string> arguments) {
  const auto program =
      std::filesystem::read_symlink("/proc/self/exe").replace_filename("zelnor-bench-typing");
  arguments.insert(arguments.begin(), program.string());
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (auto& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  execv(program.c_str(), pointers.data());
  throw std::system_error(errno, std::generic_category(), program.string());
}

}  // namespace

void addTypingCommand(CLI::App& program) {
  auto* const command =
      program.add_subcommand("typing", "Measure typing into the window while a tree is indexed");
  command->prefix_command();
  command->set_help_flag();  // the other program has its own
  command->callback([command] { becomeTypingProgram(command->remaining()); });
}

}  // namespace zelnor::bench
