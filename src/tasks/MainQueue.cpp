#include "tasks/MainQueue.h"

#include <deque>
#include <mutex>
#include <optional>
#include <utility>

#include <asio/execution.hpp>
#include <asio/execution_context.hpp>

namespace zelnor::tasks {

namespace {

/// A function that is called once; unlike std::function it may hold what only moves.
class Work {
 public:
  template <class F>
  explicit Work(F function) : holder_(std::make_unique<Holder<F>>(std::move(function))) {}
  void operator()() { holder_->call(); }

 private:
  struct Base {
    Base() = default;
    Base(const Base&) = delete;
    Base& operator=(const Base&) = delete;
    virtual ~Base() = default;
    virtual void call() = 0;
  };
  template <class F>
  struct Holder final : Base {
    explicit Holder(F f) : function(std::move(f)) {}
    void call() override { std::move(function)(); }
    F function;
  };
  std::unique_ptr<Base> holder_;
};

}  // namespace

class MainQueue::Context final : public asio::execution_context {
 public:
  explicit Context(std::function<void()> wake) : wake_(std::move(wake)) {}
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;
  ~Context() {
    shutdown();
    // What waits may hold coroutines that post as they are destroyed: let them go one by one, while
    // the queue lives.
    while (auto work = take()) work.reset();
  }

  void push(Work work) {
    bool wasEmpty = false;
    {
      const std::scoped_lock lock(mutex_);
      wasEmpty = queue_.empty();
      queue_.push_back(std::move(work));
    }
    if (wasEmpty) wake_();
  }

  void drain() {
    // Taken one by one and counted beforehand: an item may throw or run a nested event loop without
    // losing the rest.
    for (auto left = size(); left > 0; --left) {
      auto work = take();
      if (!work) return;
      (*work)();
    }
    if (size() > 0) wake_();
  }

 private:
  std::size_t size() const {
    const std::scoped_lock lock(mutex_);
    return queue_.size();
  }
  std::optional<Work> take() {
    const std::scoped_lock lock(mutex_);
    if (queue_.empty()) return std::nullopt;
    std::optional<Work> work(std::move(queue_.front()));
    queue_.pop_front();
    return work;
  }

  const std::function<void()> wake_;
  mutable std::mutex mutex_;
  std::deque<Work> queue_;
};

/// What Asio asks of an executor: `execute`, equality and a few properties. Work never runs inside
/// `execute`.
class MainQueue::QueueExecutor {
 public:
  explicit QueueExecutor(Context& context) : context_(&context) {}

  template <class F>
  void execute(F&& function) const {
    context_->push(Work(std::decay_t<F>(std::forward<F>(function))));
  }
  [[nodiscard]] asio::execution_context& query(
      asio::execution::context_t /*property*/) const noexcept {
    return *context_;
  }
  static constexpr asio::execution::blocking_t::never_t query(
      asio::execution::blocking_t /*property*/) noexcept {
    return {};
  }
  [[nodiscard]] QueueExecutor require(
      asio::execution::blocking_t::never_t /*property*/) const noexcept {
    return *this;
  }

  friend bool operator==(const QueueExecutor&, const QueueExecutor&) noexcept = default;

 private:
  Context* context_;
};

MainQueue::MainQueue(std::function<void()> wake)
    : context_(std::make_unique<Context>(std::move(wake))) {}
MainQueue::~MainQueue() = default;
Executor MainQueue::executor() const { return QueueExecutor(*context_); }
void MainQueue::drain() { context_->drain(); }

}  // namespace zelnor::tasks
