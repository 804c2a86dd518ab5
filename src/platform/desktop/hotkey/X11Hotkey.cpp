#include "platform/desktop/hotkey/X11Hotkey.h"

#include <utility>

#include <QGuiApplication>
#include <QWindow>

#include "platform/KeyCodes.h"
#include "platform/desktop/StartupId.h"
#include "platform/desktop/hotkey/Combination.h"

// The keyboard is frozen by the press. SyncKeyboard hands out the next key event and freezes again;
// ReplayKeyboard ends the grab and gives the event to whoever has the focus; AsyncKeyboard thaws
// (XAllowEvents(3)). Letting go of the grabbed key ends the grab by itself.

namespace zelnor::platform {

namespace {
/// No keyboard waits longer before it repeats a key. A press after that is a new one whose
/// predecessor's release was lost, for instance because the server ended all grabs.
constexpr xcb_timestamp_t kLongestRepeatMilliseconds = 3000;
}  // namespace

X11Hotkey::X11Hotkey(const std::string& display, std::chrono::milliseconds patience)
    : connection_(display) {
  patience_.setSingleShot(true);
  patience_.setInterval(patience);
  const auto thaw = [this] { allow(XCB_ALLOW_SYNC_KEYBOARD); };
  QObject::connect(&patience_, &QTimer::timeout, &patience_, thaw);
  QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &patience_,
                   [this, thaw](const QWindow* window) {
                     if (window == nullptr || !patience_.isActive()) return;
                     patience_.stop();
                     thaw();
                   });
  if (connection_.isBroken()) return;
  readable_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection_.get()),
                                                QSocketNotifier::Read);
  QObject::connect(readable_.get(), &QSocketNotifier::activated, &patience_, [this] { hear(); });
}

X11Hotkey::~X11Hotkey() { release(); }

void X11Hotkey::grab(const HotkeyConfiguration& combination, Pressed pressed, Refused refused) {
  release();
  combination_ = combination;
  pressed_ = std::move(pressed);
  refused_ = std::move(refused);
  takeGrab();
}

void X11Hotkey::takeGrab() {
  const auto key = grabbableKey(combination_);
  auto masks = connection_.modifiers().masks(combination_);
  int error = kHotkeyImpossible;
  if (connection_.isBroken()) {
    error = kHotkeyUnavailable;
  } else if (key) {
    const auto code = static_cast<std::uint8_t>(*key + kX11Offset);
    if (grab_ && grab_->masks() == masks) return;
    grab_.reset();
    grab_ = std::make_unique<X11Grab>(connection_, code, std::move(masks));
    error = grab_->error();
  }
  if (error != 0) {
    const auto refused = std::move(refused_);
    release();
    refused(error);
    return;
  }
  hearSoon();
}

/// Writing and waiting for answers read what has come meanwhile, which is then not announced any
/// more. Unheard, a press would leave the keyboard frozen.
void X11Hotkey::hearSoon() {
  QMetaObject::invokeMethod(&patience_, [this] { hear(); }, Qt::QueuedConnection);
}

void X11Hotkey::release() {
  pressed_ = nullptr;
  refused_ = nullptr;
  if (std::exchange(isHeld_, false)) {
    patience_.stop();
    xcb_ungrab_keyboard(connection_.get(), XCB_CURRENT_TIME);
  }
  grab_.reset();
  xcb_flush(connection_.get());
}

void X11Hotkey::hear() {
  while (const XcbPointer<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
    handle(*event);
  }
  if (connection_.isBroken()) {
    readable_->setEnabled(false);
    return;
  }
  if (std::exchange(isMappingChanged_, false) && grab_) takeGrab();
}

void X11Hotkey::handle(const xcb_generic_event_t& event) {
  if (connection_.isMappingChange(event)) isMappingChanged_ = true;
  if (!grab_) return;
  if (event.response_type == XCB_KEY_PRESS) {
    onPress(reinterpret_cast<const xcb_key_press_event_t&>(event));
  } else if (event.response_type == XCB_KEY_RELEASE) {
    onRelease(reinterpret_cast<const xcb_key_release_event_t&>(event));
  }
}

bool X11Hotkey::isRepeat(const xcb_key_press_event_t& event) const {
  return isHeld_ && event.time - lastPress_ < kLongestRepeatMilliseconds;
}

void X11Hotkey::onPress(const xcb_key_press_event_t& event) {
  if (event.detail != grab_->keyCode()) {
    isHeld_ = false;  // typed before the key of the combination was let go
    allow(XCB_ALLOW_REPLAY_KEYBOARD);
    return;
  }
  const bool isNew = !isRepeat(event);
  isHeld_ = true;
  lastPress_ = event.time;
  if (!isNew) {
    if (!patience_.isActive()) allow(XCB_ALLOW_SYNC_KEYBOARD);
    return;
  }
  const auto pressed = pressed_;
  pressed({.token = startupId(event.time)});
  if (isHeld_) awaitFocus();  // unless it was released by the call
}

void X11Hotkey::onRelease(const xcb_key_release_event_t& event) {
  if (event.detail == grab_->keyCode()) {
    isHeld_ = false;
    allow(XCB_ALLOW_ASYNC_KEYBOARD);
  } else {
    allow(XCB_ALLOW_SYNC_KEYBOARD);
  }
}

void X11Hotkey::awaitFocus() {
  if (QGuiApplication::focusWindow() != nullptr) {
    allow(XCB_ALLOW_SYNC_KEYBOARD);
  } else {
    patience_.start();
  }
}

void X11Hotkey::allow(std::uint8_t mode) {
  xcb_allow_events(connection_.get(), mode, XCB_CURRENT_TIME);
  xcb_flush(connection_.get());
  hearSoon();
}

}  // namespace zelnor::platform
