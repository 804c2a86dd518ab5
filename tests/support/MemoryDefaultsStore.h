#pragma once

#include <map>
#include <mutex>
#include <string>

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
  }
  void remove(std::string_view key) override {
    const std::scoped_lock lock(mutex_);
    if (const auto found = values_.find(key); found != values_.end()) values_.erase(found);
  }

 private:
  mutable std::mutex mutex_;
  std::map<std::string, Value, std::less<>> values_;
};

}  // namespace zelnor::test
