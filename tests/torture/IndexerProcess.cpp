#include "tests/torture/IndexerProcess.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <utility>

#include "indexer/FileIndexActor.h"
#include "platform/FileDefaultsStore.h"
#include "tasks/RunLoop.h"
#include "tasks/Task.h"
#include "tasks/ThreadPool.h"

namespace zelnor::test {

namespace {

using platform::FileDefaultsStore;

constexpr std::string_view kIdentifierKey = "FSEventsLastEventID";
constexpr std::size_t kIndexingThreads = 3;

/// The settings, which end the process when an event identifier is not larger than all before.
class WatchedDefaults final : public platform::DefaultsStore {
 public:
  WatchedDefaults(const std::string& folder, std::uint64_t newestIdentifier)
      : store_(folder), newestIdentifier_(newestIdentifier) {}

  [[nodiscard]] std::optional<Value> value(std::string_view key) const override {
    return store_.value(key);
  }
  void set(std::string_view key, Value value) override {
    check(key, value);
    store_.set(key, std::move(value));
  }
  void setVolatile(std::string_view key, Value value) override {
    check(key, value);
    store_.setVolatile(key, std::move(value));
  }
  void remove(std::string_view key) override { store_.remove(key); }

 private:
  void check(std::string_view key, const Value& value) {
    if (key != kIdentifierKey) return;
    // Set by one thread, which delivers events.
    const auto identifier = std::get<std::uint64_t>(value);
    if (identifier <= newestIdentifier_) {
      std::fprintf(stderr, "indexer: event identifier %lu after %lu\n", identifier,
                   newestIdentifier_);
      ::_exit(1);
    }
    newestIdentifier_ = identifier;
  }

  FileDefaultsStore store_;
  std::uint64_t newestIdentifier_;
};

IndexConfiguration configurationOf(const IndexerProcess::Setup& setup) {
  IndexConfiguration config{.includedPaths = setup.roots};
  config.excludedPaths.clear();
  config.skipPackageContents = false;
  return config;
}

platform::ChangeStreamOptions optionsOf(const IndexerProcess::Setup& setup) {
  platform::ChangeStreamOptions options;
  options.forcedSource = setup.source;
  options.watchLimit = setup.watchLimit;
  options.sweepInterval = std::chrono::milliseconds(100);
  options.deepSweepInterval = std::chrono::milliseconds(500);
  return options;
}

void logUnusual(const std::string& line) {
  const auto isUsual = [&line](const char* text) { return line.find(text) != std::string::npos; };
  // With a full disk updates fail.
  if (!isUsual("] Following ") && !isUsual("] Incremental update error: ")) {
    std::fprintf(stderr, "indexer: %s\n", line.c_str());
  }
}

constexpr int kRebuild = SIGUSR1;
constexpr int kRebuildFirstRoot = SIGUSR2;

sigset_t orders() {
  sigset_t signals;
  ::sigemptyset(&signals);
  for (const int number : {SIGTERM, kRebuild, kRebuildFirstRoot}) ::sigaddset(&signals, number);
  return signals;
}

/// Does what the other process asks for until that is to quit.
void obey(const IndexerProcess::Setup& setup, FileIndexActor& actor,
          const tasks::Executor& executor) {
  const auto signals = orders();
  for (int number = 0; ::sigwait(&signals, &number) == 0 && number != SIGTERM;) {
    auto config = configurationOf(setup);
    if (number == kRebuildFirstRoot) config.includedPaths.resize(1);
    tasks::Task::spawn(
        executor, [&actor, config](const std::stop_token&) { return actor.rebuildIndex(config); });
  }
}

/// Returns only if the indexer cannot start.
void serve(const IndexerProcess::Setup& setup, std::uint64_t newestIdentifier) {
  WatchedDefaults defaults(setup.stateFolder, newestIdentifier);
  tasks::RunLoop loop;
  const tasks::ThreadPool pool(kIndexingThreads);
  FileIndexActor actor({.dataFolder = setup.stateFolder,
                        .background = pool.executor(),
                        .main = loop.executor(),
                        .defaults = defaults,
                        .changes = optionsOf(setup),
                        .log = logUnusual});
  loop.await(actor.resume(configurationOf(setup)));
  // Nobody looks at the status.
  obey(setup, actor, pool.executor());
  loop.await(actor.shutDown());
  ::_exit(0);
}

[[noreturn]] void runIndexer(const IndexerProcess::Setup& setup, std::uint64_t newestIdentifier) {
  if (setup.user != ::getuid()) {
    if (::setresgid(setup.user, setup.user, setup.user) != 0) std::abort();
    if (::setresuid(setup.user, setup.user, setup.user) != 0) std::abort();
  }
  // Only now: another user's process would forget it, prctl(2).
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  ::signal(SIGXFSZ, SIG_IGN);
  try {
    serve(setup, newestIdentifier);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "indexer: %s\n", error.what());
  }
  ::_exit(1);
}

}  // namespace

IndexerProcess::IndexerProcess(Setup setup) : setup_(std::move(setup)) { start(); }

IndexerProcess::~IndexerProcess() { kill(); }

void IndexerProcess::start() {
  // An order may come before the new process waits for any.
  const auto signals = orders();
  ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  process_ = ::fork();
  if (process_ == 0) runIndexer(setup_, newestIdentifier_);
  ::pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  if (process_ < 0) throw std::runtime_error("no process");
}

void IndexerProcess::kill() {
  if (process_ <= 0) return;
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
  process_ = -1;
}

void IndexerProcess::quit() {
  // Its background threads run only when nobody else wants the machine.
  constexpr std::chrono::seconds kPatience{20};
  ::kill(process_, SIGTERM);
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  int status = 0;
  while (::waitpid(process_, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > deadline) throw std::runtime_error("does not quit");
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  process_ = -1;
  if (status != 0) throw std::runtime_error("quitting failed");
}

void IndexerProcess::rebuild() const { ::kill(process_, kRebuild); }

void IndexerProcess::rebuildFirstRoot() const { ::kill(process_, kRebuildFirstRoot); }

void IndexerProcess::limitFiles(std::optional<std::uint64_t> bytes) const {
  const rlimit limit{.rlim_cur = bytes.value_or(RLIM_INFINITY), .rlim_max = RLIM_INFINITY};
  ::prlimit(process_, RLIMIT_FSIZE, &limit, nullptr);
}

void IndexerProcess::pause() const { ::kill(process_, SIGSTOP); }

void IndexerProcess::resume() const { ::kill(process_, SIGCONT); }

void IndexerProcess::check() {
  const FileDefaultsStore settings(setup_.stateFolder);
  newestIdentifier_ =
      std::max(newestIdentifier_, settings.get<std::uint64_t>(kIdentifierKey).value_or(0));
  if (::waitpid(process_, nullptr, WNOHANG) == 0) return;
  process_ = -1;
  throw std::runtime_error("the indexer died");
}

}  // namespace zelnor::test
