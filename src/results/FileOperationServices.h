#pragma once

#include "platform/ActivationSource.h"
#include "platform/FileActions.h"
#include "platform/FileOpener.h"
#include "tasks/Async.h"
#include "tasks/Clock.h"

namespace zelnor {

/// What file operations work with. Everything here outlives them.
struct FileOperationServices {
  platform::FileActions& actions;
  platform::FileOpener& opener;
  platform::ActivationSource& activation;
  tasks::Clock& clock;
  tasks::Executor main;      ///< the main thread
  tasks::Executor blocking;  ///< threads of ordinary priority that may wait for disks and programs
};

}  // namespace zelnor
