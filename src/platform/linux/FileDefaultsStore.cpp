#include "platform/FileDefaultsStore.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <mutex>
#include <system_error>
#include <utility>

#include <nlohmann/json.hpp>

#include "platform/AtomicFile.h"
#include "platform/FileDescriptor.h"
#include "platform/FileLock.h"
#include "platform/UserFolders.h"
#include "platform/linux/DefaultsJson.h"

namespace zelnor::platform {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kIndent = 2;  // people read this file too

/// What tells one version of the file from the next.
struct Version {
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = 0;
  time_t seconds = 0;
  long nanoseconds = 0;
  friend bool operator==(const Version&, const Version&) = default;
};

Version versionFrom(const struct stat& status) {
  return {.device = status.st_dev,
          .inode = status.st_ino,
          .size = status.st_size,
          .seconds = status.st_mtim.tv_sec,
          .nanoseconds = status.st_mtim.tv_nsec};
}

/// What was read from the file.
struct Content {
  enum class State : std::uint8_t { missing, sound, damaged, unreadable };

  State state = State::missing;
  Json values = Json::object();
  Version version;
  FileDescriptor
      file;  ///< stays open, so that no later version of the file can have the same inode
};

Content readContent(const std::string& path) {
  using State = Content::State;
  Content content;
  content.file = FileDescriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat status{};
  if (!content.file || ::fstat(content.file.get(), &status) != 0) {
    content.state = errno == ENOENT ? State::missing : State::unreadable;
    return content;
  }
  content.version = versionFrom(status);
  const auto text = readAll(content.file);
  auto json = Json::parse(text.value_or(""), /*cb=*/nullptr, /*allow_exceptions=*/false);
  if (!text) {
    content.state = State::unreadable;
  } else if (json.is_object()) {
    content.state = State::sound;
    content.values = std::move(json);
  } else {
    content.state = State::damaged;
  }
  return content;
}

}  // namespace

struct FileDefaultsStore::State {
  explicit State(std::string itsFolder) : folder(std::move(itsFolder)) {}

  std::optional<Value> value(std::string_view key) {
    const std::scoped_lock lock(mutex);
    refresh();
    const auto found = content.values.find(key);
    return found == content.values.end() ? std::nullopt : valueFromJson(*found);
  }

  /// Applies `edit` to the values. If they cannot be written, nothing changes.
  template <class Edit>
  void change(Edit edit) {
    const std::scoped_lock lock(mutex);
    try {
      refresh();
      if (edited(edit) == content.values) return;
      createPrivateFolder(folder);
      const auto untilWritten = FileLock::acquire(path + ".lock");
      refresh();
      write(edited(edit));
      refresh();
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): it was all or nothing
      // A full disk, no permission, a key that is not UTF-8: the file is as it was.
    }
  }

 private:
  void refresh() {
    struct stat status{};
    const bool isThere = ::stat(path.c_str(), &status) == 0;
    const bool isUnchanged = isThere ? content.file && versionFrom(status) == content.version
                                     : content.state == Content::State::missing;
    if (!isUnchanged) content = readContent(path);
  }

  template <class Edit>
  Json edited(Edit edit) const {
    auto values = content.values;
    edit(values);
    return values;
  }

  void write(const Json& values) const {
    const auto text = values.dump(kIndent) + "\n";
    // What cannot be read is not ours to replace.
    if (content.state == Content::State::unreadable) return;
    if (content.state == Content::State::damaged) setAside(path);
    replaceFile(path, text);
  }

  const std::string folder;
  const std::string path = folder + "/settings.json";
  std::mutex mutex;
  Content content;
};

FileDefaultsStore::FileDefaultsStore(std::string folder)
    : state_(std::make_unique<State>(std::move(folder))) {}
FileDefaultsStore::~FileDefaultsStore() = default;

std::optional<DefaultsStore::Value> FileDefaultsStore::value(std::string_view key) const {
  return state_->value(key);
}

void FileDefaultsStore::set(std::string_view key, Value value) {
  state_->change([&](Json& values) { values[std::string(key)] = toJson(value); });
}

void FileDefaultsStore::remove(std::string_view key) {
  state_->change([&](Json& values) { values.erase(std::string(key)); });
}

}  // namespace zelnor::platform
