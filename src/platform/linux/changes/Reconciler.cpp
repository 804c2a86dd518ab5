#include "platform/linux/changes/Reconciler.h"

#include <optional>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "platform/ChangeStream.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/linux/changes/EntryState.h"

namespace zelnor::platform {

namespace {

using Entry = DirectoryEnumerator::Entry;

constexpr char kAfterSlash = '/' + 1;

EntryKind kindOf(const IndexEntry& entry) {
  switch (entry.kind) {
    case IndexEntry::Kind::folder:
      return EntryKind::folder;
    case IndexEntry::Kind::link:
      return EntryKind::link;
    case IndexEntry::Kind::file:
      break;
  }
  return EntryKind::file;
}

bool isSame(const IndexEntry& known, const FileAttributes& actual) {
  return known.size == actual.size && known.mtime == actual.mtime && known.inode == actual.inode &&
         kindOf(known) == platform::kindOf(actual);
}

/// What the index knows below one folder, in order.
class KnownEntries {
 public:
  KnownEntries(const std::string& folder, IndexCursor* cursor)
      : prefix_(folder + '/'), cursor_(cursor) {
    if (cursor_ != nullptr) cursor_->seek(prefix_);
    advance();
  }

  /// Null at the end.
  [[nodiscard]] const IndexEntry* current() const { return current_ ? &*current_ : nullptr; }
  [[nodiscard]] const std::string& prefix() const { return prefix_; }

  void advance() {
    current_ = cursor_ != nullptr ? cursor_->next() : std::nullopt;
    if (current_ && !current_->path.starts_with(prefix_)) current_.reset();
  }
  /// Leaves out what is below `folder`.
  void passBelow(std::string_view folder) {
    cursor_->seek(std::string(folder) + kAfterSlash);
    advance();
  }

 private:
  std::string prefix_;
  IndexCursor* cursor_;
  std::optional<IndexEntry> current_;
};

/// One comparison.
class Merge {
 public:
  Merge(const StreamScope& scope, ReconcileVisitor& visitor, Reconciler::Depth depth,
        KnownEntries known)
      : scope_(scope), visitor_(visitor), depth_(depth), known_(std::move(known)) {}

  /// What the index knows before `path`, or all that is left, is not on disk.
  void passMissing(std::optional<std::string_view> path) {
    while (known_.current() && (!path || known_.current()->path < *path)) {
      if (const auto folder = folderNotCompared()) {
        known_.passBelow(*folder);
      } else {
        reportMissing();
        known_.advance();
      }
    }
  }

  void visit(const Entry& entry, DirectoryEnumerator& walk) {
    passMissing(entry.path);
    const bool isKnown = known_.current() != nullptr && known_.current()->path == entry.path;
    if (!scope_.includes(entry.path, platform::kindOf(entry.attributes))) {
      walk.skipDescendants();
    } else if (entry.attributes.isDirectory) {
      enter(entry, isKnown, walk);
    } else {
      compare(entry, isKnown);
    }
    if (isKnown) known_.advance();
  }

 private:
  void compare(const Entry& entry, bool isKnown) {
    // A scan records only what can be read.
    if (!entry.isReadable) {
      if (entry.hasOtherNames) {
        visitor_.foundName(std::string(entry.path), entry.attributes.inode);
      }
      if (isKnown) reportMissing();
    } else if (!isKnown) {
      report(entry, kFSEventStreamEventFlagItemCreated);
    } else if (!isSame(*known_.current(), entry.attributes)) {
      report(entry, kFSEventStreamEventFlagItemModified);
    }
  }

  void report(const Entry& entry, std::uint32_t flags) {
    if (!entry.attributes.isDirectory) flags |= kFSEventStreamEventFlagItemIsFile;
    visitor_.differs(std::string(entry.path), flags);
  }

  void enter(const Entry& entry, bool isKnown, DirectoryEnumerator& walk) {
    const std::string path(entry.path);
    if (depth_ == Reconciler::Depth::children) {
      walk.skipDescendants();
      present_.insert(path);
      const bool isSameFolder = isKnown && known_.current()->kind == IndexEntry::Kind::folder &&
                                known_.current()->inode == entry.attributes.inode;
      compare(entry, isKnown);
      if (!isSameFolder) visitor_.foundFolder(path);
      return;
    }
    visitor_.willList(path);
    if (!scope_.enters(path)) walk.skipDescendants();
    // Looked at again: it may have changed before anybody followed it.
    auto followed = entry;
    if (const auto attributes = readAttributes(path)) followed.attributes = *attributes;
    compare(followed, isKnown);
  }

