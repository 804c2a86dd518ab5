#include "platform/linux/changes/Surveyor.h"

#include <exception>
#include <utility>

namespace zelnor::platform {

Surveyor::Surveyor(Parts parts, std::string label, SerialQueue::Priority priority)
    : parts_(std::move(parts)), queue_(std::move(label), priority) {}

Surveyor::~Surveyor() { stop(); }

void Surveyor::request(std::string path, SurveyDepth depth) {
  request({{.path = std::move(path), .depth = depth}});
}

void Surveyor::request(std::vector<SurveyRequests::Request> requests) {
  if (requests.empty()) return;
  const std::scoped_lock lock(mutex_);
  if (isReleased_ && requests_.empty()) queue_.post([this] { work(); });
  for (auto& [path, depth] : requests) requests_.add(std::move(path), depth);
}

void Surveyor::release() {
  const std::scoped_lock lock(mutex_);
  isReleased_ = true;
  if (!requests_.empty()) queue_.post([this] { work(); });
}

void Surveyor::forget() {
  const std::scoped_lock lock(mutex_);
  requests_ = {};
}

void Surveyor::work() {
  while (!stop_.stop_requested()) {
    std::optional<SurveyRequests::Request> request;
    {
      const std::scoped_lock lock(mutex_);
      request = requests_.take();
    }
    if (!request) break;
    survey(request->path, request->depth);
  }
  if (!stop_.stop_requested()) parts_.host.surveysDone();
}

void Surveyor::surveyFirst(const std::string& root) {
  try {
    survey(root, isKnown(root) ? SurveyDepth::tree : SurveyDepth::nothing);
  } catch (const std::exception&) {
    parts_.host.couldNotCompare(root);
  }
}

bool Surveyor::isKnown(const std::string& root) const {
  if (!parts_.index) return false;
  const auto cursor = parts_.index->open(stop_.get_token());
  cursor->seek(root + '/');
  const auto first = cursor->next();
  return first && isBelow(root, first->path);
}

void Surveyor::survey(const std::string& path, SurveyDepth depth) {
  const bool isRoot = parts_.scope.isRoot(path);
  const auto state = isRoot ? examineTarget(path) : examine(path);
  try {
    if (state.isFolder()) {
      surveyFolder(path, depth);
    } else if (state.isPresent() || state.presence == EntryState::Presence::gone) {
      surveyNothing(path, depth);
    }
  } catch (const std::exception&) {
    parts_.host.couldNotCompare(path);
  }
}

void Surveyor::surveyFolder(const std::string& path, SurveyDepth depth) {
  if (!parts_.scope.enters(path)) {
    // A package: what is in it is nobody's business, but its own modification time is.
    if (parts_.scope.includes(path, EntryKind::folder)) willList(path);
    return;
  }
  isSilent_ = depth == SurveyDepth::nothing;
  if (depth == SurveyDepth::arrival && surveyMoved(path)) return;
  const bool compares = depth > SurveyDepth::arrival && parts_.index;
  const auto cursor = compares ? parts_.index->open(stop_.get_token()) : nullptr;
  Reconciler(parts_.scope, *this, stop_.get_token())
      .compare(
          path, cursor.get(),
          depth == SurveyDepth::children ? Reconciler::Depth::children : Reconciler::Depth::tree);
}

/// A folder that came from where the index knows it; answers whether this is one.
bool Surveyor::surveyMoved(const std::string& path) {
  const auto former = formerPlace(path);
  if (!former) return false;
  {
    // Before the index is read: whatever is requested there from now on is about something else.
    const std::scoped_lock lock(mutex_);
    requests_.drop(*former);
  }
  Reconciler(parts_.scope, *this, stop_.get_token())
      .reportMoved(path, *former, *parts_.index->open(stop_.get_token()));
  return true;
}

/// Where the index knows this folder, if it is there no longer.
std::optional<std::string> Surveyor::formerPlace(const std::string& path) const {
  const auto state = examine(path);
  if (!state.isPresent() || !parts_.index) return std::nullopt;
  for (auto& place : parts_.index->foldersWithInode(state.attributes.inode)) {
    if (examine(place).presence == EntryState::Presence::gone) return std::move(place);
  }
  return std::nullopt;
}

void Surveyor::surveyNothing(const std::string& path, SurveyDepth depth) {
  // A root that is missing keeps what it had.
  if (parts_.scope.isRoot(path)) return;
  isSilent_ = false;
  parts_.followers.detach(path);
  if (depth <= SurveyDepth::arrival || !parts_.index) return;
  const auto cursor = parts_.index->open(stop_.get_token());
  Reconciler(parts_.scope, *this, stop_.get_token()).reportAllKnown(path, *cursor);
}

void Surveyor::differs(std::string path, std::uint32_t flags) {
  if (isSilent_) return;
  parts_.delivery.changed(std::move(path), flags);
  parts_.delivery.waitForRoom(stop_.get_token());
}

void Surveyor::foundFolder(const std::string& path) { request(path, SurveyDepth::tree); }

}  // namespace zelnor::platform
