#pragma once

#include <ftw.h>
#include <sys/stat.h>

#include <map>
#include <string>
#include <utility>

#include "store/FileRecord.h"

namespace zelnor::test {

/// What is below `root`, found without any code of ours, in the form the index should hold it.
inline std::map<std::string, FileRecord> walkIndependently(const std::string& root) {
  static thread_local std::map<std::string, FileRecord> found;
  static thread_local std::size_t rootLength = 0;
  rootLength = root.size();
  nftw(
      root.c_str(),
      [](const char* path, const struct stat* status, int /*type*/, struct FTW* place) {
        if (std::string_view(path).size() == rootLength) return 0;
        FileRecord record;
        record.path = path;
        record.name = path + place->base;
        record.kind = S_ISLNK(status->st_mode)   ? FileKind::symlink
                      : S_ISDIR(status->st_mode) ? FileKind::directory
                                                 : FileKind::file;
        record.size = record.kind == FileKind::directory ? 0 : status->st_size;
        record.mtime = status->st_mtim.tv_sec;
        if (record.mtime < 0 && status->st_mtim.tv_nsec > 0) ++record.mtime;
        record.inode = static_cast<std::int64_t>(status->st_ino);
        found.emplace(record.path, record);
        return 0;
      },
      /*nopenfd=*/64, FTW_PHYS);
  return std::exchange(found, {});
}

}  // namespace zelnor::test
