#include "results/AlertQueue.h"

#include <utility>

#include "results/FileOperationAlerts.h"

namespace zelnor {

void AlertQueue::setAlerts(FileOperationAlerts* alerts) {
  alerts_ = alerts;
  closeAll(/*goOn=*/true);
}

void AlertQueue::close() {
  isClosed_ = true;
  closeAll(/*goOn=*/false);
}

tasks::Async<bool> AlertQueue::warn(const AlertText& text) {
  if (isClosed_ || alerts_ == nullptr) co_return !isClosed_;
  const auto answer = std::make_shared<tasks::Completion<bool>>();
  waiting_.push_back({.text = text, .answer = answer});
  if (waiting_.size() == 1) showNext();
  co_return co_await tasks::Completion<bool>::wait(answer);
}

void AlertQueue::closeAll(bool goOn) {
  for (const auto& alert : std::exchange(waiting_, {})) alert.answer->set(goOn);
}

void AlertQueue::showNext() {
  const auto [text, answer] = waiting_.front();  // may be closed inside the call
  alerts_->warn(text.message, text.explanation, text.moreFollow,
                [weak = std::weak_ptr(self_), shown = answer](bool goOn) {
                  if (const auto self = weak.lock()) (*self)->closed(shown, goOn);
                });
}

void AlertQueue::closed(const Answer& answer, bool goOn) {
  const bool isOpen = !waiting_.empty() && waiting_.front().answer == answer;
  if (!isOpen) return;
  waiting_.pop_front();
  answer->set(goOn);
  if (!waiting_.empty()) showNext();
}

}  // namespace zelnor
