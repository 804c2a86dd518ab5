#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace zelnor::platform {

/// How thoroughly a folder is to be looked at; each includes the one before.
enum class SurveyDepth : std::uint8_t {
  nothing,   ///< only follow the folders that are there
  contents,  ///< report all that is there, however deep
  arrival,   ///< and with it what the index has where the folder came from
  children,  ///< compare the folder's own entries with the index
  tree       ///< compare all below it with the index
};

/// Folders that wait to be looked at, each once. Not thread-safe.
class SurveyRequests {
 public:
  struct Request {
    std::string path;
    SurveyDepth depth = SurveyDepth::contents;
  };

  /// Requests for one path unite; a request below one that covers it is dropped.
  void add(std::string path, SurveyDepth depth);
  /// What only looks at new folders comes first: a folder that moved is then found where it went
  /// before it is missed where it was.
  std::optional<Request> take();
  /// What is to be compared at `path` no longer needs to be.
  void drop(const std::string& path) { comparisons_.erase(path); }
  [[nodiscard]] bool empty() const { return arrivals_.empty() && comparisons_.empty(); }

 private:
  using Pending = std::map<std::string, SurveyDepth>;
  static bool isCovered(const Pending& pending, const std::string& path, SurveyDepth by);

  Pending arrivals_;     ///< SurveyDepth::arrival or less
  Pending comparisons_;  ///< the others
};

}  // namespace zelnor::platform
