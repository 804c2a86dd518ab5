#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <QObject>

#include "indexer/IndexConfiguration.h"

namespace zelnor {

struct IndexServices;

/// The state behind the index page of the settings: the configuration being edited, and the
/// rebuild that was started there.
///
/// Main thread only. Edits stay here until `saveConfiguration()` or until a rebuild started here
/// succeeds.
class IndexViewModel final : public QObject {
  Q_OBJECT

 public:
  enum class PathList : std::uint8_t { included, excluded };

  /// Starts with the stored configuration.
  explicit IndexViewModel(const IndexServices& services, QObject* parent = nullptr);
  /// What is under way ends quietly.
  ~IndexViewModel() override;

  [[nodiscard]] const IndexConfiguration& configuration() const { return configuration_; }
  /// A rebuild started here runs. Automatic ones do not count.
  [[nodiscard]] bool isRebuildingIndex() const { return isRebuildingIndex_; }
  /// Why the last rebuild started here failed, in words for the user.
  [[nodiscard]] const std::optional<std::string>& rebuildError() const { return rebuildError_; }

  /// The configuration was edited, and no rebuild started here has succeeded with it since.
  [[nodiscard]] bool hasUnappliedEdits() const { return hasUnappliedEdits_; }

  /// Edits the configuration; nothing is stored.
  void setConfiguration(IndexConfiguration configuration);
  /// Appends `path`, also when it is there already, and saves the configuration.
  void addPath(PathList list, std::string path);
  /// Removes every entry that equals `path`; nothing is stored.
  void removePath(PathList list, const std::string& path);

  /// Rebuilds the index from the configuration, unless such a rebuild runs. Afterwards the
  /// configuration as it is then is stored; if the rebuild failed, there is an error instead. A
  /// rebuild that a newer one cancelled has not failed.
  void startRebuild();

  /// Stores the configuration and follows its roots. What is in folders added this way is indexed
  /// by the next rebuild; their later changes are seen from now on.
  void saveConfiguration();

  /// Calls `stopped` (main thread) when everything under way has ended and is stored; the view
  /// model must live until then. Whoever owns the indexer ends the rebuild.
  void stop(std::function<void()> stopped);

 Q_SIGNALS:
  void configurationChanged();
  void isRebuildingIndexChanged();
  void rebuildErrorChanged();
  void hasUnappliedEditsChanged();

 private:
  class Tasks;

  void setRebuildState(bool isRebuilding, std::optional<std::string> error);
  void setUnappliedEdits(bool areThere);

  IndexConfiguration configuration_;
  bool isRebuildingIndex_ = false;
  bool hasUnappliedEdits_ = false;
  std::optional<std::string> rebuildError_;
  std::unique_ptr<Tasks> tasks_;
};

}  // namespace zelnor
