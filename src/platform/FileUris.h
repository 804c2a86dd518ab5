#pragma once

#include <span>
#include <string>

namespace zelnor::platform {

/// The file:// URI of an absolute path, made from its bytes. Throws std::invalid_argument if `path`
/// is not absolute.
std::string fileUri(const std::string& path);

/// The URIs of these absolute paths as text/uri-list (RFC 2483): each line ends with CR LF.
std::string uriList(std::span<const std::string> paths);

}  // namespace zelnor::platform
