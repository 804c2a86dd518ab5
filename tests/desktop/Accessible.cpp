#include "tests/desktop/Accessible.h"

#include <utility>

namespace zelnor::test {

namespace {

struct GFree {
  void operator()(void* memory) const { g_free(memory); }
};
template <class T>
using GPointer = std::unique_ptr<T, GFree>;

std::string taken(gchar* text) {
  const GPointer<gchar> owned(text);
  return owned ? owned.get() : std::string();
}

}  // namespace

std::vector<Accessible> Accessible::childrenOf(AtspiAccessible* object) {
  std::vector<Accessible> children;
  const int count = atspi_accessible_get_child_count(object, /*error=*/nullptr);
  for (int index = 0; index < count; ++index) {
    auto* child = atspi_accessible_get_child_at_index(object, index, /*error=*/nullptr);
    if (child != nullptr) children.push_back(Accessible(Pointer(child, g_object_unref)));
  }
  return children;
}

void Accessible::collect(const Accessible& object, std::vector<Accessible>& found) {
  if (!object.has(ATSPI_STATE_SHOWING) && !object.has(ATSPI_STATE_ACTIVE)) return;
  found.push_back(object);
  for (const auto& child : childrenOf(object.object_.get())) collect(child, found);
}

std::vector<Accessible> Accessible::all() {
  [[maybe_unused]] static const int started = atspi_init();
  std::vector<Accessible> found;
  const Pointer desktop(atspi_get_desktop(/*i=*/0), g_object_unref);
  for (const auto& program : childrenOf(desktop.get())) {
    if (program.name() != "Zelnor") continue;
    atspi_accessible_set_cache_mask(program.object_.get(), ATSPI_CACHE_NONE);
    for (const auto& window : childrenOf(program.object_.get())) collect(window, found);
  }
  return found;
}

std::optional<Accessible> Accessible::named(const std::string& name) {
  for (auto& candidate : all()) {
    if (candidate.name().starts_with(name)) return std::move(candidate);
  }
  return std::nullopt;
}

std::vector<std::string> Accessible::names() {
  std::vector<std::string> names;
  for (const auto& each : all()) {
    if (auto name = each.name(); !name.empty()) names.push_back(std::move(name));
  }
  return names;
}

bool Accessible::has(AtspiStateType state) const {
  auto* states = atspi_accessible_get_state_set(object_.get());
  if (states == nullptr) return false;
  const bool has = atspi_state_set_contains(states, state) != FALSE;
  g_object_unref(states);
  return has;
}

bool Accessible::isChecked() const { return has(ATSPI_STATE_CHECKED); }

bool Accessible::isFocused() const { return has(ATSPI_STATE_FOCUSED); }

std::string Accessible::name() const {
  return taken(atspi_accessible_get_name(object_.get(), /*error=*/nullptr));
}

std::string Accessible::text() const {
  auto* text = atspi_accessible_get_text_iface(object_.get());
  if (text == nullptr) return {};
  auto content = taken(atspi_text_get_text(text, /*start_offset=*/0, /*end_offset=*/-1, nullptr));
  g_object_unref(text);
  return content;
}

QRect Accessible::box() const {
  auto* component = atspi_accessible_get_component_iface(object_.get());
  if (component == nullptr) return {};
  const GPointer<AtspiRect> rect(
      atspi_component_get_extents(component, ATSPI_COORD_TYPE_SCREEN, /*error=*/nullptr));
  g_object_unref(component);
  return rect ? QRect(rect->x, rect->y, rect->width, rect->height) : QRect();
}

}  // namespace zelnor::test
