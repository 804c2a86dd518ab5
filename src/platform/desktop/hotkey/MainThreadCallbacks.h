#pragma once

#include <memory>
#include <string>
#include <utility>

#include <asio/post.hpp>

#include "platform/GlobalHotkey.h"
#include "tasks/Async.h"

namespace zelnor::platform {

/// What the holder of a hot key wants to be told, from any thread, on the main thread. Once the
/// owner has let go of `Called`, which is a matter of the main thread alone, nothing is called.
class MainThreadCallbacks {
 public:
  struct Called {
    GlobalHotkey::Pressed pressed;
    GlobalHotkey::Refused refused;
  };

  MainThreadCallbacks(tasks::Executor main, const std::shared_ptr<Called>& called)
      : main_(std::move(main)), called_(called) {}

  void pressed(std::string token) const {
    asio::post(main_, [called = called_, token = std::move(token)]() mutable {
      const auto alive = called.lock();
      if (!alive) return;
      const auto call = alive->pressed;  // which may let go of it
      call({.token = std::move(token)});
    });
  }
  void refused(int code) const {
    asio::post(main_, [called = called_, code] {
      const auto alive = called.lock();
      if (!alive) return;
      const auto call = alive->refused;
      call(code);
    });
  }

 private:
  tasks::Executor main_;
  std::weak_ptr<Called> called_;
};

}  // namespace zelnor::platform
