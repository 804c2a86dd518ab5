#include "platform/DirectoryEnumerator.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <utility>
#include <vector>

#include "platform/ScopeFilter.h"
#include "platform/linux/EntryStatus.h"
#include "platform/linux/FolderChain.h"
#include "platform/linux/ListingStack.h"
#include "platform/linux/PseudoFileSystems.h"

// The order: within a folder the names are sorted as they are, and what is below the folder "a"
// comes where "a/" would sort, which is after "a.txt". When "a" has been listed its descent is kept
// for later, until the next name is greater than "a/". A name in between begins with "a" and a byte
// less than '/'; if it is a folder too its own descent comes before that of "a". So the descents
// that wait form a stack.

namespace zelnor::platform {

namespace {

/// Whether `folder` + "/" sorts before `name`, of which is known that it sorts after `folder`.
bool descentPrecedes(std::string_view folder, std::string_view name) {
  return !name.starts_with(folder) || name.size() == folder.size() ||
         static_cast<unsigned char>(name[folder.size()]) > '/';
}

/// Whether this is why an entry that was listed cannot be looked at: it was removed or replaced
/// meanwhile. Without an error there was no reason but the walk's own.
bool isGone(int error) {
  return error == 0 || error == ENOENT || error == ENOTDIR || error == ELOOP;
}

bool mayBeMountPoint(const struct statx& status) {
  // Before Linux 5.8 the kernel did not tell.
  const bool isTold = (status.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0;
  return !isTold || (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
}

}  // namespace

struct DirectoryEnumerator::State {
  /// A folder that was listed and is to be entered.
  struct Descent {
    std::size_t depth;  ///< of the folder that it is in
    ListingStack::Name name;
    bool mayBeMountPoint;
  };

  State(FolderChain root, Options choices) : chain(std::move(root)), options(choices) { list(); }

  std::optional<Entry> next() {
    lastEntryDescends = false;
    while (chain.depth() > 0) {
      if (isDescentNext()) {
        descend();
      } else if (listings.atEnd()) {
        listings.pop();
        chain.leave();
      } else if (auto entry = read(listings.take())) {
        return entry;
      }
    }
    return std::nullopt;
  }

  void skipDescendants() {
    if (std::exchange(lastEntryDescends, false)) descents.pop_back();
  }

  std::vector<std::string> takeUnlisted() { return std::exchange(unlisted, {}); }

 private:
  [[nodiscard]] bool isDescentNext() const {
    if (descents.empty() || descents.back().depth != chain.depth()) return false;
    return listings.atEnd() ||
           descentPrecedes(listings.text(descents.back().name), listings.text(listings.peek()));
  }

  void descend() {
    const auto descent = descents.back();
    descents.pop_back();
    chain.point(listings.text(descent.name));
    errno = 0;
    if (!chain.enter(/*unlessAncestor=*/descent.mayBeMountPoint)) {
      if (!isGone(errno)) noteUnlisted(chain.path());
      return;
    }
    list();
  }

  void list() {
    if (!listings.push(chain.descriptor(), options.skipsHiddenFiles)) noteUnlisted(chain.path());
  }

  std::optional<Entry> read(ListingStack::Name name) {
    chain.point(listings.text(name));
    const auto status = readStatus(chain.descriptor(), chain.name());
    if (!status) {
      if (!isGone(errno)) noteUnlisted(chain.path().substr(0, chain.path().rfind('/')));
      return std::nullopt;
    }
    const auto attributes = attributesFrom(*status);
    const auto path = chain.path();
    const auto entryName = path.substr(path.size() - name.length);
    if (attributes.isDirectory && isEntered(entryName, *status, attributes.device)) {
      descents.push_back({.depth = chain.depth(),
                          .name = name,
                          .mayBeMountPoint = platform::mayBeMountPoint(*status)});
      lastEntryDescends = true;
    }
    return Entry{.path = path,
                 .name = entryName,
                 .attributes = attributes,
                 .isReadable = isReadable(*status),
                 .hasOtherNames = platform::hasOtherNames(*status)};
  }

  void noteUnlisted(std::string_view folder) {
    if (unlisted.empty() || unlisted.back() != folder) unlisted.emplace_back(folder);
  }

  [[nodiscard]] bool isEntered(std::string_view name, const struct statx& folder,
                               std::uint64_t device) const {
    if (options.skipsPackageDescendants && name.ends_with(kPackageSuffix)) return false;
    if ((folder.stx_attributes & STATX_ATTR_AUTOMOUNT) != 0) return false;
    return device == chain.device() || !isOnPseudoFileSystem(chain.descriptor(), chain.name());
  }

  [[nodiscard]] bool isReadable(const struct statx& entry) const {
    if (user == 0 || S_ISLNK(entry.stx_mode)) return true;
    if (entry.stx_uid == user) return (entry.stx_mode & S_IRUSR) != 0;
    return ::faccessat(chain.descriptor(), chain.name(), R_OK, AT_EACCESS) == 0;
  }

  FolderChain chain;
  Options options;
  ListingStack listings;
  std::vector<Descent> descents;
  std::vector<std::string> unlisted;
  bool lastEntryDescends = false;  ///< the entry that `next` returned last is on top of `descents`
  uid_t user = ::geteuid();
};

std::optional<DirectoryEnumerator> DirectoryEnumerator::open(const std::string& root,
                                                             Options options) {
  auto chain = FolderChain::open(root);
  if (!chain || isOnPseudoFileSystem(chain->descriptor())) return std::nullopt;
  return DirectoryEnumerator(std::make_unique<State>(std::move(*chain), options));
}

DirectoryEnumerator::DirectoryEnumerator(std::unique_ptr<State> state) : state_(std::move(state)) {}
DirectoryEnumerator::DirectoryEnumerator(DirectoryEnumerator&&) noexcept = default;
DirectoryEnumerator& DirectoryEnumerator::operator=(DirectoryEnumerator&&) noexcept = default;
DirectoryEnumerator::~DirectoryEnumerator() = default;

std::optional<DirectoryEnumerator::Entry> DirectoryEnumerator::next() { return state_->next(); }
std::vector<std::string> DirectoryEnumerator::takeUnlisted() { return state_->takeUnlisted(); }
void DirectoryEnumerator::skipDescendants() { state_->skipDescendants(); }

}  // namespace zelnor::platform
