#pragma once

#include <optional>
#include <string>
#include <utility>

namespace zelnor::platform {

/// Owns a file descriptor; -1 is none.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept
      : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~FileDescriptor() { close(); }

  explicit operator bool() const { return descriptor_ >= 0; }
  [[nodiscard]] int get() const { return descriptor_; }
  void close();

 private:
  int descriptor_ = -1;
};

/// Reads from where `file` stands to its end; nothing, and the reason in errno, if that fails.
std::optional<std::string> readAll(const FileDescriptor& file);

}  // namespace zelnor::platform
