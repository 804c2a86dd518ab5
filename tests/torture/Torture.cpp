// Random operations on trees that are followed by an indexer which is stopped, killed and cut short
// meanwhile. After each round, when it has settled, its index must equal what is on disk.
//
// As root it also unmounts and mounts roots, and tries the file-system mark; everything else then
// runs as "nobody", so that permissions count.

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <random>
#include <regex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <CLI/CLI.hpp>

#include "store/DatabaseError.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/torture/IndexerProcess.h"
#include "tests/torture/Operations.h"
#include "tests/torture/StoredIndex.h"
#include "tests/torture/Walk.h"

namespace {

using namespace zelnor::test;
using zelnor::platform::ChangeSourceKind;
using Clock = std::chrono::steady_clock;

constexpr uid_t kNobody = 65534;
constexpr std::chrono::seconds kSettleLimit{40};
constexpr std::chrono::seconds kUnseenLimit{5};

struct Source {
  const char* name;
  ChangeSourceKind kind;
};
constexpr std::array<Source, 4> kSources{Source{"mark", ChangeSourceKind::fileSystemMark},
                                         Source{"folders", ChangeSourceKind::folderMarks},
                                         Source{"inotify", ChangeSourceKind::inotify},
                                         Source{"sweep", ChangeSourceKind::sweep}};

struct Plan {
  std::uint64_t seed = 0;
  int seconds = 60;
  std::string source = "all";
  bool mounts = true;
};

/// Does things as the user whose permissions are to count.
class AsUser {
 public:
  explicit AsUser(uid_t user) : former_(::geteuid()) { become(user); }
  AsUser(const AsUser&) = delete;
  AsUser& operator=(const AsUser&) = delete;
  ~AsUser() { become(former_); }

 private:
  static void become(uid_t user) {
    if (::seteuid(user) != 0) throw std::runtime_error("cannot change the user");
  }
  uid_t former_;
};

/// One indexer, two roots, and a place outside. The second root, and a folder in the first, are
/// mounts if the process may mount.
class Playground {
 public:
  Playground(std::uint64_t seed, ChangeSourceKind source, bool mounts)
      : random_(seed),
        mayMount_(mounts && ::geteuid() == 0),
        user_(::geteuid() == 0 && source != ChangeSourceKind::fileSystemMark ? kNobody
                                                                             : ::geteuid()) {
    ::chmod(base_.path().c_str(), 0755);
    for (const char* name : {"one", "two", "outside", "state", "backing", "backing2"}) give(name);
    if (mayMount_) {
      const AsUser asUser(user_);
      ::mkdir((base_ / "one/stick").c_str(), 0755);
    }
    if (mayMount_) mountAll();
    prepare(seed);
    constexpr std::size_t kSmallLimit = 50;
    indexer_ = std::make_unique<IndexerProcess>(IndexerProcess::Setup{
        .roots = roots_,
        .stateFolder = base_ / "state",
        .source = source,
        .watchLimit = random_() % 3 == 0 ? std::optional(kSmallLimit) : std::nullopt,
        .user = user_});
  }
  Playground(const Playground&) = delete;
  Playground& operator=(const Playground&) = delete;
  ~Playground() {
    indexer_.reset();
    if (mayMount_) unmountAll();
    removeTree(base_.path());
  }

  /// How often only comparing found what had happened to a file with several names.
  [[nodiscard]] int mended() const { return mended_; }

  /// Answers the differences that are left; none if all is well.
  std::string round() {
    if (auto left = settle({}); !left.empty()) return left;
    const bool isMountRound = mayMount_ && random_() % 4 == 0;
    const auto disturbance = static_cast<Disturbance>(random_() % kDisturbances);
    disturb(disturbance);
    if (isMountRound) unmountAll();
    work(disturbance == Disturbance::standstill);
    endDisturbance(disturbance);
    const auto circumstances = "  with " + nameOf(disturbance) + ", ";
    if (!isMountRound) return after(circumstances + "mounted\n", settle({}));
    auto left = settle({base_ / "two", base_ / "one/stick"});
    if (!left.empty()) return after(circumstances + "unmounted\n", left);
    mountAll();
    return after(circumstances + "mounted again\n", settle({}));
  }

 private:
  /// Nothing, or what is left with what led to it.
  static std::string after(const std::string& circumstances, const std::string& left) {
    return left.empty() ? left : circumstances + left;
  }

