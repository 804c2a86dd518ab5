#pragma once

#include <string>

#include "indexer/IndexMaintainer.h"
#include "platform/DefaultsStore.h"
#include "tasks/Async.h"

namespace zelnor {

/// What the index view model works with. Everything here outlives its tasks.
struct IndexServices {
  IndexMaintainer& maintainer;
  platform::DefaultsStore& defaults;
  std::string homeFolder;      ///< what is indexed while nothing else is configured
  tasks::Executor main;        ///< the main thread
  tasks::Executor background;  ///< writes the settings, so that the main thread need not wait
};

}  // namespace zelnor
