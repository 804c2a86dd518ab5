#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <QObject>

#include "search/SearchResult.h"

namespace zelnor {

class FileOperationAlerts;
struct FileOperationServices;

/// Acts on files of the result list. The index is left alone: the change stream sees what happens.
///
/// Main thread only; the work is done on other threads, and every call returns at once.
class FileOperationService final : public QObject {
  Q_OBJECT

 public:
  using IdSet = std::set<std::int64_t>;

  /// A call that takes longer than this should be seen to be under way.
  static constexpr std::chrono::milliseconds kLong{500};

  explicit FileOperationService(const FileOperationServices& services, QObject* parent = nullptr);
  /// After `stop` has ended, or while nothing is under way.
  ~FileOperationService() override;

  /// Who shows failures; outlives the service or is replaced by nullptr first. An alert that is
  /// open counts as closed then, and without alerts failures are passed over.
  void setAlerts(FileOperationAlerts* alerts);

  /// Moves these files to the trash one after the other, in this order. Each failure is an alert,
  /// and the next file waits until it is closed. A call while another is under way waits for it to
  /// end.
  void moveToTrash(std::vector<SearchResult> results);
  /// Ends moving to the trash after the file that is being moved; calls that wait are given up too,
  /// as they are when the user wants no more after an alert.
  void cancel();

  /// Files are being moved to the trash.
  [[nodiscard]] bool isMoving() const;
  /// That has taken longer than `kLong`, not counting the time in which an alert was open.
  [[nodiscard]] bool isTakingLong() const;

  /// Renames the entry at `path` within its folder to exactly `newName` (bytes). A failure is an
  /// alert.
  void rename(const std::string& path, const std::string& newName);

  /// Opens the file with its default application, or shows it in the file manager. Reports nothing.
  void open(const std::string& path);
  void reveal(const std::string& path);

  /// Gives up everything under way after the step it is in. Calls `stopped` (main thread) when all
  /// of it has ended; the service must live until then. Nothing starts afterwards.
  void stop(std::function<void()> stopped);

 Q_SIGNALS:
  /// So many of the files of this call have been dealt with.
  void progressChanged(int done, int total);
  void isMovingChanged();
  void isTakingLongChanged();
  /// The end of one call of `moveToTrash`: the rows of the files that it tried to move, whether or
  /// not they could be. Rows that a cancelled call did not come to are not among them.
  void trashed(const std::set<std::int64_t>& ids);

 private:
  class Tasks;
  std::unique_ptr<Tasks> tasks_;
};

}  // namespace zelnor
