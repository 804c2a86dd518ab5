#pragma once

#include <map>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "platform/DefaultsStore.h"

namespace zelnor::test {

/// The defaults store without a file.
class MemoryDefaultsStore final : public platform::DefaultsStore {
 public:
  [[nodiscard]] std::optional<Value> value(std::string_view key) const override {
    const std::scoped_lock lock(mutex_);
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
  }
  void set(std::string_view key, Value value) override {
    const std::scoped_lock lock(mutex_);
    values_.insert_or_assign(std::string(key), std::move(value));
    volatiles_.erase(std::string(key));
  }
  void setVolatile(std::string_view key, Value value) override {
    set(key, std::move(value));
    const std::scoped_lock lock(mutex_);
    volatiles_.emplace(key);
  }
  void remove(std::string_view key) override {
    const std::scoped_lock lock(mutex_);
    if (const auto found = values_.find(key); found != values_.end()) values_.erase(found);
  }

  /// Whether the value was stored without waiting for a disk.
  [[nodiscard]] bool isVolatile(std::string_view key) const {
    const std::scoped_lock lock(mutex_);
    return volatiles_.contains(std::string(key));
  }

 private:
  mutable std::mutex mutex_;
  std::map<std::string, Value, std::less<>> values_;
  std::set<std::string> volatiles_;
};

}  // namespace zelnor::test
