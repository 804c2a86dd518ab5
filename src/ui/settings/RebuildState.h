#pragma once

#include <optional>

#include <QString>

#include "indexer/IndexSettingsText.h"

namespace zelnor::ui {

/// What the index page shows of the index and of a rebuild that was started there.
struct RebuildState {
  IndexSettingsText text;
  bool isRebuilding = false;
  std::optional<double> progress = 0;  ///< of that rebuild, from 0 to 1; nothing while unknown
  QString error;                       ///< why the last one failed; empty if it did not
  bool hasUnappliedEdits = false;      ///< the next rebuild will differ from what is indexed
};

}  // namespace zelnor::ui
