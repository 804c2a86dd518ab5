#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "tasks/Async.h"
#include "tasks/Completion.h"

namespace zelnor {

class FileOperationAlerts;

/// What an alert says, in UTF-8.
struct AlertText {
  std::string message;
  std::string explanation;
  bool moreFollow = false;
};

/// Shows one alert at a time and lets operations wait until theirs is closed. Main thread only.
class AlertQueue {
 public:
  AlertQueue() = default;
  AlertQueue(const AlertQueue&) = delete;
  AlertQueue& operator=(const AlertQueue&) = delete;
  /// Nobody may be waiting.
  ~AlertQueue() = default;

  /// Without alerts, or with others, those that wait are taken for closed.
  void setAlerts(FileOperationAlerts* alerts);
  /// Answers whether the user wants to go on, once the alert was shown and closed.
  tasks::Async<bool> warn(const AlertText& text);
  /// From now on every alert is closed at once, and nobody wants to go on.
  void close();

 private:
  using Answer = std::shared_ptr<tasks::Completion<bool>>;
  struct Alert {
    AlertText text;
    Answer answer;
  };

  void closeAll(bool goOn);
  void showNext();
  void closed(const Answer& answer, bool goOn);

  FileOperationAlerts* alerts_ = nullptr;
  std::deque<Alert> waiting_;  ///< the first one is open
  bool isClosed_ = false;
  std::shared_ptr<AlertQueue*> self_ = std::make_shared<AlertQueue*>(this);
};

}  // namespace zelnor