  void reportMissing() {
    const auto& entry = *known_.current();
    if (!scope_.includes(entry.path, kindOf(entry))) return;
    visitor_.differs(std::string(entry.path), kFSEventStreamEventFlagItemRemoved);
  }

  /// The child folder that the current known entry is below, if that is on disk and only children
  /// are compared.
  [[nodiscard]] std::optional<std::string_view> folderNotCompared() const {
    if (depth_ == Reconciler::Depth::tree) return std::nullopt;
    const auto path = known_.current()->path;
    const auto slash = path.find('/', known_.prefix().size());
    if (slash == std::string_view::npos) return std::nullopt;
    const auto found = present_.find(std::string(path.substr(0, slash)));
    return found != present_.end() ? std::optional<std::string_view>(*found) : std::nullopt;
  }

  const StreamScope& scope_;
  ReconcileVisitor& visitor_;
  const Reconciler::Depth depth_;
  KnownEntries known_;
  std::unordered_set<std::string> present_;  ///< child folders on disk, with Depth::children
};

/// Tells a visitor of a folder in its new place, and beside each entry what was known in the old.
class MoveVisitor final : public ReconcileVisitor {
 public:
  MoveVisitor(const StreamScope& scope, ReconcileVisitor& visitor, std::size_t prefix,
              KnownEntries former)
      : scope_(scope), visitor_(visitor), prefix_(prefix), former_(std::move(former)) {}

  void willList(const std::string& folder) override { visitor_.willList(folder); }
  void couldNotList(const std::string& folder) override { visitor_.couldNotList(folder); }
  void foundName(const std::string& path, std::uint64_t inode) override {
    visitor_.foundName(path, inode);
  }
  void foundFolder(const std::string& path) override { visitor_.foundFolder(path); }
  void differs(std::string path, std::uint32_t flags) override {
    if (path.size() > prefix_) reportFormer(std::string_view(path).substr(prefix_));
    visitor_.differs(std::move(path), flags);
  }

  /// All that was known up to `place` in the folder, or all that is left.
  void reportFormer(std::optional<std::string_view> place) {
    for (; former_.current(); former_.advance()) {
      const auto& entry = *former_.current();
      if (place && entry.path.substr(former_.prefix().size()) > *place) return;
      if (!scope_.includes(entry.path, kindOf(entry))) continue;
      visitor_.differs(std::string(entry.path), kFSEventStreamEventFlagItemRemoved);
    }
  }

 private:
  const StreamScope& scope_;
  ReconcileVisitor& visitor_;
  const std::size_t prefix_;  ///< length of the folder's path and the slash
  KnownEntries former_;
};

}  // namespace

void Reconciler::reportMoved(const std::string& folder, const std::string& former,
                             IndexCursor& known) {
  MoveVisitor visitor(scope_, visitor_, folder.size() + 1, KnownEntries(former, &known));
  Reconciler(scope_, visitor, stop_).compare(folder, nullptr, Depth::tree);
  visitor.reportFormer(std::nullopt);
}

void Reconciler::compare(const std::string& folder, IndexCursor* known, Depth depth) {
  visitor_.willList(folder);
  // Whatever was known of the folder itself dates from before it was followed.
  visitor_.differs(folder, kFSEventStreamEventFlagItemModified);
  const auto& filter = scope_.filter();
  auto walk = DirectoryEnumerator::open(folder.empty() ? "/" : folder,
                                        {.skipsHiddenFiles = filter.skipsHidden,
                                         .skipsPackageDescendants = filter.skipsPackageContents});
  if (!walk) {
    visitor_.couldNotList(folder);
    return;
  }
  Merge merge(scope_, visitor_, depth, KnownEntries(folder, known));
  while (!stop_.stop_requested()) {
    const auto entry = walk->next();
    for (const auto& unlisted : walk->takeUnlisted()) visitor_.couldNotList(unlisted);
    if (!entry) {
      merge.passMissing(std::nullopt);
      return;
    }
    merge.visit(*entry, *walk);
  }
}

void Reconciler::reportAllKnown(const std::string& folder, IndexCursor& known) {
  Merge merge(scope_, visitor_, Depth::tree, KnownEntries(folder, &known));
  merge.passMissing(std::nullopt);
}

}  // namespace zelnor::platform
