#pragma once

#include <CLI/App.hpp>

namespace zelnor::bench {

/// Each adds one subcommand to `program`; it runs while the command line is parsed, and throws what
/// goes wrong.
void addMakeTreeCommand(CLI::App& program);
void addIndexCommand(CLI::App& program);
void addQueryCommand(CLI::App& program);
void addLiveCommand(CLI::App& program);
void addReconcileCommand(CLI::App& program);
void addTypingCommand(CLI::App& program);

}  // namespace zelnor::bench
