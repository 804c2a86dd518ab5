#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>

#include "platform/FolderVisitor.h"
#include "platform/IndexView.h"
#include "platform/SerialQueue.h"
#include "platform/linux/changes/EventDelivery.h"
#include "platform/linux/changes/Followers.h"
#include "platform/linux/changes/Reconciler.h"
#include "platform/linux/changes/StreamScope.h"
#include "platform/linux/changes/SurveyRequests.h"

namespace zelnor::platform {

/// What a survey asks of the stream that it belongs to.
class SurveyHost {
 public:
  virtual ~SurveyHost() = default;

  /// Comparing `path` with the index failed.
  virtual void couldNotCompare(const std::string& path) = 0;
  /// All requests so far are done.
  virtual void surveysDone() = 0;
};

/// Looks at folders on a thread of its own: has them and what is below them followed, and reports
/// what the index has otherwise. Requests wait until it is released.
class Surveyor final : private ReconcileVisitor {
 public:
  struct Parts {
    const StreamScope& scope;
    Followers& followers;
    EventDelivery& delivery;
    std::shared_ptr<IndexView> index;
    FolderVisitor& folders;  ///< is told of the folders that are gone through
    SurveyHost& host;
  };

  Surveyor(Parts parts, std::string label, SerialQueue::Priority priority);
  ~Surveyor() override;

  /// Thread-safe, never waits.
  void request(std::string path, SurveyDepth depth);
  /// The same for several, none of which is taken before all are there.
  void request(std::vector<SurveyRequests::Request> requests);
  /// Begins with what was requested so far.
  void release();
  /// Drops what is requested.
  void forget();
  /// Runs `work` on the surveyor's thread. Thread-safe, never waits.
  void post(SerialQueue::Work work) { queue_.post(std::move(work)); }
  void postAt(SerialQueue::TimePoint due, SerialQueue::Work work) {
    queue_.postAt(due, std::move(work));
  }
  /// Gives up what runs and what waits; does not wait for it to end.
  void stop() { stop_.request_stop(); }
  /// Waits for what runs to end, after `stop`; nothing runs from then on.
  void finish() { queue_.stop(); }

  /// Looks at a root for the first time: compares it if the index knows anything below it. On the
  /// surveyor's own thread.
  void surveyFirst(const std::string& root);
  /// Looks at one folder; on the surveyor's own thread.
  void survey(const std::string& path, SurveyDepth depth);

 private:
  void work();
  void surveyFolder(const std::string& path, SurveyDepth depth);
  bool surveyMoved(const std::string& path);
  [[nodiscard]] std::optional<std::string> formerPlace(const std::string& path) const;
  [[nodiscard]] bool isKnown(const std::string& root) const;
  void surveyNothing(const std::string& path, SurveyDepth depth);

  void willList(const std::string& folder) override { parts_.folders.willList(folder); }
  void couldNotList(const std::string& folder) override { parts_.folders.couldNotList(folder); }
  void foundName(const std::string& path, std::uint64_t inode) override {
    parts_.folders.foundName(path, inode);
  }
  void differs(std::string path, std::uint32_t flags) override;
  void foundFolder(const std::string& path) override;

  Parts parts_;
  bool isSilent_ = false;  ///< on the surveyor's own thread
  std::stop_source stop_;
  std::mutex mutex_;
  bool isReleased_ = false;
  SurveyRequests requests_;
  SerialQueue queue_;
};

}  // namespace zelnor::platform
