#pragma once

#include <memory>
#include <string>

#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

#include "tests/support/TemporaryFolder.h"

namespace zelnor::test {

/// A desktop of the test's own: an X server without a screen that anyone sees, a session bus and a
/// window manager. What is started in it ends with the test program, however that ends.
class Session {
 public:
  /// The one of this test program, started when it is first asked for; `DISPLAY` and the bus are in
  /// our own environment from then on.
  static Session& instance();

  /// Starts `program` with this home; its output goes to `log`.
  std::unique_ptr<QProcess> start(const QString& program, const QStringList& arguments,
                                  const std::string& home, const std::string& log);
  /// Starts it, and waits for its end; answers its exit status.
  int run(const QString& program, const QStringList& arguments, const std::string& home,
          const std::string& log);

  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// Stores what the screen shows as a PNG file.
  static void saveScreen(const std::string& path);

 private:
  Session();

  const TemporaryFolder folder_;
  QProcessEnvironment environment_;
  std::unique_ptr<QProcess> server_;
  std::unique_ptr<QProcess> bus_;
  std::unique_ptr<QProcess> windowManager_;
};

}  // namespace zelnor::test
