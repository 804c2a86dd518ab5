#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "indexer/FileIndexActor.h"
#include "platform/ChangeStream.h"

namespace zelnor::test {

/// Change streams that report what the test tells them to. Outlives them.
class FakeStreams {
 public:
  using Events = std::vector<platform::ChangeEvent>;

  /// Delivered by each stream in the very moment in which it is stopped.
  Events last;
  /// Delivered by the next stream that starts, before it has started.
  Events first;
  /// No stream can be had.
  bool fails = false;
  /// Called on the actor before a stream starts.
  std::function<void()> onStart = [] {};
  /// Called by a walk for each folder that it comes to while a stream listens.
  std::function<void(const std::string&)> onList = [](const std::string&) {};

  FileIndexActor::StreamFactory factory() {
    return [this](platform::ChangeStreamOptions options, platform::ChangeStream::Callback callback)
               -> std::unique_ptr<platform::ChangeStream> {
      if (fails) throw std::runtime_error("no stream");
      return std::make_unique<Stream>(*this, std::move(options.roots), std::move(callback));
    };
  }

  /// The roots of each stream that was started, in order.
  std::vector<std::vector<std::string>> started() {
    const std::scoped_lock lock(mutex_);
    return started_;
  }
  bool isRunning() {
    const std::scoped_lock lock(mutex_);
    return running_ != nullptr;
  }

  /// Delivers a batch through the stream that runs and returns when it has been handed on.
  void deliver(const Events& events) {
    std::unique_lock lock(mutex_);
    if (running_ == nullptr) throw std::runtime_error("no stream runs");
    bool isDone = false;
    running_->queue->post([&] {
      running_->callback(events);
      const std::scoped_lock doneLock(mutex_);
      isDone = true;
      changed_.notify_all();
    });
    changed_.wait(lock, [&] { return isDone; });
  }
  /// The same for one event.
  void deliver(const std::string& path, std::uint32_t flags, std::uint64_t identifier = 1) {
    deliver({{.path = path, .flags = flags, .identifier = identifier}});
  }

 private:
  struct Stream final : platform::ChangeStream {
    Stream(FakeStreams& itsOwner, std::vector<std::string> itsRoots, Callback itsCallback)
        : owner(itsOwner), roots(std::move(itsRoots)), callback(std::move(itsCallback)) {}
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    ~Stream() override { stop(); }

    void setQueue(platform::SerialQueue* itsQueue) override { queue = itsQueue; }
    bool listen() override { return true; }
    void willList(const std::string& folder) override { owner.onList(folder); }
    void couldNotList(const std::string& /*folder*/) override {}
    void foundName(const std::string& /*path*/, std::uint64_t /*inode*/) override {}
    bool start() override {
      owner.onStart();
      {
        const std::scoped_lock lock(owner.mutex_);
        owner.started_.push_back(roots);
        owner.running_ = this;
      }
      const auto events = std::exchange(owner.first, {});
      if (!events.empty()) owner.deliver(events);
      return true;
    }
    void stop() override {
      {
        const std::scoped_lock lock(owner.mutex_);
        if (owner.running_ != this) return;
        owner.running_ = nullptr;
      }
      if (!owner.last.empty()) callback(owner.last);
    }
    void invalidate() override { stop(); }

    FakeStreams& owner;
    const std::vector<std::string> roots;
    const Callback callback;
    platform::SerialQueue* queue = nullptr;
  };

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::vector<std::string>> started_;
  Stream* running_ = nullptr;
};

}  // namespace zelnor::test
