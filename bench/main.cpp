#include <cstdlib>
#include <exception>
#include <iostream>

#include <CLI/CLI.hpp>

#include "bench/Commands.h"

int main(int argc, char** argv) {
  CLI::App program("Measures how Zelnor indexes and searches.", "zelnor-bench");
  program.require_subcommand(1);
  zelnor::bench::addMakeTreeCommand(program);
  zelnor::bench::addIndexCommand(program);
  zelnor::bench::addQueryCommand(program);
  zelnor::bench::addLiveCommand(program);
  zelnor::bench::addReconcileCommand(program);
  zelnor::bench::addWindowCommands(program);
  try {
    program.parse(argc, argv);
    return EXIT_SUCCESS;
  } catch (const CLI::ParseError& error) {
    return program.exit(error);
  } catch (const std::exception& error) {
    std::cerr << "zelnor-bench: " << error.what() << "\n";
    return EXIT_FAILURE;
  }
}
