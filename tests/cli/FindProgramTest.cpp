#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <spawn.h>

#include "platform/FileLock.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::cli {
namespace {

struct Outcome {
  int status;
  std::string output;
  std::string errors;
};

std::string content(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Where a process reads and writes, and what it runs with.
class Spawn {
 public:
  Spawn() { posix_spawn_file_actions_init(&actions_); }
  Spawn(const Spawn&) = delete;
  Spawn& operator=(const Spawn&) = delete;
  ~Spawn() { posix_spawn_file_actions_destroy(&actions_); }

  void open(int descriptor, const std::string& path, int flags) {
    posix_spawn_file_actions_addopen(&actions_, descriptor, path.c_str(), flags, S_IRUSR | S_IWUSR);
  }
  /// The exit status, or -1 if a signal ended it.
  int run(std::vector<std::string> arguments, std::vector<std::string> environment) {
    pid_t process = 0;
    if (posix_spawn(&process, arguments[0].c_str(), &actions_, nullptr, pointers(arguments).data(),
                    pointers(environment).data()) != 0) {
      return -1;
    }
    int state = 0;
    waitpid(process, &state, 0);
    return WIFEXITED(state) ? WEXITSTATUS(state) : -1;
  }

 private:
  static std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> list;
    list.reserve(texts.size() + 1);
    for (auto& text : texts) list.push_back(text.data());
    list.push_back(nullptr);
    return list;
  }
  posix_spawn_file_actions_t actions_{};
};

/// A user with an empty home, in which the program that ships is run.
class FindProgram : public testing::Test {
 protected:
  Outcome run(std::vector<std::string> arguments, const std::string& outputPath = {}) {
    const auto output = outputPath.empty() ? home_ / "out" : outputPath;
    Spawn spawn;
    spawn.open(STDIN_FILENO, input_, O_RDONLY);
    spawn.open(STDOUT_FILENO, output, O_WRONLY | O_CREAT | O_TRUNC);
    spawn.open(STDERR_FILENO, home_ / "err", O_WRONLY | O_CREAT | O_TRUNC);
    arguments.insert(arguments.begin(), ZELNOR_FIND);
    const int status = spawn.run(arguments, {"HOME=" + home_.path()});
    return {status, outputPath.empty() ? content(output) : "", content(home_ / "err")};
  }
  std::vector<std::string> find(std::vector<std::string> arguments) {
    std::istringstream output(run(std::move(arguments)).output);
    std::vector<std::string> lines;
    for (std::string line; std::getline(output, line);) lines.push_back(line);
    std::ranges::sort(lines);
    return lines;
  }
  /// Every error is one line with status 2.
  void expectError(const Outcome& outcome, const std::string& part) {
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_TRUE(outcome.errors.starts_with("zelnor-find: ")) << outcome.errors;
    EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
    EXPECT_NE(outcome.errors.find(part), std::string::npos) << outcome.errors;
  }

  test::TemporaryFolder home_;
  test::TemporaryFolder tree_;
  std::string input_ = "/dev/null";
  const std::string usersIndex_ = home_ / ".local/share/Zelnor";
};

using Lines = std::vector<std::string>;

TEST_F(FindProgram, IndexesTheHomeFolderAndFindsWhatIsInIt) {
  home_.file("report.pdf", "12345");
  home_.file("deep/er/Report.txt");
  EXPECT_EQ(run({"--rebuild"}).status, 0);
  EXPECT_EQ(find({"report"}), (Lines{home_ / "deep/er/Report.txt", home_ / "report.pdf"}));
  EXPECT_EQ(find({"report", "--category", "document", "-c"}), (Lines{"2"}));
  EXPECT_EQ(find({"re*", "--sort", "size", "-n1", "--desc"}), (Lines{home_ / "report.pdf"}));
  EXPECT_EQ(find({"-c", "r:^report"}), (Lines{"2"}));
  EXPECT_EQ(find({"-n1", "r:^report"}).size(), 1U);
  EXPECT_EQ(run({"no such name"}).status, 1);
  EXPECT_EQ(run({"-c", "no such name"}).output, "0\n");
}

TEST_F(FindProgram, AnIndexNamedByItsFolderTouchesNothingOfTheUsers) {
  tree_.file("in/a.png");
  tree_.file("in/.hidden/b.png");
  tree_.file("out/c.png");
  const auto index = home_ / "index";
  const Lines everything{"--index", index, "--rebuild", "--root", tree_.path(), "-c", "*.png"};
  EXPECT_EQ(run(everything).output, "3\n");
  auto less = everything;
  less.insert(less.end(), {"--skip-hidden", "--exclude", tree_ / "out"});
  EXPECT_EQ(run(less).output, "1\n");
  EXPECT_EQ(run(everything).output, "3\n") << "options hold for one rebuild";
  EXPECT_FALSE(std::filesystem::exists(usersIndex_));
  EXPECT_FALSE(std::filesystem::exists(home_ / ".config"));

  const auto status = run({"--index", index, "--status", "--json"}).output;
  EXPECT_NE(status.find(R"("entries":6,)"), std::string::npos) << status;
  EXPECT_NE(status.find(R"("roots":[")" + tree_.path() + "\"]"), std::string::npos) << status;
}

