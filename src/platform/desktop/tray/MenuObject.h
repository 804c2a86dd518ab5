#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "platform/TrayItem.h"
#include "platform/desktop/BusObject.h"

namespace zelnor::platform {

/// A menu that another program draws: com.canonical.dbusmenu, version 3. It never changes.
class MenuObject {
 public:
  static constexpr const char* kPath = "/MenuBar";

  /// An entry was chosen; `time` is when, as the other program says.
  using Chosen = std::function<void(std::size_t entry, std::uint32_t time)>;

  MenuObject(GDBusConnection* bus, std::vector<TrayItem::MenuEntry> entries, Chosen chosen);

 private:
  [[nodiscard]] BusObject::Description description();

  GVariant* layout(GVariant* arguments) const;
  GVariant* groupProperties(GVariant* arguments) const;
  GVariant* property(GVariant* arguments) const;
  GVariant* event(GVariant* arguments) const;
  GVariant* eventGroup(GVariant* arguments) const;

  [[nodiscard]] GVariant* properties(int id) const;
  [[nodiscard]] GVariant* node(int id, bool withChildren) const;
  void happened(int id, const char* kind, std::uint32_t time) const;

  std::vector<TrayItem::MenuEntry> entries_;
  Chosen chosen_;
  BusObject object_;
};

}  // namespace zelnor::platform
