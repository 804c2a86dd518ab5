#pragma once

#include <memory>
#include <string>

#include <gio/gio.h>

#include "platform/FileError.h"

namespace zelnor::platform {

/// Gives back what GLib allocated.
struct GLibDeleter {
  void operator()(char* text) const { g_free(text); }
  void operator()(GVariant* value) const { g_variant_unref(value); }
  void operator()(GKeyFile* file) const { g_key_file_unref(file); }
  void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
};
template <class T>
using GLibPointer = std::unique_ptr<T, GLibDeleter>;

/// One reference to a GObject.
struct GObjectDeleter {
  void operator()(gpointer object) const { g_object_unref(object); }
};
template <class T>
using GObjectPointer = std::unique_ptr<T, GObjectDeleter>;

/// Where a GLib call leaves its error.
class GLibError {
 public:
  GLibError() = default;
  GLibError(const GLibError&) = delete;
  GLibError& operator=(const GLibError&) = delete;
  ~GLibError() { g_clear_error(&error_); }

  /// For one call.
  [[nodiscard]] GError** out() { return &error_; }
  explicit operator bool() const { return error_ != nullptr; }
  [[nodiscard]] bool is(GIOErrorEnum code) const {
    return g_error_matches(error_, G_IO_ERROR, code) != FALSE;
  }
  [[nodiscard]] FileError toFileError() const {
    FileError error(error_ != nullptr ? error_->message : "");
    return error;
  }

 private:
  GError* error_ = nullptr;
};

inline GObjectPointer<GFile> fileAt(const std::string& path) {
  return GObjectPointer<GFile>(g_file_new_for_path(path.c_str()));
}

}  // namespace zelnor::platform
