#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace zelnor::platform {

/// The names in each folder on a walk's way down, one listing on top of the other.
///
/// All listings share two arrays that grow and shrink at their end, so that a walk allocates
/// nothing per folder or entry once the arrays are large enough.
class ListingStack {
 public:
  /// A name in a listing that is still on the stack.
  struct Name {
    std::size_t offset;
    std::size_t length;
  };

  ListingStack();

  /// Reads the names in `folder`, an open folder, and puts them on top in byte order. Names that
  /// begin with a dot are left out if `skipsHidden`. Answers whether these are all: if reading
  /// fails half-way, the names up to there are kept.
  bool push(int folder, bool skipsHidden);
  void pop();

  /// Whether all names of the top listing have been taken.
  [[nodiscard]] bool atEnd() const { return listings_.back().next == names_.size(); }
  /// The name that `take` gives next. Not at the end.
  [[nodiscard]] Name peek() const { return names_[listings_.back().next]; }
  Name take() { return names_[listings_.back().next++]; }

  /// Valid until the next `push`.
  [[nodiscard]] std::string_view text(Name name) const {
    return {texts_.data() + name.offset, name.length};
  }

 private:
  struct Listing {
    std::size_t firstText;
    std::size_t firstName;
    std::size_t next;
  };
  bool readNames(int folder, bool skipsHidden);
  void add(std::string_view name);

  std::vector<std::byte> buffer_;
  std::vector<char> texts_;
  std::vector<Name> names_;
  std::vector<Listing> listings_;
};

}  // namespace zelnor::platform
