#include "search/SizePreset.h"

namespace zelnor {

namespace {

constexpr std::int64_t kKiB = 1024;
constexpr std::int64_t kMiB = 1024 * kKiB;
constexpr std::int64_t kGiB = 1024 * kMiB;

}  // namespace

std::optional<std::int64_t> lowerBound(SizePreset preset) {
  switch (preset) {
    case SizePreset::small:
      return 100 * kKiB;
    case SizePreset::medium:
      return kMiB;
    case SizePreset::large:
      return 10 * kMiB;
    case SizePreset::huge:
      return 100 * kMiB;
    case SizePreset::enormous:
      return kGiB;
    case SizePreset::any:
    case SizePreset::tiny:
      break;
  }
  return std::nullopt;
}

std::optional<std::int64_t> upperBound(SizePreset preset) {
  switch (preset) {
    case SizePreset::tiny:
      return 100 * kKiB;
    case SizePreset::small:
      return kMiB;
    case SizePreset::medium:
      return 10 * kMiB;
    case SizePreset::large:
      return 100 * kMiB;
    case SizePreset::huge:
      return kGiB;
    case SizePreset::any:
    case SizePreset::enormous:
      break;
  }
  return std::nullopt;
}

}  // namespace zelnor
