#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>

#include "bench/PaintWatch.h"
#include "bench/PanelMeasurements.h"
#include "bench/Screens.h"
#include "bench/TypingMeasurements.h"
#include "platform/FileDescriptor.h"
#include "ui/Style.h"

namespace zelnor::bench {
namespace {

struct Options {
  std::string folder;
  std::string tree;
  std::string text = "report";
  bool json = false;
};

CLI::Option* addFolder(CLI::App& command, Options& options, const std::string& description) {
  return command.add_option("DIR", options.folder, description)->required();
}

/// Leaves standard output to the figures: what the application logs goes to standard error.
platform::FileDescriptor takeStandardOutput() {
  platform::FileDescriptor output(dup(STDOUT_FILENO));
  dup2(STDERR_FILENO, STDOUT_FILENO);
  return output;
}

void drawOffscreenWithoutDisplay() {
  const bool hasDisplay =
      qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
  if (!hasDisplay && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
}

std::string answer(const Figures& figures, const Options& options) {
  return text(figures,
              {{"folder", options.folder}, {"display", QApplication::platformName().toStdString()}},
              options.json);
}

/// Runs `measure` in an application with the panel's look, and prints what it answers.
template <class Measure>
void run(int argc, char** argv, ui::Style::Motion motion, const Measure& measure) {
  const auto output = takeStandardOutput();
  drawOffscreenWithoutDisplay();
  PaintWatch application(argc, argv);
  ui::applyStyle(application, motion);
  const std::string result = measure(application);
  const auto written = write(output.get(), result.data(), result.size());
  if (written != static_cast<ssize_t>(result.size())) throw std::runtime_error("cannot write");
}

void addTyping(CLI::App& program, Options& options, int argc, char** argv) {
  auto* command = program.add_subcommand("typing", "Typing while a tree is indexed");
  addFolder(*command, options, "The tree that is indexed meanwhile")->check(CLI::ExistingDirectory);
  command->add_option("--text", options.text, "What is typed")
      ->check(CLI::Validator([](const std::string& text) { return text.empty() ? "empty" : ""; },
                             "TEXT"))
      ->capture_default_str();
  command->add_flag("--json", options.json, "Print JSON");
  command->callback([&options, argc, argv] {
    run(argc, argv, ui::Style::Motion::animated, [&](PaintWatch& application) {
      const auto tree = std::filesystem::canonical(options.folder).string();
      return answer(measureTyping(application, tree, options.text), options);
    });
  });
}

void addPanel(CLI::App& program, Options& options, int argc, char** argv) {
  auto* command = program.add_subcommand("panel", "The panel on an index");
  addFolder(*command, options, "The folder that holds the index")->check(CLI::ExistingDirectory);
  command
      ->add_option("--tree", options.tree,
                   "Press the hot key also while this tree is indexed in the background")
      ->check(CLI::ExistingDirectory);
  command->add_flag("--json", options.json, "Print JSON");
  command->callback([&options, argc, argv] {
    run(argc, argv, ui::Style::Motion::animated, [&](PaintWatch& application) {
      return answer(measurePanel(application, options.folder, options.tree), options);
    });
  });
}

void addScreens(CLI::App& program, Options& options, int argc, char** argv) {
  auto* command = program.add_subcommand("screens", "Every state of the panel as a PNG file");
  addFolder(*command, options, "Where the files go");
  command->callback([&options, argc, argv] {
    run(argc, argv, ui::Style::Motion::still, [&](PaintWatch& /*application*/) {
      std::filesystem::create_directories(options.folder);
      return drawScreens(options.folder);
    });
  });
}

}  // namespace
}  // namespace zelnor::bench

int main(int argc, char** argv) {
  zelnor::bench::Options options;
  CLI::App program("Measures and draws the search panel.", "zelnor-bench");
  program.require_subcommand(1);
  constexpr int kNameAlone = 1;  // the rest is not for Qt
  zelnor::bench::addTyping(program, options, kNameAlone, argv);
  zelnor::bench::addPanel(program, options, kNameAlone, argv);
  zelnor::bench::addScreens(program, options, kNameAlone, argv);
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
