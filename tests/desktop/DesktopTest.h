#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <QProcess>

#include "tests/desktop/Accessible.h"
#include "tests/desktop/Session.h"
#include "tests/desktop/Waiting.h"
#include "tests/desktop/XClient.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::test {

/// The program as its user has it: started in a desktop, with a home of its own, and driven by keys
/// and clicks. A test that fails leaves a picture of the screen.
class DesktopTest : public testing::Test {
 protected:
  static constexpr const char* kPanel = "Zelnor";
  static constexpr const char* kSettings = "Zelnor 偏好设置";

  DesktopTest();
  ~DesktopTest() override;
  void TearDown() override;

  void start(const QStringList& arguments = {});
  /// Starts it once more; answers the exit status.
  int startAgain(const QStringList& arguments = {});
  /// By the means of the program; answers whether it ended at once and well.
  bool quit();
  bool endsBy(int signal);
  [[nodiscard]] bool isRunning() const;
  [[nodiscard]] std::string output();
  /// A file of the home.
  [[nodiscard]] std::string read(const std::string& name) const;

  /// Waits until the index is followed, which is the last thing a start does.
  bool follows();
  /// Waits until the panel is shown and has the keyboard.
  bool panelComes();
  bool panelGoes();
  /// Waits until a row of the list, or whatever has this name, is on the screen.
  static bool shows(const std::string& name);
  static bool showsNot(const std::string& name);
  /// Clicks into the middle of what has this name.
  bool click(const std::string& name);
  /// What is written in the search field.
  [[nodiscard]] static std::string query();
  /// Waits until the search field has the caret.
  static bool hasCaret();

  const TemporaryFolder home_;
  Session& session_ = Session::instance();
  XClient client_;

 private:
  bool ends();

  std::unique_ptr<QProcess> program_;
  std::string output_;  ///< on standard output, so far
};

}  // namespace zelnor::test
