#include "tests/torture/IndexerProcess.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <stdexcept>
#include <utility>

#include "indexer/FSEventsMonitor.h"
#include "platform/SerialQueue.h"
#include "tests/torture/MemoryIndex.h"
#include "tests/torture/Walk.h"

namespace zelnor::test {

namespace {

using platform::ChangeStreamOptions;
using platform::FileDescriptor;

constexpr std::size_t kMaxMessage = std::size_t{64} * 1024;

/// The indexing side, put together like the real one: the monitor only hands over, an actor
/// applies.
class Indexer {
 public:
  explicit Indexer(IndexerProcess::Setup setup)
      : setup_(std::move(setup)),
        index_(std::make_shared<MemoryIndex>(setup_.stateFolder + "/journal")),
        actor_("actor") {
    startMonitoring();
    if (index_->rows().empty()) rescan();
  }

  [[nodiscard]] std::string difference(const std::vector<std::string>& ignored) const {
    return test::difference(Walk::of(setup_.roots), index_->rows(), ignored);
  }

 private:
  void startMonitoring() {
    monitor_ = std::make_unique<FSEventsMonitor>(
        /*latency=*/0.05, [this](auto items) { handOver(std::move(items)); },
        [this](auto paths, auto sinceWhen, double latency, auto flags, auto callback) {
          auto options = optionsFor(std::move(paths));
          options.sinceWhen = sinceWhen;
          options.latency = std::chrono::duration<double>(latency);
          options.flags = flags;
          return platform::createChangeStream(std::move(options), std::move(callback));
        });
    monitor_->onLatestEventID = [this](auto identifier) { index_->advanceIdentifier(identifier); };
    monitor_->onRescanNeeded = [this](const auto&) { rescan(); };
    monitor_->start(setup_.roots, platform::kFSEventStreamEventIdSinceNow);
  }

  [[nodiscard]] ChangeStreamOptions optionsFor(std::vector<std::string> roots) const {
    ChangeStreamOptions options;
    options.roots = std::move(roots);
    options.index = index_;
    options.stateFolder = setup_.stateFolder;
    options.forcedSource = setup_.source;
    options.watchLimit = setup_.watchLimit;
    options.sweepInterval = std::chrono::milliseconds(100);
    options.deepSweepInterval = std::chrono::milliseconds(500);
    return options;
  }

  void handOver(std::vector<FSEventItem> items) {
    index_->gate().handOver();
    actor_.post([this, items = std::move(items)] {
      index_->apply(items);
      index_->gate().applied();
    });
  }

  void rescan() {
    actor_.post([this] {
      index_->rebuild(Walk::of(setup_.roots).records());
      monitor_.reset();
      startMonitoring();
    });
  }

  IndexerProcess::Setup setup_;
  std::shared_ptr<MemoryIndex> index_;
  std::unique_ptr<FSEventsMonitor> monitor_;
  platform::SerialQueue actor_;
};

std::vector<std::string> split(std::string_view text) {
  std::vector<std::string> parts;
  while (!text.empty()) {
    parts.emplace_back(text.substr(0, text.find('\0')));
    text.remove_prefix(std::min(parts.back().size() + 1, text.size()));
  }
  return parts;
}

/// Answers questions until there is nobody to ask.
void serve(const Indexer& indexer, const FileDescriptor& connection) {
  std::string message(kMaxMessage, '\0');
  for (;;) {
    const auto length = ::recv(connection.get(), message.data(), message.size(), 0);
    if (length <= 0) return;
    auto answer =
        indexer.difference(split({message.data() + 1, static_cast<std::size_t>(length - 1)}));
    answer.insert(0, 1, '=');
    ::send(connection.get(), answer.data(), answer.size(), 0);
  }
}

[[noreturn]] void runIndexer(const IndexerProcess::Setup& setup, const FileDescriptor& connection) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (setup.user != ::geteuid()) {
    if (::setresgid(setup.user, setup.user, setup.user) != 0) std::abort();
    if (::setresuid(setup.user, setup.user, setup.user) != 0) std::abort();
  }
  try {
    const Indexer indexer(setup);
    serve(indexer, connection);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "indexer: %s\n", error.what());
  }
  ::_exit(1);
}

}  // namespace

IndexerProcess::IndexerProcess(Setup setup) : setup_(std::move(setup)) { start(); }

IndexerProcess::~IndexerProcess() { kill(); }

void IndexerProcess::start() {
  std::array<int, 2> ends{};
  if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    throw std::runtime_error("no socket");
  }
  const FileDescriptor theirs(ends[1]);
  connection_ = FileDescriptor(ends[0]);
  process_ = ::fork();
  if (process_ != 0) return;
  connection_.close();
  runIndexer(setup_, theirs);
}

void IndexerProcess::kill() {
  if (process_ <= 0) return;
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
  process_ = -1;
}

void IndexerProcess::pause() const { ::kill(process_, SIGSTOP); }

void IndexerProcess::resume() const { ::kill(process_, SIGCONT); }

std::string IndexerProcess::difference(const std::vector<std::string>& ignored) const {
  std::string message = "?";
  for (const auto& folder : ignored) message += folder + '\0';
  ::send(connection_.get(), message.data(), message.size(), MSG_NOSIGNAL);
  message.resize(kMaxMessage);
  const auto length = ::recv(connection_.get(), message.data(), message.size(), 0);
  if (length <= 0) throw std::runtime_error("the indexer died");
  return message.substr(1, static_cast<std::size_t>(length - 1));
}

}  // namespace zelnor::test
