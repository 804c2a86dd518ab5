#pragma once

#include <cstdint>
#include <string>

#include "platform/FileAttributes.h"
#include "platform/FileDescriptor.h"
#include "platform/ScopeFilter.h"

namespace zelnor::platform {

/// What a look at one path finds.
struct EntryState {
  enum class Presence : std::uint8_t {
    present,
    gone,    ///< the file system says that it is not there
    unknown  ///< it cannot be looked at just now: no permission, an I/O error
  };

  Presence presence = Presence::unknown;
  bool isReadable = false;     ///< by the current user; for a link: the link itself
  bool hasOtherNames = false;  ///< several hard links; not a folder
  bool isBehindLink = false;   ///< the path is a link that was followed
  bool isMountPoint = false;
  std::uint64_t mount = 0;  ///< which mount it was reached through, unique while mounted
  FileAttributes attributes;
  /// Changes whenever the folder's list of entries does, stat(2) st_ctim; nanoseconds since 1970.
  std::int64_t statusChange = 0;

  [[nodiscard]] bool isPresent() const { return presence == Presence::present; }
  [[nodiscard]] bool isFolder() const { return isPresent() && attributes.isDirectory; }
};

/// Looks at the entry at `path`, of any length; a link is not followed.
EntryState examine(const std::string& path);
/// The same for what `path` leads to when it is a link.
EntryState examineTarget(const std::string& path);

/// Whether the user may list the folder at `path` and look at what is in it.
bool canLookInto(const std::string& path);

EntryKind kindOf(const FileAttributes& attributes);

/// Opens the folder at `path`, of any length, only as a place (O_PATH); none if there is no folder.
/// A link in its place is followed if `followsLink`.
FileDescriptor openFolder(const std::string& path, bool followsLink);

}  // namespace zelnor::platform
