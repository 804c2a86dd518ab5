#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/ChangeStream.h"
#include "platform/FileDescriptor.h"
#include "platform/linux/changes/EventDelivery.h"
#include "platform/linux/changes/Followers.h"
#include "platform/linux/changes/RootGuard.h"
#include "platform/linux/changes/StreamScope.h"
#include "platform/linux/changes/Surveyor.h"

namespace zelnor::platform {

/// The change stream on Linux. How a change travels:
///
/// - The listening thread reads what the sources report. Each name that changed goes to the
///   delivery; a folder that came or went is also handed to a surveyor, because the kernel says
///   nothing about what is below it.
/// - The prompt surveyor looks at such folders: follows them, then lists them, and reports what the
///   index knows below those that went, entry beside entry if it can tell where they went. The
///   background surveyor does the same for whole roots, and sweeps what is not followed live.
/// - The delivery looks at each changed path on the queue and hands the events out.
///
/// While the stream only listens, what is handed over waits at the surveyors and in the delivery.
class LinuxChangeStream final : public ChangeStream,
                                private ChangeSink,
                                private PlaceKeeper,
                                private SurveyHost {
 public:
  LinuxChangeStream(ChangeStreamOptions options, Callback callback);
  ~LinuxChangeStream() override;

  void setQueue(SerialQueue* queue) override;
  bool listen() override;
  void willList(const std::string& folder) override;
  void couldNotList(const std::string& folder) override;
  void foundName(const std::string& path, std::uint64_t inode) override {
    delivery_->foundName(path, inode);
  }
  bool start() override;
  void stop() override;
  void invalidate() override;

 private:
  void beginListening();
  void startSurveyors();
  void beginFollowing(bool wasTold);
  void tellFollowing();

  void collectChanges();
  void takeNews();
  bool nap();

  void folderChanged(const FolderChange& change) override;
  void changesLost() override;
  void givenUp(const std::vector<std::string>& folders) override;
  void entryChanged(const FolderChange& change, const std::string& path);
  void attributesChanged(const std::string& path);

  bool isInPlace(std::string_view path) override { return guard_.isInPlace(path); }
  void couldNotLook(const std::string& path) override;
  void foundFolder(const std::string& path) override;
  bool becameReadable(const std::string& folder);

  void couldNotCompare(const std::string& path) override;
  void surveysDone() override;

  void scheduleSweep();
  void sweep();
  void retryUnreadable();

  const ChangeStreamOptions options_;
  const StreamScope scope_;
  const std::shared_ptr<EventDelivery> delivery_;
  RootGuard guard_;
  Followers followers_;

  std::mutex lifecycle_;
  SerialQueue* queue_ = nullptr;
  std::atomic<bool> isStarted_ = false;
  FileDescriptor wakeUp_;
  std::unique_ptr<Surveyor> prompt_;
  std::unique_ptr<Surveyor> background_;
  std::stop_source stop_;
  std::thread listener_;

  std::mutex mutex_;
  /// Folders that could not be looked into, and how often that was tried.
  std::map<std::string, int> unreadable_;
  bool isSweepScheduled_ = false;

  /// Folders that came or went in this round of reading, handed over together: one that moved is to
  /// be found where it went before it is missed where it was. On the listening thread.
  std::vector<SurveyRequests::Request> toSurvey_;

  // On the background surveyor's thread.
  std::chrono::steady_clock::time_point lastDeepSweep_;
  std::chrono::steady_clock::duration lastSweepTook_{};
};

}  // namespace zelnor::platform
