#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "platform/FollowCount.h"

namespace zelnor {

/// What the indexer is doing, and how much it holds.
struct IndexStatus {
  struct State {
    enum class Kind : std::uint8_t { error, idle, indexing, paused };

    Kind kind = Kind::idle;
    std::string
        description;  ///< of the error that ended the last rebuild; empty for the other kinds

    static State error(std::string description) {
      return {.kind = Kind::error, .description = std::move(description)};
    }
    static State idle() { return {.kind = Kind::idle, .description = {}}; }
    static State indexing() { return {.kind = Kind::indexing, .description = {}}; }
    static State paused() { return {.kind = Kind::paused, .description = {}}; }

    friend bool operator==(const State&, const State&) = default;
  };

  State state;
  std::int64_t totalFiles = 0;  ///< rows in the index when last counted
  std::int64_t processedFiles =
      0;  ///< entries written so far by the running, or last, full rebuild
  std::optional<std::chrono::system_clock::time_point>
      lastIndexDate;  ///< when that rebuild completed
  /// How the configured folders are followed, when that began; nothing before.
  std::optional<platform::FollowCount> followed;

  friend bool operator==(const IndexStatus&, const IndexStatus&) = default;
};

}  // namespace zelnor
