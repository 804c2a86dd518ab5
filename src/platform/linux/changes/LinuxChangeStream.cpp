#include "platform/linux/changes/LinuxChangeStream.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

namespace zelnor::platform {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// After each round of reading, so that changes that come in quick succession are read together and
/// the kernel can merge those that are alike.
constexpr milliseconds kNap{10};
/// How often a root that is missing is looked for.
constexpr milliseconds kAwayInterval{2000};
/// Before a folder that could not be listed is tried again.
constexpr milliseconds kRetryPause{200};
/// A pause between sweeps lasts at least so many times as long as a sweep.
constexpr int kSweepShare = 10;

std::uint32_t flagsOf(const FolderChange& change) {
  std::uint32_t flags = 0;
  const auto add = [&flags](bool isTrue, std::uint32_t flag) { flags |= isTrue ? flag : 0; };
  add(change.renamed, kFSEventStreamEventFlagItemRenamed);
  add(change.arrived && !change.renamed, kFSEventStreamEventFlagItemCreated);
  add(change.left, kFSEventStreamEventFlagItemRemoved);
  add(!change.isFolder, kFSEventStreamEventFlagItemIsFile);
  add(change.written, kFSEventStreamEventFlagItemModified);
  add(change.attributesChanged, kFSEventStreamEventFlagItemInodeMetaMod);
  return flags;
}

}  // namespace

std::unique_ptr<ChangeStream> createChangeStream(ChangeStreamOptions options,
                                                 ChangeStream::Callback callback) {
  if (options.roots.empty()) return nullptr;
  return std::make_unique<LinuxChangeStream>(std::move(options), std::move(callback));
}

LinuxChangeStream::LinuxChangeStream(ChangeStreamOptions options, Callback callback)
    : options_(std::move(options)),
      scope_(options_.roots, options_.scope, options_.ownPaths),
      delivery_(std::make_shared<EventDelivery>(options_, scope_, std::move(callback))),
      guard_(scope_.roots(), options_.stateFolder),
      followers_(openSources(options_)),
      wakeUp_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

LinuxChangeStream::~LinuxChangeStream() { stop(); }

void LinuxChangeStream::setQueue(SerialQueue* queue) {
  const std::scoped_lock lock(lifecycle_);
  queue_ = queue;
}

bool LinuxChangeStream::listen() {
  const std::scoped_lock lock(lifecycle_);
  if (listener_.joinable() || stop_.stop_requested() || !wakeUp_) return false;
  beginListening();
  return true;
}

bool LinuxChangeStream::start() {
  const std::scoped_lock lock(lifecycle_);
  if (queue_ == nullptr || isStarted_ || stop_.stop_requested() || !wakeUp_) return false;
  const bool wasTold = listener_.joinable();
  if (!wasTold) beginListening();
  isStarted_ = true;
  if (!delivery_->start(*queue_, *this)) {
    prompt_->forget();
    changesLost();
  }
  prompt_->release();
  background_->release();
  background_->post([this, wasTold] { beginFollowing(wasTold); });
  return true;
}

void LinuxChangeStream::beginListening() {
  guard_.look();  // what is news later is what differs from now
  startSurveyors();
  listener_ = std::thread([this] { collectChanges(); });
}

void LinuxChangeStream::startSurveyors() {
  const Surveyor::Parts parts{.scope = scope_,
                              .followers = followers_,
                              .delivery = *delivery_,
                              .index = options_.index,
                              .folders = *this,
                              .host = *this};
  prompt_ = std::make_unique<Surveyor>(parts, "zelnor-survey", SerialQueue::Priority::utility);
  background_ =
      std::make_unique<Surveyor>(parts, "zelnor-reconcile", SerialQueue::Priority::background);
}

void LinuxChangeStream::stop() {
  const std::scoped_lock lock(lifecycle_);
  if (!listener_.joinable()) return;
  stop_.request_stop();
  prompt_->stop();
  background_->stop();
  delivery_->stop();
  ::eventfd_write(wakeUp_.get(), 1);
  listener_.join();
  prompt_->finish();
  background_->finish();
}

void LinuxChangeStream::invalidate() {
  stop();
  setQueue(nullptr);
}

/// `wasTold` of every folder already.
void LinuxChangeStream::beginFollowing(bool wasTold) {
  if (!wasTold) {
    for (const auto& root : scope_.roots()) background_->surveyFirst(root);
  }
  if (stop_.stop_requested()) return;
  tellFollowing();
  surveysDone();
}

