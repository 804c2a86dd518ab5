#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "platform/HandoverGate.h"
#include "platform/IndexView.h"
#include "store/IndexReader.h"

namespace zelnor {

/// The index as the change stream sees it, on connections of its own. An index that cannot be read
/// is an error, never an empty one.
class DatabaseIndexView final : public platform::IndexView {
 public:
  /// `gate` counts the batches of changes on their way into the index in `folder`.
  DatabaseIndexView(std::string folder, std::shared_ptr<platform::HandoverGate> gate);

  std::unique_ptr<platform::IndexCursor> open(std::stop_token stop) override;
  std::optional<std::uint64_t> inodeOf(const std::string& path, std::stop_token stop) override;
  std::vector<std::string> pathsWithInode(std::uint64_t inode, std::stop_token stop) override;
  std::vector<std::string> foldersWithInode(std::uint64_t inode) override;

 private:
  const std::string folder_;
  const std::shared_ptr<platform::HandoverGate> gate_;
  std::mutex mutex_;
  IndexReader reader_;
};

}  // namespace zelnor
