#pragma once

#include <cstdint>
#include <string>

#include "platform/FileDescriptor.h"

namespace zelnor::platform {

/// Numbers events: each number is larger than all before it, in this process and in those before.
///
/// Numbers are reserved in blocks: the end of a block is on disk before its first number is used,
/// so that a process that dies leaves a gap and never a repetition. Users of the same folder, also
/// in other processes, share the file. Used by one thread.
class EventIdentifiers {
 public:
  /// Numbers after `last` and after those reserved in `folder`. Without a folder, or if its file
  /// cannot be used, they begin at the time in microseconds, which is later than any number used
  /// before as long as fewer than a million are used per second.
  EventIdentifiers(const std::string& folder, std::uint64_t last);
  EventIdentifiers(const EventIdentifiers&) = delete;
  EventIdentifiers& operator=(const EventIdentifiers&) = delete;
  /// Gives back what was reserved and not used.
  ~EventIdentifiers();

  std::uint64_t next();

 private:
  void reserve();

  FileDescriptor file_;
  std::uint64_t last_;
  std::uint64_t reservedEnd_;  ///< the last number that may be used
};

}  // namespace zelnor::platform
