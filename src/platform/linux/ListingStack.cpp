#include "platform/linux/ListingStack.h"

#include <dirent.h>
#include <sys/types.h>

#include <algorithm>
#include <cerrno>

namespace zelnor::platform {

namespace {

/// Room for about a thousand names per system call.
constexpr std::size_t kBufferSize = std::size_t{64} * 1024;

bool isListed(std::string_view name, bool skipsHidden) {
  return !name.starts_with('.') || (!skipsHidden && name != "." && name != "..");
}

}  // namespace

ListingStack::ListingStack() : buffer_(kBufferSize) {}

bool ListingStack::push(int folder, bool skipsHidden) {
  listings_.push_back(
      {.firstText = texts_.size(), .firstName = names_.size(), .next = names_.size()});
  const bool isComplete = readNames(folder, skipsHidden);
  const auto first = names_.begin() + static_cast<std::ptrdiff_t>(listings_.back().firstName);
  std::sort(first, names_.end(), [this](Name a, Name b) { return text(a) < text(b); });
  return isComplete;
}

void ListingStack::pop() {
  texts_.resize(listings_.back().firstText);
  names_.resize(listings_.back().firstName);
  listings_.pop_back();
}

bool ListingStack::readNames(int folder, bool skipsHidden) {
  // getdents64 fills the buffer with records of different lengths, see getdents(2).
  ssize_t filled = 0;
  while ((filled = ::getdents64(folder, buffer_.data(), buffer_.size())) > 0) {
    for (ssize_t offset = 0; offset < filled;) {
      const auto* const entry = reinterpret_cast<const dirent64*>(buffer_.data() + offset);
      offset += entry->d_reclen;
      if (const std::string_view name = entry->d_name; isListed(name, skipsHidden)) add(name);
    }
  }
  return filled == 0 || errno == ENOENT;  // removed meanwhile
}

void ListingStack::add(std::string_view name) {
  names_.push_back({.offset = texts_.size(), .length = name.size()});
  texts_.insert(texts_.end(), name.begin(), name.end());
}

}  // namespace zelnor::platform
