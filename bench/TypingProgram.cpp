#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

#include <CLI/CLI.hpp>

#include "bench/PaintWatch.h"
#include "bench/TypingMeasurements.h"
#include "platform/FileDescriptor.h"
#include "ui/Style.h"

namespace zelnor::bench {
namespace {

struct Options {
  std::string tree;
  std::string text = "report";
  bool json = false;
};

void addOptions(CLI::App& program, Options& options) {
  program.add_option("DIR", options.tree, "The tree that is indexed meanwhile")
      ->required()
      ->check(CLI::ExistingDirectory);
  program.add_option("--text", options.text, "What is typed")
      ->check(CLI::Validator([](const std::string& text) { return text.empty() ? "empty" : ""; },
                             "TEXT"))
      ->capture_default_str();
  program.add_flag("--json", options.json, "Print JSON");
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

int run(const Options& options, int argc, char** argv) {
  const auto output = takeStandardOutput();
  drawOffscreenWithoutDisplay();
  PaintWatch application(argc, argv);
  ui::applyStyle(application);
  const auto tree = std::filesystem::canonical(options.tree).string();
  const auto figures = measureTyping(application, tree, options.text);
  const auto result = text(figures,
                           {{"tree", options.tree},
                            {"text", options.text},
                            {"display", QApplication::platformName().toStdString()}},
                           options.json);
  const auto written = write(output.get(), result.data(), result.size());
  return written == static_cast<ssize_t>(result.size()) ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace zelnor::bench

int main(int argc, char** argv) {
  zelnor::bench::Options options;
  CLI::App program("Measures typing while the index is rebuilt.", "zelnor-bench typing");
  zelnor::bench::addOptions(program, options);
  try {
    program.parse(argc, argv);
    return zelnor::bench::run(options, argc, argv);
  } catch (const CLI::ParseError& error) {
    return program.exit(error);
  } catch (const std::exception& error) {
    std::cerr << "zelnor-bench: " << error.what() << "\n";
    return EXIT_FAILURE;
  }
}
