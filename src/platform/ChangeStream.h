#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/FolderVisitor.h"
#include "platform/FollowCount.h"
#include "platform/IndexView.h"
#include "platform/ScopeFilter.h"
#include "platform/SerialQueue.h"

namespace zelnor::platform {

inline constexpr std::uint32_t kFSEventStreamCreateFlagUseCFTypes = 0x01;
inline constexpr std::uint32_t kFSEventStreamCreateFlagNoDefer = 0x02;
inline constexpr std::uint32_t kFSEventStreamCreateFlagFileEvents = 0x10;

inline constexpr std::uint32_t kFSEventStreamEventFlagMustScanSubDirs = 0x01;
inline constexpr std::uint32_t kFSEventStreamEventFlagUserDropped = 0x02;
inline constexpr std::uint32_t kFSEventStreamEventFlagKernelDropped = 0x04;
inline constexpr std::uint32_t kFSEventStreamEventFlagRootChanged = 0x20;
inline constexpr std::uint32_t kFSEventStreamEventFlagItemCreated = 0x100;
inline constexpr std::uint32_t kFSEventStreamEventFlagItemRemoved = 0x200;
inline constexpr std::uint32_t kFSEventStreamEventFlagItemInodeMetaMod = 0x400;
inline constexpr std::uint32_t kFSEventStreamEventFlagItemRenamed = 0x800;
inline constexpr std::uint32_t kFSEventStreamEventFlagItemModified = 0x1000;
inline constexpr std::uint32_t kFSEventStreamEventFlagItemIsFile = 0x10000;
inline constexpr std::uint32_t kFSEventStreamEventFlagItemIsDir = 0x20000;
inline constexpr std::uint32_t kFSEventStreamEventFlagItemIsSymlink = 0x40000;

inline constexpr std::uint64_t kFSEventStreamEventIdSinceNow =
    std::numeric_limits<std::uint64_t>::max();

/// One change. The flags were true when the batch was put together; whoever acts on an event looks
/// at the entry again, and a later change has a later event.
struct ChangeEvent {
  std::string path;
  std::uint32_t flags = 0;
  std::uint64_t identifier = 0;  ///< larger than that of every earlier event, ever
};

/// How folders are followed.
enum class ChangeSourceKind : std::uint8_t {
  fileSystemMark,  ///< one fanotify mark per file system; for privileged processes
  folderMarks,     ///< a fanotify mark per folder
  inotify,         ///< an inotify watch per folder
  sweep            ///< looking at each folder's times again and again
};

struct ChangeStreamOptions {
  std::vector<std::string> roots;  ///< absolute
  /// The last identifier that was seen, or kFSEventStreamEventIdSinceNow. New ones are larger; it
  /// has no other meaning, because a stream always catches up with what the index lacks.
  std::uint64_t sinceWhen = kFSEventStreamEventIdSinceNow;
  std::chrono::duration<double> latency{0.5};
  /// With kFSEventStreamCreateFlagNoDefer the first event after a quiet time comes at once and
  /// those after it when the latency has passed; otherwise every event waits for it.
  std::uint32_t flags = 0;
  ScopeFilter scope;
  /// Files and folders that the program itself writes: they, all that is below them, and the
  /// companions that SQLite keeps beside a file are never reported.
  std::vector<std::string> ownPaths;
  std::shared_ptr<IndexView> index;  ///< none: nothing is compared, and losses are reported
  std::string stateFolder;           ///< an existing folder for what must survive the process

  /// So many changed paths are kept by a stream that listens and is not started yet, some 150 bytes
  /// each. Beyond that, comparing takes less time than looking at each.
  std::size_t maxCollected = 100'000;

  std::optional<ChangeSourceKind> forcedSource;  ///< for tests; otherwise the best that works
  std::optional<std::size_t> watchLimit;  ///< for tests; otherwise half of what the user may have
  std::chrono::milliseconds sweepInterval{2000};  ///< between two sweeps, at least
  std::chrono::milliseconds deepSweepInterval{
      600'000};                                 ///< between comparisons of all that is swept
  std::function<void(const std::string&)> log;  ///< one line; called on any thread
  /// Told once the roots are followed; called on a thread of the stream, never after it stopped.
  std::function<void(const FollowCount&)> onFollowing;
};

/// Reports what changes below a set of roots.
///
/// - Each entry that is created, removed, renamed or changed gets an event, also every entry below
///   a folder that comes, goes or moves, and the folder whose modification time changes with it.
/// - When it starts on a root of which the index knows entries, when the kernel lost events, and
///   when a root comes back, it compares the root with the index and reports the differences.
/// - A root that is missing or unmounted keeps its entries. When another folder takes its place,
///   one event with kFSEventStreamEventFlagRootChanged names the root.
/// - If comparing is impossible, one event with kFSEventStreamEventFlagMustScanSubDirs (and the
///   flag of the queue that lost events) names the root.
/// - An entry that cannot be looked at just now, for want of permission or because of an I/O error,
///   is not reported; neither is what is out of scope.
///
/// What the kernel does not tell: writes through a memory mapping until the file is closed, and
/// changes that other machines make on a network file system; sweeping finds these. A change
/// through one name of a file that has several is reported for the names that the index knows, and
/// those that it lacks because the file could not be read.
///
/// Thread-safe. Batches hold at most 10,000 events and are delivered one at a time on the queue
/// that the stream is attached to, in order of their identifiers, without any lock held.
class ChangeStream : public FolderVisitor {
 public:
  using Callback = std::function<void(std::span<const ChangeEvent>)>;

  /// Attaches the stream to `queue`, which must outlive it or be replaced by none first.
  virtual void setQueue(SerialQueue* queue) = 0;
  /// Before `start`, and once: begins to follow the folders that it is told of by `willList`, and
  /// collects what happens in them without delivering it. For those who walk the roots anyway, to
  /// fill the index: what they do not see because it happens behind them is delivered after
  /// `start`. Answers whether it does; if not, `start` walks itself.
  virtual bool listen() = 0;
  /// Starts to deliver. Answers whether it does. Needs a queue; a stream starts once.
  ///
  /// A stream that did not listen walks the roots first, to follow every folder. One that did takes
  /// it that a whole walk was told to it since, and that the index holds what the walk found. If
  /// too much has happened for it to keep, it compares the roots with the index.
  virtual bool start() = 0;

  /// Between `listen` and `start`, on any thread: a walk through the roots comes to this folder,
  /// which is followed from now on if it is in scope.
  void willList(const std::string& folder) override = 0;
  /// Between `listen` and `start`, on any thread: what is in this folder is not known, and told
  /// when it can be.
  void couldNotList(const std::string& folder) override = 0;
  /// Between `listen` and `start`, on any thread: its other names are told when it changes, also if
  /// it just has, and it is when it can be read.
  void foundName(const std::string& path, std::uint64_t inode) override = 0;

  /// Ends listening and delivery. When it returns no callback runs and none follows. Not to be
  /// called by a callback.
  virtual void stop() = 0;
  /// Stops, and detaches from the queue for good.
  virtual void invalidate() = 0;
};

/// A stream over `options.roots`; nothing if no root is given.
std::unique_ptr<ChangeStream> createChangeStream(ChangeStreamOptions options,
                                                 ChangeStream::Callback callback);

}  // namespace zelnor::platform
