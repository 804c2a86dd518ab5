#pragma once

#include <functional>

#include "search/Date.h"
#include "tasks/Async.h"

namespace zelnor {

class BookmarkPersistenceService;

/// What the bookmark view model works with. Everything here outlives its tasks.
struct BookmarkServices {
  BookmarkPersistenceService& persistence;
  tasks::Executor main;                   ///< the main thread
  std::function<Date()> now = Date::now;  ///< the time of day
};

}  // namespace zelnor
