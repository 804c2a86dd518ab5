#pragma once

#include <functional>
#include <string>

namespace zelnor {

/// Tells the user what went wrong. Main thread only.
class FileOperationAlerts {
 public:
  /// `goOn` is false if the user does not want the operations that follow.
  using Closed = std::function<void(bool goOn)>;

  virtual ~FileOperationAlerts() = default;

  /// Shows a warning and returns at once; `closed` is called on the main thread when the user has
  /// closed it, once, and may be called too late to matter. Both texts are plain text in UTF-8.
  /// `moreFollow` says that further files wait behind this one. There is one alert at a time.
  virtual void warn(const std::string& message, const std::string& explanation, bool moreFollow,
                    Closed closed) = 0;
};

}  // namespace zelnor