  /// What happens to the indexer while the trees change.
  enum class Disturbance : std::uint8_t {
    standstill,
    absence,
    kill,
    quit,
    rebuild,
    otherRebuild,
    fullDisk,
    none
  };
  static constexpr unsigned kDisturbances = 10;  // now and then none

  static std::string nameOf(Disturbance disturbance) {
    constexpr std::array kNames{"standstill", "absence",       "kill",     "quit",
                                "rebuild",    "other rebuild", "full disk"};
    const auto number = static_cast<std::size_t>(disturbance);
    return number < kNames.size() ? kNames.at(number) : "none";
  }

  void disturb(Disturbance disturbance) {
    switch (disturbance) {
      case Disturbance::standstill:
        return indexer_->pause();
      case Disturbance::absence:
        return indexer_->kill();
      case Disturbance::rebuild:
        return indexer_->rebuild();
      case Disturbance::fullDisk:
        indexer_->limitFiles(random_() % (1U << 20U));
        if (random_() % 2 == 0) indexer_->rebuild();
        return;
      default:
        return;
    }
  }

  void endDisturbance(Disturbance disturbance) {
    switch (disturbance) {
      case Disturbance::standstill:
        return indexer_->resume();
      case Disturbance::absence:
        return indexer_->start();
      case Disturbance::kill:
        indexer_->kill();
        return indexer_->start();
      case Disturbance::quit:
        indexer_->quit();
        return indexer_->start();
      case Disturbance::otherRebuild:
        return breakOffAnotherRebuild();
      case Disturbance::fullDisk:
        // What could not be stored meanwhile is found by comparing.
        indexer_->limitFiles(std::nullopt);
        indexer_->quit();
        return indexer_->start();
      default:
        return;
    }
  }

  /// One of other roots than the next process has.
  void breakOffAnotherRebuild() {
    indexer_->rebuildFirstRoot();
    std::this_thread::sleep_for(std::chrono::milliseconds(random_() % 100));
    if (random_() % 2 == 0) {
      indexer_->kill();
    } else {
      indexer_->quit();
    }
    const bool isBrokenOff = isHalfBuilt(base_ / "state");
    indexer_->start();
    // Nobody can tell that an index without a root is not meant to be so.
    if (!isBrokenOff) indexer_->rebuild();
  }

  void give(const std::string& name) const {
    const auto path = base_.folder(name);
    if (::chown(path.c_str(), user_, user_) != 0) throw std::runtime_error("chown");
  }

  void prepare(std::uint64_t seed) {
    const AsUser asUser(user_);
    operations_ = std::make_unique<Operations>(seed, roots_, base_ / "outside");
    constexpr int kOperationsBefore = 300;
    for (int i = 0; i < kOperationsBefore; ++i) operations_->runOne();
    // A root of which the index knows nothing would not be compared after a restart.
    for (const char* name : {"one/kept", "two/kept"}) base_.file(name);
  }

  void work(bool floods) {
    const AsUser asUser(user_);
    constexpr int kMaxOperations = 400;
    const int count = static_cast<int>(random_() % kMaxOperations);
    for (int i = 0; i < count; ++i) {
      operations_->runOne();
      // Now and then time for the indexer to get in between.
      if (random_() % 16 == 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(random_() % 20));
    }
    if (floods && random_() % 2 == 0) operations_->overflow();
    if (!floods) removeTree(base_ / "one/flood");
  }

  std::string settle(const std::vector<std::string>& ignored) {
    auto left = settleWithin(kSettleLimit, ignored);
    if (left.empty()) return check();
    // Only comparing finds what else changed with a name that was gone before anybody looked.
    if (!isOfUnseenFiles(left)) return left;
    ++mended_;
    indexer_->kill();
    indexer_->start();
    left = settleWithin(kSettleLimit, ignored);
    return left.empty() ? check() : left;
  }

  [[nodiscard]] std::string difference(const std::vector<std::string>& ignored) const {
    const AsUser asUser(user_);
    indexer_->check();
    try {
      return zelnor::test::difference(Walk::of(roots_), storedRows(base_ / "state"), ignored);
    } catch (const zelnor::DatabaseError& error) {
      // Perhaps the indexer is just making it.
      return std::string("  everything is missing: ") + error.what() + '\n';
    }
  }

