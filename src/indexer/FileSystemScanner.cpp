#include "indexer/FileSystemScanner.h"

#include <stop_token>
#include <utility>

#include "platform/DirectoryEnumerator.h"
#include "platform/FileAttributes.h"
#include "platform/ScopeFilter.h"

namespace zelnor {

namespace {

using platform::DirectoryEnumerator;
using Stream = FileSystemScanner::Stream;

/// Ends the stream however the walk ends.
class StreamFinisher {
 public:
  explicit StreamFinisher(Stream& stream) : stream_(stream) {}
  StreamFinisher(const StreamFinisher&) = delete;
  StreamFinisher& operator=(const StreamFinisher&) = delete;
  ~StreamFinisher() { stream_.finish(); }

 private:
  Stream& stream_;
};

/// Gathers records and delivers them in batches.
class Batcher {
 public:
  Batcher(Stream& stream, std::size_t batchSize,
          const FileSystemScanner::ProgressCallback& progress)
      : stream_(stream), batchSize_(batchSize), progress_(progress) {
    batch_.reserve(batchSize_);
  }

  void add(FileRecord record) {
    batch_.push_back(std::move(record));
    ++total_;
    if (batch_.size() < batchSize_) return;
    deliver();
    batch_.reserve(batchSize_);
  }

  /// Delivers what is left.
  void finish() {
    if (!batch_.empty()) deliver();
  }

 private:
  void deliver() {
    stream_.push(std::exchange(batch_, {}));
    if (progress_) progress_(total_);
  }

  Stream& stream_;
  const std::size_t batchSize_;
  const FileSystemScanner::ProgressCallback& progress_;
  Stream::Batch batch_;
  std::int64_t total_ = 0;
};

/// Tells a visitor, if there is one, what the walk comes to.
class Announcer {
 public:
  explicit Announcer(platform::FolderVisitor* visitor) : visitor_(visitor) {}

  void willList(const std::string& folder) const {
    if (visitor_ != nullptr) visitor_->willList(folder);
  }
  void couldNotList(const std::string& folder) const {
    if (visitor_ != nullptr) visitor_->couldNotList(folder);
  }
  /// Before what is below the entry is listed.
  void enter(DirectoryEnumerator::Entry& entry) const {
    if (visitor_ == nullptr || !entry.attributes.isDirectory) return;
    const std::string path(entry.path);
    visitor_->willList(path);
    // Looked at again: it may have changed before anybody followed it.
    if (const auto attributes = platform::readAttributes(path)) entry.attributes = *attributes;
  }
  void passName(const DirectoryEnumerator::Entry& entry) const {
    if (visitor_ == nullptr || !entry.hasOtherNames) return;
    visitor_->foundName(std::string(entry.path), entry.attributes.inode);
  }
  void passUnlisted(DirectoryEnumerator& entries) const {
    if (visitor_ == nullptr) return;
    for (const auto& folder : entries.takeUnlisted()) visitor_->couldNotList(folder);
  }

 private:
  platform::FolderVisitor* visitor_;
};

void walkRoot(const std::string& root, const IndexConfiguration& config,
              const std::stop_token& stop, const Announcer& announcer, Batcher& batcher) {
  announcer.willList(platform::withoutTrailingSlashes(root));
  auto entries =
      DirectoryEnumerator::open(root, {.skipsHiddenFiles = config.skipHiddenFiles,
                                       .skipsPackageDescendants = config.skipPackageContents});
  if (!entries) return announcer.couldNotList(platform::withoutTrailingSlashes(root));
  while (!stop.stop_requested()) {
    auto entry = entries->next();
    announcer.passUnlisted(*entries);
    if (!entry) return;
    if (config.shouldExclude(entry->path)) {
      entries->skipDescendants();
      continue;
    }
    announcer.enter(*entry);
    announcer.passName(*entry);
    if (!entry->isReadable || (config.skipSymlinks && entry->attributes.isSymlink)) continue;
    batcher.add(
        FileRecord::from(std::string(entry->name), std::string(entry->path), entry->attributes));
  }
}

void walk(const std::vector<std::string>& roots, const IndexConfiguration& config,
          const std::stop_token& stop, const Announcer& announcer, Batcher& batcher) {
  for (const auto& root : roots) {
    if (stop.stop_requested()) break;
    if (!config.shouldExclude(root)) walkRoot(root, config, stop, announcer, batcher);
  }
  batcher.finish();
}

}  // namespace

FileSystemScanner::Scan FileSystemScanner::scan(
    std::vector<std::string> roots, IndexConfiguration config, ProgressCallback progressCallback,
    const tasks::Executor& executor, std::shared_ptr<platform::FolderVisitor> visitor) const {
  const auto stream = std::make_shared<Stream>(kMaxWaitingBatches);
  auto task = tasks::Task::spawn(
      executor,
      [stream, size = batchSize, roots = std::move(roots), config = std::move(config),
       progress = std::move(progressCallback),
       visitor = std::move(visitor)](std::stop_token stop) -> tasks::Async<void> {
        const StreamFinisher finisher(*stream);
        Batcher batcher(*stream, size, progress);
        walk(roots, config, stop, Announcer(visitor.get()), batcher);
        co_return;
      });
  return {.stream = stream, .walk = std::move(task)};
}

}  // namespace zelnor
