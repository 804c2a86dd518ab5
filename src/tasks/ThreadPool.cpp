#include "tasks/ThreadPool.h"

#include <algorithm>
#include <thread>
#include <vector>

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>

namespace zelnor::tasks {

std::size_t processorCount() { return std::max(1U, std::thread::hardware_concurrency()); }

struct ThreadPool::Threads {
  asio::io_context context;
  asio::executor_work_guard<asio::io_context::executor_type> keepRunning{context.get_executor()};
  std::vector<std::jthread> threads;
};

ThreadPool::ThreadPool(std::size_t threads, const std::function<void()>& onThreadStart)
    : threads_(std::make_unique<Threads>()) {
  for (std::size_t i = 0; i < threads; ++i) {
    threads_->threads.emplace_back([&context = threads_->context, onThreadStart] {
      if (onThreadStart) onThreadStart();
      context.run();
    });
  }
}

ThreadPool::~ThreadPool() {
  threads_->context.stop();
  threads_->threads.clear();  // joins
}

Executor ThreadPool::executor() const { return threads_->context.get_executor(); }

}  // namespace zelnor::tasks
