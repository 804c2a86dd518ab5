#pragma once

#include "platform/DefaultsStore.h"
#include "search/SearchSource.h"
#include "tasks/Async.h"
#include "tasks/Clock.h"

namespace zelnor {

/// What the search view model works with. Everything here outlives its tasks.
struct SearchServices {
  SearchSource& source;
  tasks::Clock& clock;
  platform::DefaultsStore& defaults;
  tasks::Executor main;        ///< the main thread
  tasks::Executor background;  ///< does what the main thread must not wait for: stores settings,
                               ///< frees long lists
};

}  // namespace zelnor
