#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "bench/Figures.h"
#include "bench/TreeMaker.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::bench {
namespace {

struct PipeCloser {
  void operator()(FILE* pipe) const { pclose(pipe); }
};

/// What `command` writes to its standard output.
std::string outputOf(const std::string& command) {
  const std::unique_ptr<FILE, PipeCloser> pipe(popen(command.c_str(), "r"));
  std::string output;
  for (int c = std::fgetc(pipe.get()); c != EOF; c = std::fgetc(pipe.get())) {
    output += static_cast<char>(c);
  }
  return output;
}

TEST(TypingProgram, TypesIntoTheWindowUntilTheTreeIsIndexed) {
  constexpr std::uint64_t kEntries = 300;
  const test::TemporaryFolder tree;
  makeTree(tree.path(), TreePlan(kEntries, /*seed=*/1));
  setenv("QT_QPA_PLATFORM", "offscreen", /*overwrite=*/1);
  const auto output =
      outputOf(std::string(ZELNOR_BENCH) + " typing --json --text a " + tree.path());
  const auto json = nlohmann::ordered_json::parse(output, nullptr, /*allow_exceptions=*/false);
  ASSERT_FALSE(json.is_discarded()) << output;
  const auto figures = json["figures"].get<Figures>();
  for (const auto& figure : figures) EXPECT_GT(figure.value, 0.0) << figure.name;
  EXPECT_EQ(figures.at(0).value, static_cast<double>(kEntries));
}

}  // namespace
}  // namespace zelnor::bench
