#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace zelnor::platform {

/// A per-user store of typed values under fixed keys, that survives restarts.
///
/// Thread-safe. Reading never fails: a value that is missing or of another type is nothing. What
/// cannot be written stays as it was.
class DefaultsStore {
 public:
  using Bytes = std::vector<std::byte>;
  using Value = std::variant<bool, std::uint64_t, std::string, std::vector<std::string>, Bytes>;

  virtual ~DefaultsStore() = default;

  [[nodiscard]] virtual std::optional<Value> value(std::string_view key) const = 0;
  virtual void set(std::string_view key, Value value) = 0;
  /// The same for a value that changes all the time and is no great loss: when the power fails it
  /// may be gone or an older one, and no other value is. It survives the process, whatever ends it.
  virtual void setVolatile(std::string_view key, Value value) { set(key, std::move(value)); }
  virtual void remove(std::string_view key) = 0;

  /// The value under `key` if it is a `T`.
  template <class T>
  [[nodiscard]] std::optional<T> get(std::string_view key) const {
    const auto stored = value(key);
    if (!stored) return std::nullopt;
    const T* typed = std::get_if<T>(&*stored);
    return typed ? std::optional<T>(*typed) : std::nullopt;
  }
};

}  // namespace zelnor::platform
