#pragma once

#include <optional>

#include <QLocale>
#include <QString>

#include "indexer/IndexStatus.h"

/// What the index page of the settings shows. Pure functions.
namespace zelnor {

/// The texts that depend on the state of the index.
struct IndexSettingsText {
  QString state;                       ///< headline of the card
  QString cardButton;                  ///< starts a rebuild; not to be pressed while one runs
  QString fileCount;                   ///< beside "已索引文件" in the card
  QString lastUpdate;                  ///< beside "上次更新" in the card
  QString sectionButton;               ///< like `cardButton`, below the options
  QString indexedFiles;                ///< beside that button
  std::optional<QString> lastIndexed;  ///< below it; nothing before the first rebuild
  std::optional<QString> followed;     ///< how folders are followed; nothing before they are

  friend bool operator==(const IndexSettingsText&, const IndexSettingsText&) = default;
};

/// `isRebuilding` says whether a rebuild runs that was started on the page. Counts have the digit
/// grouping of `locale`, times are local.
IndexSettingsText indexSettingsText(const IndexStatus& status, bool isRebuilding,
                                    const QLocale& locale);

/// How far the running rebuild is, from 0 to 1, measured by what the index held before; nothing if
/// it held nothing, so that nobody knows.
std::optional<double> rebuildProgress(const IndexStatus& status);

}  // namespace zelnor
