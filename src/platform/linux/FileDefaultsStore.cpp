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
using Value = DefaultsStore::Value;

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

/// The values in one file.
class ValuesFile {
 public:
  ValuesFile(std::string folder, const char* name, Flushing flushing)
      : folder_(std::move(folder)), path_(folder_ + name), flushing_(flushing) {}

  std::optional<Value> value(std::string_view key) {
    const std::scoped_lock lock(mutex_);
    refresh();
    const auto found = content_.values.find(key);
    return found == content_.values.end() ? std::nullopt : valueFromJson(*found);
  }

  bool set(std::string_view key, const Value& value) {
    return change([&](Json& values) { values[std::string(key)] = toJson(value); });
  }
  bool remove(std::string_view key) {
    return change([&](Json& values) { values.erase(std::string(key)); });
  }

 private:
  /// Applies `edit` to the values. If they cannot be written, nothing changes. Answers whether the
  /// file holds them.
  template <class Edit>
  bool change(Edit edit) {
    const std::scoped_lock lock(mutex_);
    try {
      refresh();
      if (edited(edit) == content_.values) return true;
      createPrivateFolder(folder_);
      const auto untilWritten = FileLock::acquire(path_ + ".lock");
      refresh();
      const bool isWritten = write(edited(edit));
      refresh();
      return isWritten;
    } catch (const std::exception&) {
      // A full disk, no permission, a key that is not UTF-8: the file is as it was.
      return false;
    }
  }

  void refresh() {
    struct stat status{};
    const bool isThere = ::stat(path_.c_str(), &status) == 0;
    const bool isUnchanged = isThere ? content_.file && versionFrom(status) == content_.version
                                     : content_.state == Content::State::missing;
    if (!isUnchanged) content_ = readContent(path_);
  }

  template <class Edit>
  Json edited(Edit edit) const {
    auto values = content_.values;
    edit(values);
    return values;
  }

  [[nodiscard]] bool write(const Json& values) const {
    const auto text = values.dump(kIndent) + "\n";
    // What cannot be read is not ours to replace.
    if (content_.state == Content::State::unreadable) return false;
    // What was not flushed may well be damaged.
    const bool isOddlyDamaged =
        content_.state == Content::State::damaged && flushing_ == Flushing::now;
    if (isOddlyDamaged) setAside(path_);
    replaceFile(path_, text, flushing_);
    return true;
  }

  const std::string folder_;
  const std::string path_;
  const Flushing flushing_;
  std::mutex mutex_;
  Content content_;
};

}  // namespace

/// A key is in one of the files; while it goes from one to the other the volatile value counts.
struct FileDefaultsStore::State {
  explicit State(const std::string& folder)
      : settings(folder, "/settings.json", Flushing::now),
        volatiles(folder, "/state.json", Flushing::later) {}

  ValuesFile settings;
  ValuesFile volatiles;
};

FileDefaultsStore::FileDefaultsStore(const std::string& folder)
    : state_(std::make_unique<State>(folder)) {}
FileDefaultsStore::~FileDefaultsStore() = default;

std::optional<DefaultsStore::Value> FileDefaultsStore::value(std::string_view key) const {
  auto value = state_->volatiles.value(key);
  return value ? value : state_->settings.value(key);
}

void FileDefaultsStore::set(std::string_view key, Value value) {
  if (state_->settings.set(key, value)) state_->volatiles.remove(key);
}

void FileDefaultsStore::setVolatile(std::string_view key, Value value) {
  if (state_->volatiles.set(key, value)) state_->settings.remove(key);
}

void FileDefaultsStore::remove(std::string_view key) {
  state_->settings.remove(key);
  state_->volatiles.remove(key);
}

}  // namespace zelnor::platform
