#pragma once

#include <memory>
#include <string>

#include "platform/DefaultsStore.h"

namespace zelnor::platform {

/// The defaults store in a file, "settings.json" in `folder`, shared by the processes of one user.
///
/// Every change replaces the file atomically (written beside it, flushed, renamed), with 0600. A
/// file that is damaged counts as empty and is set aside under another name before the first
/// change, not overwritten.
///
/// Volatile values are in a file beside it, "state.json", which is replaced without being flushed:
/// nothing waits for the disk. A damaged one is what a power failure leaves, and is overwritten.
class FileDefaultsStore final : public DefaultsStore {
 public:
  explicit FileDefaultsStore(const std::string& folder);
  ~FileDefaultsStore() override;

  [[nodiscard]] std::optional<Value> value(std::string_view key) const override;
  void set(std::string_view key, Value value) override;
  void setVolatile(std::string_view key, Value value) override;
  void remove(std::string_view key) override;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace zelnor::platform
