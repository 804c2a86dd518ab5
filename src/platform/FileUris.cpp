#include "platform/FileUris.h"

#include <memory>
#include <stdexcept>

#include <glib.h>

namespace zelnor::platform {

std::string fileUri(const std::string& path) {
  const std::unique_ptr<char, decltype(&g_free)> uri(
      g_filename_to_uri(path.c_str(), /*hostname=*/nullptr, /*error=*/nullptr), g_free);
  if (!uri) throw std::invalid_argument("not an absolute path: " + path);
  return uri.get();
}

std::string uriList(std::span<const std::string> paths) {
  std::string list;
  for (const auto& path : paths) list += fileUri(path) + "\r\n";
  return list;
}

}  // namespace zelnor::platform
