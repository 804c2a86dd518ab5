#include <iostream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "bench/BareWalk.h"
#include "bench/Commands.h"
#include "bench/ReconcileMeasurements.h"
#include "bench/SourceOption.h"

namespace zelnor::bench {
namespace {

struct ReconcileOptions {
  std::string tree;
  int repeat = 3;
  FollowedIndex::Source source;
  bool json = false;
};

void runReconcile(const ReconcileOptions& options) {
  bareWalk(options.tree);  // What the first walk reads from the disk the later ones find in memory.
  const auto figures = measureReconciling(options.tree, options.repeat, options.source);
  std::cout << text(figures, {{"tree", options.tree}, {"repeat", options.repeat}}, options.json);
}

}  // namespace

void addReconcileCommand(CLI::App& program) {
  const auto options = std::make_shared<ReconcileOptions>();
  auto* const command = program.add_subcommand(
      "reconcile", "Compare catching up with an unchanged tree after a start with a bare walk");
  command->add_option("DIR", options->tree, "The tree")->required()->check(CLI::ExistingDirectory);
  command->add_option("--repeat", options->repeat, "Runs, of which medians are shown")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  addSourceOption(*command, options->source);
  command->add_flag("--json", options->json, "Print JSON");
  command->callback([options] { runReconcile(*options); });
}

}  // namespace zelnor::bench
