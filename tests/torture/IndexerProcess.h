#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/ChangeStream.h"

namespace zelnor::test {

/// The indexer in a process of its own, to be stopped and killed. What it knows is in its state
/// folder.
///
/// The process is a fork that executes no other program, so whoever starts one has no threads.
class IndexerProcess {
 public:
  struct Setup {
    std::vector<std::string> roots;
    std::string stateFolder;  ///< holds the index and the settings
    platform::ChangeSourceKind source;
    std::optional<std::size_t> watchLimit;
    uid_t user = 0;  ///< whom it runs as
  };

  explicit IndexerProcess(Setup setup);
  IndexerProcess(const IndexerProcess&) = delete;
  IndexerProcess& operator=(const IndexerProcess&) = delete;
  ~IndexerProcess();

  /// Ends it without warning, and starts it again.
  void kill();
  void start();
  /// Ends it as a user does. Throws std::runtime_error if that takes too long or goes wrong.
  void quit();
  /// Has it rebuild the index, without waiting for that: from its roots, or from the first alone.
  void rebuild() const;
  void rebuildFirstRoot() const;
  /// No file of its may grow beyond so many bytes, as on a full disk; none: any may.
  void limitFiles(std::optional<std::uint64_t> bytes) const;
  void pause() const;
  void resume() const;

  /// Notes the newest event identifier, which the next process must exceed. Throws
  /// std::runtime_error if this process has died of itself.
  void check();

 private:
  Setup setup_;
  std::uint64_t newestIdentifier_ = 0;
  pid_t process_ = -1;
};

}  // namespace zelnor::test
