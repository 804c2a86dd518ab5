#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "indexer/FSEventsMonitor.h"
#include "platform/HandoverGate.h"
#include "platform/IndexView.h"
#include "store/FileRecord.h"

namespace zelnor::test {

/// An index in memory that applies changes as the real one does and outlives its process in a
/// journal. Thread-safe.
class MemoryIndex final : public platform::IndexView,
                          public std::enable_shared_from_this<MemoryIndex> {
 public:
  using Rows = std::map<std::string, FileRecord>;

  /// Reads what is in the journal; what was half written is dropped.
  explicit MemoryIndex(const std::string& journal);
  ~MemoryIndex() override;
  MemoryIndex(const MemoryIndex&) = delete;
  MemoryIndex& operator=(const MemoryIndex&) = delete;

  void apply(const std::vector<FSEventItem>& items);
  /// Replaces everything.
  void rebuild(const std::vector<FileRecord>& records);

  [[nodiscard]] Rows rows() const;
  platform::HandoverGate& gate() { return gate_; }

  /// The largest event identifier of all times; throws std::logic_error if `identifier` is not
  /// larger.
  void advanceIdentifier(std::uint64_t identifier);

  std::unique_ptr<platform::IndexCursor> open(std::stop_token stop) override;
  std::vector<std::string> pathsWithInode(std::uint64_t inode, std::stop_token stop) override;

 private:
  friend class MemoryCursor;
  void replay(const std::string& text);
  void append(const std::string& entries);
  [[nodiscard]] std::optional<FileRecord> firstFrom(const std::string& path) const;

  mutable std::mutex mutex_;
  Rows rows_;
  std::uint64_t lastIdentifier_ = 0;
  int journal_ = -1;
  platform::HandoverGate gate_;
};

}  // namespace zelnor::test
