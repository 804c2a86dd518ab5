#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/ChangeStream.h"
#include "platform/FileDescriptor.h"

namespace zelnor::test {

/// An indexer in a process of its own, to be stopped, killed and asked what it knows.
class IndexerProcess {
 public:
  struct Setup {
    std::vector<std::string> roots;
    std::string stateFolder;  ///< also holds the index's journal
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
  void pause() const;
  void resume() const;

  /// How the index differs from the disk, leaving out what is below `ignored`; empty if it does
  /// not. Throws std::runtime_error when the process has died of itself.
  [[nodiscard]] std::string difference(const std::vector<std::string>& ignored) const;

 private:
  Setup setup_;
  pid_t process_ = -1;
  platform::FileDescriptor connection_;
};

}  // namespace zelnor::test
