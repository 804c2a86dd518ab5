#include "platform/linux/changes/WatchedTree.h"

#include <algorithm>
#include <functional>
#include <ranges>
#include <utility>

namespace zelnor::platform {

namespace {

constexpr std::size_t kMixer = 0x9E3779B97F4A7C15ULL;

/// Takes the first component off `path`, which begins with a slash or is empty.
std::string_view takeName(std::string_view& path) {
  path.remove_prefix(1);
  const auto name = path.substr(0, path.find('/'));
  path.remove_prefix(name.size());
  return name;
}

}  // namespace

std::size_t WatchedTree::PlaceHash::operator()(const Place& place) const {
  return std::hash<std::string_view>{}(place.name) ^ (place.parent * kMixer);
}

std::size_t WatchedTree::PlaceHash::operator()(Id id) const {
  const auto& node = (*nodes)[id];
  return (*this)(Place{.parent = node.parent, .name = node.name});
}

bool WatchedTree::PlaceEqual::operator()(const Place& place, Id id) const {
  const auto& node = (*nodes)[id];
  return node.parent == place.parent && node.name == place.name;
}

WatchedTree::WatchedTree()
    : nodes_(1), children_(/*bucket_count=*/0, PlaceHash{&nodes_}, PlaceEqual{&nodes_}) {}

void WatchedTree::attach(std::string_view path, Key key, std::int32_t rank) {
  auto id = find(path);
  const auto known = nodeOfKey_.find(key);
  if (known == nodeOfKey_.end()) {
    id = vacate(path, id);
    nodes_[id].key = key;
    nodeOfKey_.emplace(key, id);
  } else if (known->second != id) {
    id = known->second;
    move(id, path);
  }
  nodes_[id].rank = rank;
}

/// A node at `path` that has no key; `id` is what is there now.
WatchedTree::Id WatchedTree::vacate(std::string_view path, Id id) {
  if (id == kTop && nodes_[id].key != kNoKey) nodeOfKey_.erase(nodes_[id].key);
  if (id != kNone && id != kTop && nodes_[id].key != kNoKey) setAside(id);
  return findOrCreate(path);
}

void WatchedTree::move(Id id, std::string_view path) {
  const auto formerParent = nodes_[id].parent;
  unlink(id);
  // Looked up only now, so that a stale place below the node itself is not found.
  if (const auto occupant = find(path); occupant != kNone) setAside(occupant);
  const auto slash = path.rfind('/');
  link(id, findOrCreate(path.substr(0, slash)), path.substr(slash + 1));
  if (formerParent != kNone) prune(formerParent);
}

void WatchedTree::detach(std::string_view path) {
  if (const auto id = find(path); id != kNone && id != kTop) setAside(id);
}

void WatchedTree::erase(Key key) {
  const auto found = nodeOfKey_.find(key);
  if (found == nodeOfKey_.end()) return;
  const auto id = found->second;
  nodeOfKey_.erase(found);
  nodes_[id].key = kNoKey;
  prune(id);
}

std::vector<WatchedTree::Key> WatchedTree::takeDetached() {
  std::vector<Key> keys;
  for (const auto id : std::exchange(detached_, {})) discard(id, keys);
  return keys;
}

std::optional<std::string> WatchedTree::pathOf(Key key) const {
  const auto found = nodeOfKey_.find(key);
  if (found == nodeOfKey_.end()) return std::nullopt;
  std::vector<Id> way;
  auto id = found->second;
  for (; nodes_[id].parent != kNone; id = nodes_[id].parent) way.push_back(id);
  if (id != kTop) return std::nullopt;
  std::string path;
  for (const auto step : std::ranges::reverse_view(way)) path += '/' + nodes_[step].name;
  return path;
}

WatchedTree::Key WatchedTree::keyAt(std::string_view path) const {
  const auto id = find(path);
  return id == kNone ? kNoKey : nodes_[id].key;
}

std::int32_t WatchedTree::rankOf(Key key) const {
  const auto found = nodeOfKey_.find(key);
  return found == nodeOfKey_.end() ? 0 : nodes_[found->second].rank;
}

std::vector<WatchedTree::Key> WatchedTree::keys() const {
  std::vector<Key> all;
  all.reserve(nodeOfKey_.size());
  for (const auto& [key, id] : nodeOfKey_) all.push_back(key);
  return all;
}

WatchedTree::Id WatchedTree::find(std::string_view path) const {
  auto id = kTop;
  while (!path.empty() && id != kNone) id = childOf(id, takeName(path));
  return id;
}

WatchedTree::Id WatchedTree::findOrCreate(std::string_view path) {
  auto id = kTop;
  while (!path.empty()) {
    const auto name = takeName(path);
    const auto parent = id;
    id = childOf(parent, name);
    if (id != kNone) continue;
    id = create();
    link(id, parent, name);
  }
  return id;
}

WatchedTree::Id WatchedTree::childOf(Id parent, std::string_view name) const {
  const auto found = children_.find(Place{.parent = parent, .name = name});
  return found == children_.end() ? kNone : *found;
}

WatchedTree::Id WatchedTree::create() {
  if (free_.empty()) {
    nodes_.emplace_back();
    return static_cast<Id>(nodes_.size() - 1);
  }
  const auto id = free_.back();
  free_.pop_back();
  return id;
}

void WatchedTree::link(Id id, Id parent, std::string_view name) {
  auto& node = nodes_[id];
  node.parent = parent;
  node.name = name;
  node.nextSibling = std::exchange(nodes_[parent].firstChild, id);
  if (node.nextSibling != kNone) nodes_[node.nextSibling].previousSibling = id;
  children_.insert(id);
}

/// Takes the node from its parent, or from those that are set aside.
void WatchedTree::unlink(Id id) {
  auto& node = nodes_[id];
  if (node.parent == kNone) {
    detached_.erase(id);
    return;
  }
  children_.erase(id);
  if (node.previousSibling != kNone) {
    nodes_[node.previousSibling].nextSibling = node.nextSibling;
  } else {
    nodes_[node.parent].firstChild = node.nextSibling;
  }
  if (node.nextSibling != kNone) nodes_[node.nextSibling].previousSibling = node.previousSibling;
  node.previousSibling = node.nextSibling = kNone;
  node.parent = kNone;
}

void WatchedTree::setAside(Id id) {
  unlink(id);
  detached_.insert(id);
}

/// Frees the node and all below it.
void WatchedTree::discard(Id id, std::vector<Key>& keys) {
  std::vector<Id> left{id};
  while (!left.empty()) {
    const auto current = left.back();
    left.pop_back();
    for (auto child = nodes_[current].firstChild; child != kNone;
         child = nodes_[child].nextSibling) {
      left.push_back(child);
    }
    if (const auto key = nodes_[current].key; key != kNoKey) {
      keys.push_back(key);
      nodeOfKey_.erase(key);
    }
    if (nodes_[current].parent != kNone) children_.erase(current);
  }
  // Freed only now: a node's place in `children_` is found by its parent and name.
  left.push_back(id);
  while (!left.empty()) {
    const auto current = left.back();
    left.pop_back();
    for (auto child = nodes_[current].firstChild; child != kNone;
         child = nodes_[child].nextSibling) {
      left.push_back(child);
    }
    nodes_[current] = {};
    free_.push_back(current);
  }
}

/// Frees the node, and then its ancestors, as long as they have neither key nor child.
void WatchedTree::prune(Id id) {
  while (id != kTop && nodes_[id].key == kNoKey && nodes_[id].firstChild == kNone) {
    const auto parent = nodes_[id].parent;
    unlink(id);
    nodes_[id] = {};
    free_.push_back(id);
    if (parent == kNone) return;
    id = parent;
  }
}

}  // namespace zelnor::platform