void LinuxChangeStream::tellFollowing() {
  const FollowCount count{.live = static_cast<std::int64_t>(followers_.followedFolders()),
                          .swept = static_cast<std::int64_t>(followers_.swept().size())};
  if (options_.onFollowing) options_.onFollowing(count);
  if (!options_.log) return;
  options_.log("[FSEvents] Following " + std::to_string(count.live) + " folders live, sweeping " +
               std::to_string(count.swept) + ".");
}

void LinuxChangeStream::collectChanges() {
  std::vector<pollfd> waiting{{.fd = wakeUp_.get(), .events = POLLIN, .revents = 0},
                              {.fd = guard_.mountsDescriptor(), .events = POLLPRI, .revents = 0},
                              {.fd = guard_.namesDescriptor(), .events = POLLIN, .revents = 0}};
  for (const auto& source : followers_.sources()) {
    waiting.push_back({.fd = source->descriptor(), .events = POLLIN, .revents = 0});
  }
  do {
    const auto limit = guard_.isAnyAway() ? static_cast<int>(kAwayInterval.count()) : -1;
    const int ready = ::poll(waiting.data(), waiting.size(), limit);
    if (stop_.stop_requested()) return;
    for (const auto& source : followers_.sources()) source->readChanges(*this);
    if (delivery_->isTooMuch()) toSurvey_.clear();  // the roots will be compared
    prompt_->request(std::exchange(toSurvey_, {}));
    const bool hasMounts = waiting[1].revents != 0;
    if (guard_.takeHints() || hasMounts || ready == 0) takeNews();
  } while (nap());
}

/// Answers whether to go on.
bool LinuxChangeStream::nap() {
  pollfd wakeUp{.fd = wakeUp_.get(), .events = POLLIN, .revents = 0};
  ::poll(&wakeUp, 1, static_cast<int>(kNap.count()));
  return !stop_.stop_requested();
}

void LinuxChangeStream::takeNews() {
  const auto news = guard_.look();
  for (const auto& root : news.replaced) {
    delivery_->announce(root, kFSEventStreamEventFlagRootChanged);
    background_->request(root, SurveyDepth::tree);
  }
  for (const auto& path : news.bared) {
    delivery_->changed(path, kFSEventStreamEventFlagItemModified);
  }
  for (const auto& path : news.toCompare) background_->request(path, SurveyDepth::tree);
  for (const auto& root : scope_.roots()) {
    if (becameReadable(root)) background_->request(root, SurveyDepth::tree);
  }
}

void LinuxChangeStream::folderChanged(const FolderChange& change) {
  if (change.name.empty()) {
    // Setting the modification time alone counts as writing.
    if (change.written) delivery_->changed(change.folder, kFSEventStreamEventFlagItemModified);
    if (change.attributesChanged) attributesChanged(change.folder);
    return;
  }
  auto path = change.folder + '/' + change.name;
  if (scope_.isOwn(path)) return;
  // The folder's own modification time changes with its entries, whether these are in scope or not.
  if (change.arrived || change.left) {
    delivery_->changed(change.folder, kFSEventStreamEventFlagItemModified);
  }
  if (scope_.includes(path, change.isFolder ? EntryKind::folder : EntryKind::unknown)) {
    entryChanged(change, path);
  }
}

void LinuxChangeStream::entryChanged(const FolderChange& change, const std::string& path) {
  delivery_->changed(path, flagsOf(change));
  if (!change.isFolder) return;
  if (change.left) {
    toSurvey_.push_back({path, SurveyDepth::tree});
  } else if (change.arrived) {
    // Before the start a walk may have come to a new folder long before it is surveyed.
    const auto ifNew = isStarted_ ? SurveyDepth::contents : SurveyDepth::tree;
    toSurvey_.push_back({path, change.renamed ? SurveyDepth::arrival : ifNew});
  } else if (change.attributesChanged) {
    attributesChanged(path);
  }
}

/// Permissions may have changed, and with them what can be followed and seen below the folder.
void LinuxChangeStream::attributesChanged(const std::string& path) {
  delivery_->changed(path, kFSEventStreamEventFlagItemInodeMetaMod);
  if (becameReadable(path)) prompt_->request(path, SurveyDepth::tree);
}