TEST_F(FindProgram, RecordsARootWhoseNameIsNotUtf8) {
  const auto root = tree_.folder("caf\xE9");
  tree_.file("caf\xE9/a.png");
  const auto index = home_ / "index";
  EXPECT_EQ(run({"--index", index, "--rebuild", "--root", root, "-c", "*.png"}).output, "1\n");
  const auto lines = find({"--index", index, "--status"});
  EXPECT_NE(std::ranges::find(lines, "root:     " + root), lines.end());
  const auto object = run({"--index", index, "--status", "--json"}).output;
  EXPECT_NE(object.find(R"("roots":[")" + tree_ / R"(caf\udce9"])"), std::string::npos) << object;
}

TEST_F(FindProgram, PrintsMoreThanOnePage) {
  for (int i = 0; i < 250; ++i) tree_.file("file" + std::to_string(i));
  run({"--rebuild", "--root", tree_.path()});
  EXPECT_EQ(find({"file"}).size(), 200U);
  EXPECT_EQ(find({"-n0", "file"}).size(), 250U);
  EXPECT_EQ(find({"-n", "210", "file"}).size(), 210U);
}

TEST_F(FindProgram, CountsWhatTheListOfAnExpressionWouldHold) {
  for (int i = 0; i < 250; ++i) tree_.file("report_" + std::to_string(i));
  tree_.file("^report_[0");  // holds the text of the expression, or its beginning
  run({"--rebuild", "--root", tree_.path()});
  for (const auto* const limit : {"-n1", "-n0"}) {
    EXPECT_EQ(run({"-c", limit, "r:^report_[0-9]+$"}).output, "250\n");
  }
  EXPECT_EQ(find({"-n0", "r:^report_[0-9]+$"}).size(), 250U);
}

TEST_F(FindProgram, SaysThatAnExpressionTookTooLongOnSomeNames) {
  tree_.file(std::string(200, 'a') + "b");
  tree_.file("aaa");
  run({"--rebuild", "--root", tree_.path()});
  const std::vector<std::pair<Lines, std::string>> cases{{{"r:(a+)+$"}, tree_ / "aaa"},
                                                         {{"-c", "r:(a+)+$"}, "1"}};
  for (const auto& [arguments, line] : cases) {
    const auto outcome = run(arguments);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, line + "\n");
    EXPECT_EQ(outcome.errors,
              "zelnor-find: there may be more matches: some names took too long to look at\n");
  }
  EXPECT_EQ(run({"r:a$"}).errors, "");
}

TEST_F(FindProgram, AnswersEachLineOfStandardInput) {
  tree_.file("one.txt");
  tree_.file("two.txt");
  run({"--rebuild", "--root", tree_.path()});
  input_ = tree_.file("queries", "one\n\nnothing here\ntwo");
  EXPECT_EQ(run({"--stdin"}).output, tree_ / "one.txt" + "\n" + tree_ / "two.txt" + "\n");
  input_ = tree_.file("queries", "r:(\ntwo\n");
  const auto outcome = run({"--stdin", "-c"});
  EXPECT_EQ(outcome.output, "1\n");
  EXPECT_EQ(outcome.status, 2);
}

TEST_F(FindProgram, SaysWhatToDoWhenItCannot) {
  expectError(run({"x"}), "--rebuild");
  expectError(run({"--status"}), "--rebuild");
  expectError(run({}), "--help");
  expectError(run({"--rebuild", "--root", tree_ / "missing"}), "missing");
  expectError(run({"--rebuild", "--index", tree_.file("file")}), "--index");
  run({"--rebuild", "--root", tree_.path()});
  expectError(run({""}), "--help");
  expectError(run({"r:("}), "regular expression");
  const auto lock = platform::FileLock::tryAcquire(usersIndex_ + "/index.lock");
  ASSERT_TRUE(lock);
  expectError(run({"--rebuild"}), "another rebuild");
  EXPECT_EQ(run({"-c", "x"}).status, 1) << "searching goes on meanwhile";
  std::ofstream(usersIndex_ + "/index.sqlite") << "no database";
  expectError(run({"x"}), "--rebuild");
}

TEST_F(FindProgram, SaysThatTheResultsCannotBeWritten) {
  tree_.file("name");
  run({"--rebuild", "--root", tree_.path()});
  expectError(run({"name"}, "/dev/full"), "cannot write");
}

TEST_F(FindProgram, EndsQuietlyWhenItsReaderGoesAway) {
  // More than a pipe holds.
  for (int i = 0; i < 400; ++i) tree_.file("name" + std::to_string(i) + std::string(200, 'x'));
  run({"--rebuild", "--root", tree_.path()});
  Spawn spawn;
  spawn.open(STDERR_FILENO, home_ / "err", O_WRONLY | O_CREAT | O_TRUNC);
  const auto script = "{ " ZELNOR_FIND " -n0 --json name; echo $? > \"$HOME\"/status; } | true";
  spawn.run({"/bin/sh", "-c", script}, {"HOME=" + home_.path()});
  EXPECT_EQ(content(home_ / "status"), "0\n");
  EXPECT_EQ(content(home_ / "err"), "");
}

}  // namespace
}  // namespace zelnor::cli
