#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <QImage>

#include "platform/FileAppearances.h"
#include "platform/IconFinder.h"
#include "results/LruCache.h"

namespace zelnor {

struct FileIconRequest {
  std::string key;  ///< of the entry as it is now, at this size
  std::string path;
  bool isFolder = false;
  int pixels = 0;
};

struct FileIconAnswer {
  std::string key;
  QImage image;      ///< null if there is none
  std::string icon;  ///< what this picture is called that others have too; empty for a thumbnail
};

/// What one picture costs in memory, with what is kept about it.
std::size_t costOf(const QImage& image);

/// Finds and draws what icons show. Waits for the disk; used by one thread at a time.
class FileIconReader {
 public:
  FileIconReader(std::unique_ptr<platform::FileAppearances> appearances,
                 std::unique_ptr<platform::IconFinder> finder);

  FileIconAnswer read(const FileIconRequest& request);

 private:
  QImage icon(const std::string& icon, const std::vector<std::string>& names, int pixels);

  const std::unique_ptr<platform::FileAppearances> appearances_;
  const std::unique_ptr<platform::IconFinder> finder_;
  LruCache<QImage> icons_;
};

}  // namespace zelnor
