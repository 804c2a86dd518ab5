#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "bench/BareSearch.h"
#include "bench/Stopwatch.h"
#include "store/IndexReader.h"

namespace zelnor::bench {

/// Looks into an index that another connection writes.
class IndexProbe {
 public:
  explicit IndexProbe(const std::string& data) : search_(data), reader_(data) {}

  /// Whether the first column of the first row is other than 0.
  bool shows(const SelectStatement& condition) const { return search_.number(condition) != 0; }

  /// Calls `look` after each transaction that was committed, and once before, until it answers true
  /// (true) or `patience` seconds have passed (false). `meanwhile` is called every millisecond.
  bool watch(
      double patience, const std::function<bool()>& look,
      const std::function<void()>& meanwhile = [] {}) const;

  /// Seconds on `watch` when the index below `folder` was what is on disk, field by field; nothing
  /// if it did not become so.
  std::optional<double> untilCorrect(const std::string& folder, const Stopwatch& since) const;

 private:
  BareSearch search_;
  mutable IndexReader reader_;
};

}  // namespace zelnor::bench
