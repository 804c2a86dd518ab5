#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <string>

struct wl_display;
struct wl_registry;
struct wl_seat;
struct wl_surface;
struct xdg_activation_v1;

namespace zelnor::platform {

/// Tokens of a Wayland compositor's xdg-activation-v1. Its events come through the display's
/// default queue, so whoever dispatches that one runs everything here; one thread, with Qt's
/// timers.
class WaylandActivation {
 public:
  /// What the user did last, for the compositor to check; null for what is not known.
  struct Input {
    wl_surface* surface = nullptr;
    wl_seat* seat = nullptr;
    std::uint32_t serial = 0;
  };
  using Ready = std::function<void(std::string token)>;

  /// A compositor that has not answered by then does not.
  static constexpr std::chrono::milliseconds kPatience{1000};

  /// Asks the compositor what it has. `display` outlives the value.
  explicit WaylandActivation(wl_display* display, std::chrono::milliseconds patience = kPatience);
  WaylandActivation(const WaylandActivation&) = delete;
  WaylandActivation& operator=(const WaylandActivation&) = delete;
  ~WaylandActivation();

  /// `ready` is called once, later or at once, with an empty text if there is no token; not after
  /// the value is gone.
  void request(const Input& input, Ready ready);

 private:
  struct Events;
  class Pending;

  void answer(Pending& pending, const std::string& token);

  wl_display* display_;
  std::chrono::milliseconds patience_;
  wl_registry* registry_;
  xdg_activation_v1* activation_ = nullptr;  ///< once the compositor has told that it has it
  std::uint32_t name_ = 0;                   ///< the compositor's for it
  std::list<std::unique_ptr<Pending>> pending_;
};

}  // namespace zelnor::platform
