#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "platform/FileDescriptor.h"

namespace zelnor::platform {

/// A file in `folder` that has no name and goes away with its descriptor; none if it cannot be
/// made.
FileDescriptor createTemporaryFile(const std::string& folder);

/// Writes or reads all of `bytes` at `offset`; false if that is not possible.
bool writeAt(const FileDescriptor& file, std::span<const char> bytes, std::int64_t offset);
bool readAt(const FileDescriptor& file, std::span<char> bytes, std::int64_t offset);

/// Gives the disk space of this range back; best effort.
void discardRange(const FileDescriptor& file, std::int64_t offset, std::int64_t bytes);

}  // namespace zelnor::platform
