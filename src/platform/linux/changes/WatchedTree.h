#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace zelnor::platform {

/// The folders that are followed, as nodes with a parent and a name: a folder that moves, moves one
/// node, whatever is below it. Each followed folder has a key (a watch descriptor, a file handle)
/// that stays with the folder wherever it goes; nodes on the way to one may have none.
///
/// About 150 bytes a folder. Not thread-safe.
class WatchedTree {
 public:
  using Key = std::uint64_t;
  static constexpr Key kNoKey = 0;

  WatchedTree();

  /// Puts the folder of `key` at `path`: from where it was, with all below it, or as a new node.
  /// Another folder at this path is set aside, with all below it.
  void attach(std::string_view path, Key key, std::int32_t rank);
  /// Sets aside what is at `path`, with all below it: it is no longer there, and may turn up
  /// elsewhere.
  void detach(std::string_view path);
  /// Forgets the folder of `key`; those below it stay.
  void erase(Key key);
  /// Forgets all that is set aside; answers their keys.
  std::vector<Key> takeDetached();

  /// Where the folder of `key` is; nothing if it is unknown or set aside.
  [[nodiscard]] std::optional<std::string> pathOf(Key key) const;
  /// The key of the folder at `path`, or kNoKey.
  [[nodiscard]] Key keyAt(std::string_view path) const;
  [[nodiscard]] bool contains(Key key) const { return nodeOfKey_.contains(key); }
  /// How many folders have a key.
  [[nodiscard]] std::size_t size() const { return nodeOfKey_.size(); }
  [[nodiscard]] bool hasDetached() const { return !detached_.empty(); }
  [[nodiscard]] std::int32_t rankOf(Key key) const;
  [[nodiscard]] std::vector<Key> keys() const;

 private:
  using Id = std::uint32_t;
  static constexpr Id kNone = 0xFFFFFFFF;
  static constexpr Id kTop = 0;  ///< the folder "/"

  struct Node {
    Id parent = kNone;  ///< kNone: set aside, or the top
    Id firstChild = kNone;
    Id nextSibling = kNone;
    Id previousSibling = kNone;
    Key key = kNoKey;
    std::int32_t rank = 0;
    std::string name;
  };
  /// A child by its parent and name.
  struct Place {
    Id parent;
    std::string_view name;
  };
  struct PlaceHash {
    using is_transparent = void;
    const std::vector<Node>* nodes;
    std::size_t operator()(const Place& place) const;
    std::size_t operator()(Id id) const;
  };
  struct PlaceEqual {
    using is_transparent = void;
    const std::vector<Node>* nodes;
    bool operator()(Id a, Id b) const { return a == b; }
    bool operator()(const Place& place, Id id) const;
    bool operator()(Id id, const Place& place) const { return (*this)(place, id); }
  };

  [[nodiscard]] Id find(std::string_view path) const;
  Id findOrCreate(std::string_view path);
  [[nodiscard]] Id childOf(Id parent, std::string_view name) const;
  Id vacate(std::string_view path, Id id);
  void move(Id id, std::string_view path);
  Id create();
  void link(Id id, Id parent, std::string_view name);
  void unlink(Id id);
  void setAside(Id id);
  void discard(Id id, std::vector<Key>& keys);
  void prune(Id id);

  std::vector<Node> nodes_;
  std::vector<Id> free_;
  std::unordered_set<Id, PlaceHash, PlaceEqual> children_;
  std::unordered_map<Key, Id> nodeOfKey_;
  std::unordered_set<Id> detached_;
};

}  // namespace zelnor::platform
