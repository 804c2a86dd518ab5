#include "platform/desktop/WaylandActivation.h"

#include <string_view>
#include <utility>

#include <wayland-client.h>
#include <xdg-activation-v1.h>

#include <QObject>
#include <QTimer>

namespace zelnor::platform {

/// A token that was asked for.
class WaylandActivation::Pending {
 public:
  Pending(WaylandActivation& owner, const Input& input, Ready ready);
  Pending(const Pending&) = delete;
  Pending& operator=(const Pending&) = delete;
  ~Pending() { xdg_activation_token_v1_destroy(token_); }

  Ready ready;

 private:
  static void done(void* self, xdg_activation_token_v1* /*token*/, const char* text) {
    auto& pending = *static_cast<Pending*>(self);
    pending.owner_.answer(pending, text);
  }
  static constexpr xdg_activation_token_v1_listener kListener{.done = done};

  WaylandActivation& owner_;
  xdg_activation_token_v1* token_;
  QTimer limit_;
};

WaylandActivation::Pending::Pending(WaylandActivation& owner, const Input& input, Ready whenReady)
    : ready(std::move(whenReady)),
      owner_(owner),
      token_(xdg_activation_v1_get_activation_token(owner.activation_)) {
  xdg_activation_token_v1_add_listener(token_, &kListener, this);
  if (input.seat != nullptr) xdg_activation_token_v1_set_serial(token_, input.serial, input.seat);
  if (input.surface != nullptr) xdg_activation_token_v1_set_surface(token_, input.surface);
  xdg_activation_token_v1_commit(token_);
  limit_.setSingleShot(true);
  QObject::connect(&limit_, &QTimer::timeout, [this] { owner_.answer(*this, /*token=*/{}); });
  limit_.start(owner.patience_);
}

/// What the compositor has, and has no longer.
struct WaylandActivation::Events {
  static void added(void* self, wl_registry* registry, std::uint32_t name, const char* interface,
                    std::uint32_t /*version*/) {
    auto& activation = *static_cast<WaylandActivation*>(self);
    if (activation.activation_ != nullptr ||
        std::string_view(interface) != xdg_activation_v1_interface.name) {
      return;
    }
    activation.name_ = name;
    activation.activation_ = static_cast<xdg_activation_v1*>(
        wl_registry_bind(registry, name, &xdg_activation_v1_interface, /*version=*/1));
  }
  static void removed(void* self, wl_registry* /*registry*/, std::uint32_t name) {
    auto& activation = *static_cast<WaylandActivation*>(self);
    if (activation.activation_ == nullptr || activation.name_ != name) return;
    xdg_activation_v1_destroy(std::exchange(activation.activation_, nullptr));
  }
  static constexpr wl_registry_listener kListener{.global = added, .global_remove = removed};
};

WaylandActivation::WaylandActivation(wl_display* display, std::chrono::milliseconds patience)
    : display_(display), patience_(patience), registry_(wl_display_get_registry(display)) {
  wl_registry_add_listener(registry_, &Events::kListener, this);
  wl_display_flush(display_);
}

WaylandActivation::~WaylandActivation() {
  pending_.clear();
  if (activation_ != nullptr) xdg_activation_v1_destroy(activation_);
  wl_registry_destroy(registry_);
}

void WaylandActivation::request(const Input& input, Ready ready) {
  if (activation_ == nullptr) return ready({});
  pending_.push_back(std::make_unique<Pending>(*this, input, std::move(ready)));
  wl_display_flush(display_);
}

void WaylandActivation::answer(Pending& pending, const std::string& token) {
  const auto ready = std::move(pending.ready);
  std::erase_if(pending_, [&](const auto& each) { return each.get() == &pending; });
  ready(token);
}

}  // namespace zelnor::platform
