#pragma once

#include <CLI/App.hpp>

namespace zelnor::bench {

/// Each adds its subcommands to `program`; they run while the command line is parsed, and throw
/// what goes wrong.
void addMakeTreeCommand(CLI::App& program);
void addIndexCommand(CLI::App& program);
void addQueryCommand(CLI::App& program);
void addLiveCommand(CLI::App& program);
void addReconcileCommand(CLI::App& program);
void addWindowCommands(CLI::App& program);

}  // namespace zelnor::bench