  [[nodiscard]] std::string check() const {
    const AsUser asUser(user_);
    return unsoundness(base_ / "state");
  }

  [[nodiscard]] std::string settleWithin(std::chrono::seconds limit,
                                         const std::vector<std::string>& ignored) const {
    std::string left;
    const auto deadline = Clock::now() + limit;
    do {
      left = difference(ignored);
      const bool isLate = Clock::now() > deadline - limit + kUnseenLimit;
      if (left.empty() || (isLate && isOfUnseenFiles(left))) return left;
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    } while (Clock::now() < deadline);
    return left;
  }

  [[nodiscard]] bool isOfUnseenFiles(const std::string& differences) const {
    static const std::regex kInode(" inode ([0-9]+)");
    const AsUser asUser(user_);
    const auto unseen = operations_->changedUnseen();
    for (std::sregex_iterator found(differences.begin(), differences.end(), kInode), end;
         found != end; ++found) {
      if (!unseen.contains(std::stoull((*found)[1]))) return false;
    }
    return true;
  }

  void mountAll() const {
    bind(base_ / "backing", base_ / "two");
    bind(base_ / "backing2", base_ / "one/stick");
  }
  static void bind(const std::string& from, const std::string& to) {
    ::mkdir(to.c_str(), 0755);
    if (::mount(from.c_str(), to.c_str(), nullptr, MS_BIND, nullptr) != 0) {
      throw std::runtime_error("cannot mount " + to);
    }
  }
  void unmountAll() const {
    ::umount2((base_ / "two").c_str(), MNT_DETACH);
    ::umount2((base_ / "one/stick").c_str(), MNT_DETACH);
  }

  std::mt19937_64 random_;
  int mended_ = 0;
  TemporaryFolder base_;
  bool mayMount_;
  uid_t user_;
  const std::vector<std::string> roots_{base_ / "one", base_ / "two"};
  std::unique_ptr<Operations> operations_;
  std::unique_ptr<IndexerProcess> indexer_;
};

/// What is left to complain of after a round.
std::string outcome(Playground& playground) {
  try {
    return playground.round();
  } catch (const std::exception& error) {
    return std::string("  ") + error.what() + '\n';
  }
}

bool torture(const Source& source, const Plan& plan, Clock::time_point deadline) {
  int rounds = 0;
  int mended = 0;
  for (std::uint64_t seed = plan.seed; Clock::now() < deadline; ++seed) {
    Playground playground(seed, source.kind, plan.mounts);
    constexpr int kRoundsPerPlayground = 12;
    for (int i = 0; i < kRoundsPerPlayground && Clock::now() < deadline; ++i, ++rounds) {
      const auto left = outcome(playground);
      if (left.empty()) continue;
      std::printf("%s: FAILED, seed %lu, round %d:\n%s", source.name, seed, i, left.c_str());
      return false;
    }
    mended += playground.mended();
  }
  std::printf("%s: %d rounds from seed %lu, %d times a hard link was mended by comparing\n",
              source.name, rounds, plan.seed, mended);
  return true;
}

/// Mounts are ours alone.
bool enterOwnMounts() {
  return ::unshare(CLONE_NEWNS) == 0 &&
         ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  Plan plan{.seed = std::random_device()()};
  CLI::App app("Changes trees at random and compares what an indexer makes of it with the disk.");
  app.add_option("--seconds", plan.seconds, "how long, altogether")->capture_default_str();
  app.add_option("--seed", plan.seed, "of the first tree; a failing one can be replayed");
  app.add_option("--source", plan.source, "mark, folders, inotify, sweep or all")
      ->capture_default_str();
  app.add_flag("!--no-mounts", plan.mounts, "do not unmount and mount roots");
  CLI11_PARSE(app, argc, argv);
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  if (plan.mounts) plan.mounts = ::geteuid() == 0 && enterOwnMounts();

  std::vector<Source> sources;
  for (const auto& source : kSources) {
    const bool isPossible = source.kind != ChangeSourceKind::fileSystemMark || ::geteuid() == 0;
    if (isPossible && (plan.source == "all" || plan.source == source.name)) {
      sources.push_back(source);
    }
  }
  bool isGood = true;
  for (const auto& source : sources) {
    const auto share = std::chrono::seconds(plan.seconds) / static_cast<int>(sources.size());
    isGood = torture(source, plan, Clock::now() + share) && isGood;
  }
  return isGood ? 0 : 1;
}
