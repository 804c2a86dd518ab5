#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/FakeStreams.h"
#include "tests/support/IndexerFixture.h"
#include "tests/support/RawDatabase.h"
#include "tests/support/TemporaryFolder.h"

namespace zelnor::test {

/// A tree, and an index of it whose change stream the test plays itself.
class FakeStreamTest : public testing::Test {
 protected:
  const TemporaryFolder tree_;
  const TemporaryFolder data_;
  FakeStreams streams_;
  const IndexConfiguration config_ = configurationOf(tree_.path());
  std::unique_ptr<Indexer> indexer_ = launch();

  /// Another process, after the one before has ended.
  std::unique_ptr<Indexer> launch() {
    return std::make_unique<Indexer>(data_.path(), /*followsChanges=*/true, streams_.factory());
  }
  void relaunch() {
    indexer_.reset();
    indexer_ = launch();
  }
  MainThread& main() { return indexer_->main(); }
  FileIndexActor& actor() { return indexer_->actor(); }
  [[nodiscard]] const IndexStatus& status() const { return indexer_->actor().status().value(); }

  /// In 30 folders.
  void makeFiles(int count) {
    for (int i = 0; i < count; ++i) tree_.file(std::to_string(i % 30) + "/" + std::to_string(i));
  }
  [[nodiscard]] RawDatabase raw() const { return RawDatabase(data_ / "index.sqlite"); }
};

}  // namespace zelnor::test
