#include "platform/desktop/DesktopWindows.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include <qpa/qwindowsysteminterface.h>
#include <xcb/shape.h>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include <QAbstractNativeEventFilter>
#include <QGuiApplication>
#include <QRegion>
#include <QWindow>

namespace zelnor::platform {

namespace {

struct Free {
  void operator()(void* reply) const { std::free(reply); }
};
template <class T>
using Reply = std::unique_ptr<T, Free>;

xcb_connection_t* x11Connection() {
  auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 != nullptr ? x11->connection() : nullptr;
}

/// The time of the user's press, which a startup notification id ends with; 0 if it has none.
std::uint32_t timeIn(const Activation& activation) {
  constexpr std::string_view kMark = "_TIME";
  const auto mark = activation.token.rfind(kMark);
  if (mark == std::string::npos) return 0;
  const auto digits = std::string_view(activation.token).substr(mark + kMark.size());
  std::uint32_t time = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), time);
  return time;
}

int inDevicePixels(const QWindow& window, int length) {
  return static_cast<int>(std::lround(length * window.devicePixelRatio()));
}

}  // namespace

class DesktopWindows::X11 final : public QAbstractNativeEventFilter {
 public:
  X11(DesktopWindows& owner, xcb_connection_t* connection)
      : owner_(owner),
        connection_(connection),
        root_(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root),
        compositor_(atom("_NET_WM_CM_S0")) {
    watchCompositor();
    qGuiApp->installNativeEventFilter(this);
  }
  X11(const X11&) = delete;
  X11& operator=(const X11&) = delete;
  ~X11() override { qGuiApp->removeNativeEventFilter(this); }

  void keepOutOfTaskBar(xcb_window_t window) {
    const std::array states{atom("_NET_WM_STATE_SKIP_TASKBAR"), atom("_NET_WM_STATE_SKIP_PAGER"),
                            atom("_KDE_NET_WM_STATE_SKIP_SWITCHER")};
    setProperty(window, "_NET_WM_STATE", XCB_ATOM_ATOM, states);
  }

  void setShadow(xcb_window_t window, QSize size, int margin, int grip) {
    const auto extent = static_cast<std::uint32_t>(margin);
    setProperty(window, "_GTK_FRAME_EXTENTS", XCB_ATOM_CARDINAL,
                std::array{extent, extent, extent, extent});
    const auto beyond = static_cast<std::int16_t>(margin - std::min(grip, margin));
    const xcb_rectangle_t open{.x = beyond,
                               .y = beyond,
                               .width = static_cast<std::uint16_t>(size.width() - 2 * beyond),
                               .height = static_cast<std::uint16_t>(size.height() - 2 * beyond)};
    xcb_shape_rectangles(connection_, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                         XCB_CLIP_ORDERING_UNSORTED, window, /*x_offset=*/0, /*y_offset=*/0,
                         /*rectangles_len=*/1, &open);
  }

  /// As a pager asks, on the user's behalf: window managers deny it to a program that asks for
  /// itself, unless they know of a key pressed in it.
  void activate(xcb_window_t window, std::uint32_t time) {
    constexpr std::uint32_t kAsPager = 2;
    if (const auto desktop = number(root_, "_NET_CURRENT_DESKTOP")) {
      tellManager(window, "_NET_WM_DESKTOP", {*desktop, kAsPager});
    }
    tellManager(window, "_NET_ACTIVE_WINDOW", {kAsPager, time});
    xcb_flush(connection_);
  }

  bool nativeEventFilter(const QByteArray& /*type*/, void* message, qintptr* /*result*/) override {
    constexpr std::uint8_t kNotSynthetic = 0x7F;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const bool isOwner = hasXFixes_ && (event->response_type & kNotSynthetic) ==
                                           firstXFixesEvent_ + XCB_XFIXES_SELECTION_NOTIFY;
    if (isOwner) {
      const auto* change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t*>(event);
      if (change->selection == compositor_) owner_.setComposited(change->owner != XCB_NONE);
    }
    return false;
  }

 private:
  xcb_atom_t atom(std::string_view name) {
    const auto cookie = xcb_intern_atom(connection_, /*only_if_exists=*/0,
                                        static_cast<std::uint16_t>(name.size()), name.data());
    const Reply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection_, cookie, /*e=*/nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
  }

