#include "bench/TreePlan.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

namespace zelnor::bench {
namespace {

/// The latest time in a tree, 2026-06-01. Fixed, or the same seed would give another tree tomorrow.
constexpr std::int64_t kLatest = 1'780'272'000;
constexpr double kSpan = 15 * 365.25 * 86'400;
constexpr std::int64_t kLargestFile = std::int64_t{20} << 30U;

std::int64_t fileSize(Random& random) {
  if (random.chance(0.03)) return 0;
  const double bytes =
      std::exp(8.3 + 2.4 * random.normal());  // median 4 kB, one in a thousand above 6 MB
  return std::min(static_cast<std::int64_t>(bytes) + 1, kLargestFile);
}

}  // namespace

TreePlan::TreePlan(std::uint64_t entries, std::uint64_t seed) : random_(seed) {
  open_.push_back(planFolder(Theme::documents, entries));
}

std::optional<PlannedEntry> TreePlan::next() {
  while (!open_.empty()) {
    if (open_.back().files > 0) return nextFile(open_.back());
    if (!open_.back().folderContents.empty()) return nextFolder();
    open_.pop_back();
  }
  return std::nullopt;
}

TreePlan::Folder TreePlan::planFolder(Theme theme, std::uint64_t entries) {
  Folder folder;
  folder.theme = theme;
  const auto leafLimit = static_cast<std::uint64_t>(24 + 110 * random_.exponential());
  if (entries <= leafLimit) {
    folder.files = entries;
    return folder;
  }
  const bool isHeap = random_.chance(0.02);  // a camera's or a download folder
  const auto wanted = static_cast<std::uint64_t>((isHeap ? 600 : 20) * random_.exponential());
  folder.files = std::min(wanted, entries / 2);
  const auto rest = entries - folder.files;
  const auto folders = std::min(rest, 6 + static_cast<std::uint64_t>(14 * random_.exponential()));
  folder.folderContents = split(rest, folders);
  return folder;
}

/// How many entries go below each of `folders` folders, when these and their contents are `entries`
/// together.
std::vector<std::uint64_t> TreePlan::split(std::uint64_t entries, std::uint64_t folders) {
  std::vector<double> weights(folders);
  double sum = 0;
  for (auto& weight : weights) sum += weight = 0.15 + random_.exponential();

  std::vector<std::uint64_t> contents(folders);
  auto left = entries - folders;
  const auto shared = static_cast<double>(left);
  for (std::size_t i = 0; i + 1 < contents.size(); ++i) {
    contents[i] = std::min(left, static_cast<std::uint64_t>(shared * weights[i] / sum));
    left -= contents[i];
  }
  contents.back() = left;
  return contents;
}

PlannedEntry TreePlan::nextFile(Folder& folder) {
  --folder.files;
  PlannedEntry entry;
  entry.depth = open_.size() - 1;
  entry.name = uniqueName(folder, fileName(folder.theme, random_));
  setTimes(entry);
  if (random_.chance(folder.theme == Theme::system ? 0.05 : 0.005)) {
    entry.kind = PlannedEntry::Kind::link;
    entry.target = fileName(folder.theme, random_);
  } else {
    entry.size = fileSize(random_);
  }
  return entry;
}

PlannedEntry TreePlan::nextFolder() {
  Folder& parent = open_.back();
  const auto contents = parent.folderContents.back();
  parent.folderContents.pop_back();

  PlannedEntry entry;
  entry.kind = PlannedEntry::Kind::folder;
  entry.depth = open_.size() - 1;
  entry.name = uniqueName(parent, folderName(parent.theme, random_));
  setTimes(entry);
  open_.push_back(planFolder(themeBelow(parent.theme), contents));
  return entry;
}

std::string TreePlan::uniqueName(Folder& folder, std::string name) {
  if (folder.names.insert(name).second) return name;
  for (;;) {
    // Counting up from 2 would be quadratic in folders of many like names.
    auto candidate = numberedName(name, 2 + random_.below(1 + 2 * folder.names.size()));
    if (folder.names.insert(candidate).second) return candidate;
  }
}

void TreePlan::setTimes(PlannedEntry& entry) {
  const double age = kSpan * random_.unit() * random_.unit();
  entry.mtime = kLatest - static_cast<std::int64_t>(age);
  entry.nanoseconds = static_cast<std::int64_t>(random_.below(1'000'000'000));
}

Theme TreePlan::themeBelow(Theme parent) {
  const bool atTop = open_.size() <= 2;
  return random_.chance(atTop ? 0.2 : 0.9) ? parent
                                           : random_.pick(std::span<const Theme>(kAllThemes));
}

}  // namespace zelnor::bench
