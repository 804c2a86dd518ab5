#pragma once

#include <functional>

#include "platform/FileOpener.h"

namespace zelnor::platform {

/// Where activations come from. Main thread only.
class ActivationSource {
 public:
  using Ready = std::function<void(Activation)>;

  virtual ~ActivationSource() = default;

  /// Asks for an activation in the name of the user's last key or click. `ready` is called on the
  /// main thread, at once or soon, in any case once, with an empty activation if there is no other.
  /// Not after the source is gone.
  virtual void request(Ready ready) = 0;
};

}  // namespace zelnor::platform