  /// A compositor owns a selection by this name.
  void watchCompositor() {
    const auto cookie = xcb_get_selection_owner(connection_, compositor_);
    const Reply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(connection_, cookie, /*e=*/nullptr));
    owner_.setComposited(owner && owner->owner != XCB_NONE);
    const auto* extension = xcb_get_extension_data(connection_, &xcb_xfixes_id);
    hasXFixes_ = extension != nullptr && extension->present != 0;
    if (!hasXFixes_) return;
    firstXFixesEvent_ = extension->first_event;
    xcb_xfixes_select_selection_input(connection_, root_, compositor_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  }

  void setProperty(xcb_window_t window, const char* name, xcb_atom_t type,
                   std::span<const std::uint32_t> values) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(name), type, /*format=*/32,
                        static_cast<std::uint32_t>(values.size()), values.data());
  }

  std::optional<std::uint32_t> number(xcb_window_t window, const char* name) {
    const auto cookie = xcb_get_property(connection_, /*_delete=*/0, window, atom(name),
                                         XCB_ATOM_CARDINAL, /*long_offset=*/0, /*long_length=*/1);
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection_, cookie, /*e=*/nullptr));
    std::uint32_t value = 0;
    if (!reply || xcb_get_property_value_length(reply.get()) < static_cast<int>(sizeof value)) {
      return std::nullopt;
    }
    std::memcpy(&value, xcb_get_property_value(reply.get()), sizeof value);
    return value;
  }

  void tellManager(xcb_window_t window, const char* type, std::array<std::uint32_t, 2> data) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(type);
    std::ranges::copy(data, event.data.data32);
    xcb_send_event(connection_, /*propagate=*/0, root_,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
  }

  DesktopWindows& owner_;
  xcb_connection_t* connection_;
  xcb_window_t root_;
  xcb_atom_t compositor_;
  bool hasXFixes_ = false;
  std::uint8_t firstXFixesEvent_ = 0;
};

DesktopWindows::DesktopWindows() {
  if (auto* connection = x11Connection()) x11_ = std::make_unique<X11>(*this, connection);
}

DesktopWindows::~DesktopWindows() = default;

void DesktopWindows::setComposited(bool isComposited) {
  if (std::exchange(isComposited_, isComposited) != isComposited) {
    Q_EMIT compositedChanged(isComposited);
  }
}

void DesktopWindows::keepOutOfTaskBar(QWindow& window) {
  if (x11_) x11_->keepOutOfTaskBar(static_cast<xcb_window_t>(window.winId()));
}

void DesktopWindows::setShadow(QWindow& window, int margin, int grip) {
  if (x11_) {
    const QSize size(inDevicePixels(window, window.width()),
                     inDevicePixels(window, window.height()));
    x11_->setShadow(static_cast<xcb_window_t>(window.winId()), size, inDevicePixels(window, margin),
                    inDevicePixels(window, grip));
  } else {
    // On Wayland a mask limits the mouse alone.
    const int beyond = margin - std::min(grip, margin);
    const QRect all(QPoint(), window.size());
    window.setMask(all.adjusted(beyond, beyond, -beyond, -beyond));
  }
}

void DesktopWindows::activate(QWindow& window, const Activation& activation) {
  if (x11_) {
    x11_->activate(static_cast<xcb_window_t>(window.winId()), timeIn(activation));
    return;
  }
  if (!activation.token.empty()) {
    // Qt takes the token for its next request from there, and removes it.
    qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(activation.token));
  } else if (window.isExposed() && !window.isActive()) {
    // The portal of KDE in Debian 12 gives none, and without one no compositor brings a window to
    // the front that is there already; one that comes is let in front.
    window.hide();
    window.show();
  }
  window.raise();
  window.requestActivate();
}

/// On X11 Qt waits 100 ms for another window of the program to take over, and up to then ignores
/// that the same window has got the keyboard again.
void DesktopWindows::hidden(const QWindow& window) {
  if (!x11_ || QGuiApplication::focusWindow() != &window) return;
  QWindowSystemInterface::handleWindowActivated<QWindowSystemInterface::SynchronousDelivery>(
      /*window=*/nullptr, Qt::ActiveWindowFocusReason);
}

}  // namespace zelnor::platform
