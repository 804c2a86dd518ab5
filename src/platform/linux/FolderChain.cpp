#include "platform/linux/FolderChain.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/linux/EntryStatus.h"
#include "platform/linux/LongPath.h"

namespace zelnor::platform {

namespace {

/// A process may open 1,024 files as a rule, and most of them are not ours to take.
constexpr std::size_t kMaxOpenFolders = 128;

constexpr int kToList = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
/// For a folder that has been listed already: only a place to start from, for which no permission
/// to read is needed.
constexpr int kToPass = O_PATH | O_DIRECTORY | O_CLOEXEC;

bool isOutOfDescriptors(int error) { return error == EMFILE || error == ENFILE; }

}  // namespace

std::optional<FolderChain> FolderChain::open(std::string root) {
  const auto shortPath = shorten(root);
  if (root.empty() || shortPath.rest == nullptr) return std::nullopt;
  FileDescriptor file(::openat(shortPath.folderOrCurrent(), shortPath.rest, kToList));
  const auto identity = identify(file);
  if (!identity) return std::nullopt;
  while (root.ends_with('/')) root.pop_back();
  FolderChain chain;
  chain.folders_.push_back(
      {.file = std::move(file), .identity = *identity, .pathLength = root.size()});
  chain.path_ = std::move(root);
  return chain;
}

void FolderChain::point(std::string_view name) {
  path_.resize(folders_.back().pathLength);
  path_ += '/';
  path_ += name;
}

bool FolderChain::enter(bool unlessAncestor) {
  auto file = openPointed();
  if (!file) return false;
  const auto identity = identify(file);
  if (!identity || (unlessAncestor && contains(*identity))) return false;
  folders_.push_back({.file = std::move(file), .identity = *identity, .pathLength = path_.size()});
  if (folders_.size() - firstOpen_ >= kMaxOpenFolders) closeShallowest();
  return true;
}

void FolderChain::leave() {
  const auto child = std::move(folders_.back().file);
  folders_.pop_back();
  if (folders_.empty() || folders_.back().file) return;
  folders_.back().file = reopenDeepest(child);
  firstOpen_ = folders_.size() - 1;
}

std::optional<FolderChain::Identity> FolderChain::identify(const FileDescriptor& file) {
  const auto status = readStatus(file.get());
  if (!status) return std::nullopt;
  const auto attributes = attributesFrom(*status);
  return Identity{.device = attributes.device, .inode = attributes.inode};
}

FileDescriptor FolderChain::openPointed() {
  for (;;) {
    FileDescriptor file(::openat(descriptor(), name(), kToList | O_NOFOLLOW));
    if (file || !isOutOfDescriptors(errno) || !closeShallowest()) return file;
  }
}

bool FolderChain::contains(const Identity& identity) const {
  return std::ranges::find(folders_, identity, &Folder::identity) != folders_.end();
}

/// Frees a descriptor, if there is one besides the root's and the deepest folder's.
bool FolderChain::closeShallowest() {
  if (firstOpen_ + 1 >= folders_.size()) return false;
  folders_[firstOpen_++].file.close();
  return true;
}

FileDescriptor FolderChain::reopenDeepest(const FileDescriptor& child) const {
  // If the child was moved away meanwhile, its parent is another folder.
  FileDescriptor parent(::openat(child.get(), "..", kToPass));
  return isDeepest(parent) ? std::move(parent) : stepDownFromRoot();
}

FileDescriptor FolderChain::stepDownFromRoot() const {
  FileDescriptor reached;
  int from = folders_.front().file.get();
  for (std::size_t i = 1; i < folders_.size(); ++i) {
    const auto nameBegin = folders_[i - 1].pathLength + 1;
    const auto name = path_.substr(nameBegin, folders_[i].pathLength - nameBegin);
    FileDescriptor next(::openat(from, name.c_str(), kToPass | O_NOFOLLOW));
    if (!next) return {};
    reached = std::move(next);
    from = reached.get();
  }
  return isDeepest(reached) ? std::move(reached) : FileDescriptor();
}

bool FolderChain::isDeepest(const FileDescriptor& file) const {
  return identify(file) == folders_.back().identity;
}

}  // namespace zelnor::platform
