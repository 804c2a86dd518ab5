#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <iterator>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "indexer/IncrementalUpdate.h"
#include "platform/ChangeStream.h"
#include "platform/IndexView.h"
#include "tests/torture/Walk.h"

namespace zelnor::test {

/// The index: what a scan found, and what the stream's events made of it.
class LiveRows final : public platform::IndexView {
 public:
  std::unique_ptr<platform::IndexCursor> open(std::stop_token /*stop*/) override {
    return std::make_unique<Cursor>(*this);
  }
  std::optional<std::uint64_t> inodeOf(const std::string& path, std::stop_token) override {
    const std::scoped_lock lock(mutex_);
    const auto found = rows_.find(path);
    return found == rows_.end() ? std::nullopt : std::optional<std::uint64_t>(found->second.inode);
  }
  std::vector<std::string> pathsWithInode(std::uint64_t inode, std::stop_token) override {
    auto paths = pathsOf(FileKind::file, inode);
    std::ranges::move(pathsOf(FileKind::symlink, inode), std::back_inserter(paths));
    return paths;
  }
  std::vector<std::string> foldersWithInode(std::uint64_t inode) override {
    return pathsOf(FileKind::directory, inode);
  }

  void add(const FileRecord& record) {
    const std::scoped_lock lock(mutex_);
    rows_.insert_or_assign(record.path, record);
  }
  void clear() {
    const std::scoped_lock lock(mutex_);
    rows_.clear();
  }
  void apply(std::span<const platform::ChangeEvent> events) {
    const std::scoped_lock lock(mutex_);
    const auto translation = translate(events);
    EXPECT_FALSE(translation.rescan) << translation.rescan->reason;
    const auto changes = planIncrementalUpdate(translation.items);
    for (const auto& path : changes.removals) rows_.erase(path);
    for (const auto& record : changes.upserts) rows_.insert_or_assign(record.path, record);
    changed_.notify_all();
  }

  Rows rows() {
    const std::scoped_lock lock(mutex_);
    return rows_;
  }
  /// Waits for `condition`, which is asked after each change and now and then.
  bool waitFor(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!condition()) {
      if (std::chrono::steady_clock::now() > deadline) return false;
      std::unique_lock lock(mutex_);
      changed_.wait_for(lock, std::chrono::milliseconds(20));
    }
    return true;
  }

 private:
  class Cursor final : public platform::IndexCursor {
   public:
    explicit Cursor(LiveRows& view) : view_(view) {}
    std::optional<platform::IndexEntry> next() override {
      const std::scoped_lock lock(view_.mutex_);
      const auto next = view_.rows_.lower_bound(next_);
      if (next == view_.rows_.end()) return std::nullopt;
      row_ = next->second;
      next_ = row_.path + '\0';
      return platform::IndexEntry{
          .path = row_.path,
          .size = row_.size,
          .mtime = row_.mtime,
          .inode = static_cast<std::uint64_t>(row_.inode),
          .kind = row_.kind == FileKind::symlink     ? platform::IndexEntry::Kind::link
                  : row_.kind == FileKind::directory ? platform::IndexEntry::Kind::folder
                                                     : platform::IndexEntry::Kind::file};
    }
    void seek(std::string_view path) override { next_ = path; }

   private:
    LiveRows& view_;
    std::string next_;
    FileRecord row_;
  };

  std::vector<std::string> pathsOf(FileKind kind, std::uint64_t inode) {
    const std::scoped_lock lock(mutex_);
    std::vector<std::string> paths;
    for (const auto& [path, row] : rows_) {
      if (row.kind == kind && row.inode == static_cast<std::int64_t>(inode)) paths.push_back(path);
    }
    return paths;
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  Rows rows_;
};

}  // namespace zelnor::test
