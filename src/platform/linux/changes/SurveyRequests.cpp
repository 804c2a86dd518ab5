#include "platform/linux/changes/SurveyRequests.h"

#include <algorithm>
#include <utility>

namespace zelnor::platform {

void SurveyRequests::add(std::string path, SurveyDepth depth) {
  const bool isArrival = depth <= SurveyDepth::arrival;
  auto& pending = isArrival ? arrivals_ : comparisons_;
  if (isCovered(pending, path, isArrival ? SurveyDepth::contents : SurveyDepth::tree)) return;
  auto& known = pending.try_emplace(std::move(path), depth).first->second;
  known = std::max(known, depth);
}

std::optional<SurveyRequests::Request> SurveyRequests::take() {
  auto& pending = arrivals_.empty() ? comparisons_ : arrivals_;
  if (pending.empty()) return std::nullopt;
  auto first = pending.extract(pending.begin());
  return Request{.path = std::move(first.key()), .depth = first.mapped()};
}

/// Whether the path or a folder that it is in is to be looked at, at least by this depth.
bool SurveyRequests::isCovered(const Pending& pending, const std::string& path, SurveyDepth by) {
  for (auto end = path.size(); end != std::string::npos; end = path.rfind('/', end - 1)) {
    const auto found = pending.find(path.substr(0, end));
    if (found != pending.end() && found->second >= by) return true;
    if (end == 0) break;
  }
  return false;
}

}  // namespace zelnor::platform
