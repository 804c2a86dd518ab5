#pragma once

#include <memory>
#include <string>
#include <vector>

#include <QPointer>

#include "platform/FileAppearances.h"
#include "platform/IconFinder.h"
#include "results/FileIconReader.h"
#include "results/FileIcons.h"
#include "results/LruCache.h"
#include "tasks/Async.h"
#include "tasks/TaskGroup.h"

namespace zelnor {

/// The desktop's icons for files: their pictures from the thumbnail cache, else icons of their
/// types. What is asked for last is looked up first; what many others were asked after is forgotten
/// until it is asked for again. Keeps 8 MB at most.
class DesktopFileIcons final : public FileIcons {
  Q_OBJECT

 public:
  /// A queue as long as what may be visible at a time.
  static constexpr std::size_t kMaxWaiting = 256;

  struct Services {
    std::unique_ptr<platform::FileAppearances> appearances;
    std::unique_ptr<platform::IconFinder> finder;
    tasks::Executor main;        ///< the main thread
    tasks::Executor background;  ///< threads that may wait for the disk
  };

  explicit DesktopFileIcons(Services services, QObject* parent = nullptr);
  ~DesktopFileIcons() override;

  QImage icon(const FileRecord& record, int pixels) override;

 private:
  struct Look {
    QImage thumbnail;
    std::string icon;  ///< its picture is in `icons_` if there is no thumbnail
  };
  using Requests = std::vector<FileIconRequest>;
  using Answers = std::vector<FileIconAnswer>;

  void ask(FileIconRequest request);
  [[nodiscard]] Requests takeNewest();
  void accept(Answers answers);
  static tasks::Async<void> work(QPointer<DesktopFileIcons> self,
                                 std::shared_ptr<FileIconReader> reader,
                                 tasks::Executor background);

  LruCache<Look> looks_;
  LruCache<QImage> icons_;
  Requests waiting_;  ///< the newest is the last
  bool isWorking_ = false;
  /// Shared with work that has not noticed yet that nobody waits for it.
  std::shared_ptr<FileIconReader> reader_;
  tasks::Executor background_;
  tasks::TaskGroup tasks_;
};

}  // namespace zelnor