/// Whether the folder can be looked into and has not been, all the time since it was last compared.
bool LinuxChangeStream::becameReadable(const std::string& folder) {
  const bool isReadable = canLookInto(folder);
  const std::scoped_lock lock(mutex_);
  if (!isReadable) {
    unreadable_.try_emplace(folder, 0);
    return false;
  }
  const auto count = unreadable_.size();
  std::erase_if(unreadable_,
                [&folder](const auto& entry) { return isAtOrBelow(folder, entry.first); });
  return unreadable_.size() != count;
}

void LinuxChangeStream::couldNotLook(const std::string& path) {
  const std::scoped_lock lock(mutex_);
  unreadable_.try_emplace(std::string(parentOf(path)), 0);
}

void LinuxChangeStream::foundFolder(const std::string& path) {
  prompt_->request(path, SurveyDepth::tree);
}

void LinuxChangeStream::willList(const std::string& folder) {
  if (!scope_.enters(folder) && !scope_.includes(folder, EntryKind::folder)) return;
  if (!followers_.follow(folder, scope_.isRoot(folder), *this)) couldNotList(folder);
}

void LinuxChangeStream::couldNotList(const std::string& folder) {
  constexpr int kMaxAttempts = 3;
  int attempts = 0;
  {
    const std::scoped_lock lock(mutex_);
    attempts = ++unreadable_[folder];
  }
  // It may have become readable before that was noted, and nobody tells again. Other reasons, like
  // an I/O error, can last.
  if (attempts > kMaxAttempts || !canLookInto(folder)) return;
  prompt_->postAt(steady_clock::now() + attempts * kRetryPause,
                  [this, folder] { prompt_->request(folder, SurveyDepth::tree); });
}

/// Looks whether folders can be looked into again that nobody tells of: what they are in was
/// followed and is swept now.
void LinuxChangeStream::retryUnreadable() {
  std::vector<std::string> folders;
  {
    const std::scoped_lock lock(mutex_);
    for (const auto& [folder, attempts] : unreadable_) folders.push_back(folder);
  }
  for (const auto& folder : folders) {
    if (becameReadable(folder)) background_->survey(folder, SurveyDepth::tree);
  }
}

void LinuxChangeStream::changesLost() {
  for (const auto& root : scope_.roots()) {
    if (options_.index) {
      background_->request(root, SurveyDepth::tree);
    } else {
      delivery_->announce(
          root, kFSEventStreamEventFlagMustScanSubDirs | kFSEventStreamEventFlagKernelDropped);
    }
  }
}

void LinuxChangeStream::couldNotCompare(const std::string& path) {
  if (stop_.stop_requested()) return;
  delivery_->announce(path, kFSEventStreamEventFlagMustScanSubDirs);
}

void LinuxChangeStream::givenUp(const std::vector<std::string>& folders) {
  const std::scoped_lock lock(mutex_);
  for (const auto& folder : folders) {
    followers_.sweep(folder);
    // Its mark also told of the folders in it that cannot be followed themselves.
    for (const auto& [unreadable, attempts] : unreadable_) {
      if (parentOf(unreadable) == folder) followers_.sweep(unreadable);
    }
  }
}

void LinuxChangeStream::surveysDone() {
  followers_.releaseDetached();
  scheduleSweep();
}

void LinuxChangeStream::scheduleSweep() {
  const std::scoped_lock lock(mutex_);
  if (isSweepScheduled_ || followers_.swept().size() == 0) return;
  isSweepScheduled_ = true;
  const auto pause =
      std::max<steady_clock::duration>(options_.sweepInterval, lastSweepTook_ * kSweepShare);
  background_->postAt(steady_clock::now() + pause, [this] { sweep(); });
}

void LinuxChangeStream::sweep() {
  const auto begin = steady_clock::now();
  const auto compare = [this](const std::string& folder) {
    background_->survey(folder, becameReadable(folder) ? SurveyDepth::tree : SurveyDepth::children);
  };
  const auto isStopped = [this] { return stop_.stop_requested(); };
  if (begin - lastDeepSweep_ >= options_.deepSweepInterval) {
    followers_.swept().forEach(compare, isStopped);
    lastDeepSweep_ = begin;
  } else {
    followers_.swept().sweep(compare, isStopped);
  }
  retryUnreadable();
  {
    const std::scoped_lock lock(mutex_);
    lastSweepTook_ = steady_clock::now() - begin;
    isSweepScheduled_ = false;
  }
  if (!stop_.stop_requested()) surveysDone();
}

}  // namespace zelnor::platform
