#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/ActivationSource.h"
#include "platform/Clipboard.h"
#include "platform/FileActions.h"
#include "platform/FileOpener.h"
#include "search/SearchSource.h"
#include "tasks/Completion.h"

namespace zelnor::bench {

/// Answers with the same files on every machine and day: a few for most words, none for "无", an
/// error for "错误", and nothing at all for "等待" before `goOn`.
class FixedSource final : public SearchSource {
 public:
  FixedSource();

  tasks::Async<SearchPage> search(SearchQuery query, std::int64_t limit, std::int64_t offset,
                                  std::stop_token stop) override;
  tasks::Async<std::int64_t> searchCount(SearchQuery query, std::stop_token stop) override;
  void goOn() { gate_->set(true); }

 private:
  std::vector<SearchResult> rows_;
  std::shared_ptr<tasks::Completion<bool>> gate_ = std::make_shared<tasks::Completion<bool>>();
};

/// A desktop that refuses everything.
class RefusingDesktop final : public platform::FileActions,
                              public platform::FileOpener,
                              public platform::ActivationSource,
                              public platform::Clipboard {
 public:
  void trash(const std::string& path) override;
  void rename(const std::string& from, const std::string& to) override;
  void open(const std::string& path, const platform::Activation& activation) override;
  void reveal(const std::string& path, const platform::Activation& activation) override;
  void request(Ready ready) override { ready({}); }
  void copyFiles(const std::vector<std::string>& /*paths*/) override {}
  void copyText(const std::string& /*bytes*/) override {}
};

}  // namespace zelnor::bench
