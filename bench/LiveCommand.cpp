#include <iostream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "bench/BareWalk.h"
#include "bench/Commands.h"
#include "bench/LiveMeasurements.h"
#include "bench/SourceOption.h"

namespace zelnor::bench {
namespace {

struct LiveOptions {
  std::string tree;
  LiveEffort effort;
  bool json = false;
};

void runLive(const LiveOptions& options) {
  bareWalk(options.tree);  // What the first walk reads from the disk the later ones find in memory.
  auto figures = measureLive(options.tree, options.effort);
  const auto memory = measureMemoryOfFollowing(options.effort);
  figures.insert(figures.end(), memory.begin(), memory.end());
  std::cout << text(figures, {{"tree", options.tree}, {"seed", options.effort.seed}}, options.json);
}

void addEffort(CLI::App& command, LiveEffort& effort) {
  command.add_option("--changes", effort.changes, "Single changes")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  command.add_option("--rate", effort.perSecond, "Files created per second in the storm")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  command.add_option("--seconds", effort.seconds, "Length of the storm, and of idle searching")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  command.add_option("--entries", effort.entries, "Entries of the tree that is unpacked and moved")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  command.add_option("--folders", effort.folders, "Folders followed to see what memory that takes")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  command.add_option("--idle", effort.idleSeconds, "Seconds in which nothing happens")
      ->check(CLI::NonNegativeNumber)
      ->capture_default_str();
  command.add_option("--seed", effort.seed, "Same seed, same changes")->capture_default_str();
  addSourceOption(command, effort.source);
}

}  // namespace

void addLiveCommand(CLI::App& program) {
  const auto options = std::make_shared<LiveOptions>();
  auto* const command = program.add_subcommand(
      "live", "Measure how the index follows changes; they are made in a temporary folder");
  command->add_option("DIR", options->tree, "A tree that is indexed beside it; it stays as it is")
      ->required()
      ->check(CLI::ExistingDirectory);
  addEffort(*command, options->effort);
  command->add_flag("--json", options->json, "Print JSON");
  command->callback([options] { runLive(*options); });
}

}  // namespace zelnor::bench
