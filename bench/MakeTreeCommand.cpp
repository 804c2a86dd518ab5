#include <chrono>
#include <cstdint>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "bench/Commands.h"
#include "bench/TreeMaker.h"

namespace zelnor::bench {
namespace {

struct MakeTreeOptions {
  std::string folder;
  std::uint64_t entries = 0;
  std::uint64_t seed = 1;
};

void runMakeTree(const MakeTreeOptions& options) {
  const auto start = std::chrono::steady_clock::now();
  const auto made = makeTree(options.folder, TreePlan(options.entries, options.seed));
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  std::cout << made << " entries in " << options.folder << " (" << std::fixed
            << std::setprecision(1) << took.count() << " s)\n";
}

}  // namespace

void addMakeTreeCommand(CLI::App& program) {
  const auto options = std::make_shared<MakeTreeOptions>();
  auto* const command =
      program.add_subcommand("make-tree", "Make a realistic tree of empty (sparse) files");
  command->add_option("DIR", options->folder, "Where; must be empty or missing")->required();
  command->add_option("N", options->entries, "How many entries")->required();
  command->add_option("--seed", options->seed, "Same seed, same tree")->capture_default_str();
  command->callback([options] { runMakeTree(*options); });
}

}  // namespace zelnor::bench
