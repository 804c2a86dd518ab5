#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <QRect>

/// Where the panel is put. Pure functions; pixels at scale 1, the vertical axis points down.
namespace zelnor::app {

/// One screen: all of it, and what panels and docks leave of it.
struct ScreenArea {
  QRect whole;
  QRect available;
};

/// A frame as it is stored: "{{x, y}, {width, height}}".
std::string frameText(const QRect& frame);
/// Nothing if `text` is no such frame.
std::optional<QRect> frameFrom(std::string_view text);

/// In the middle of the screen under `pointer` (of the first one, if it is on none), 80 above its
/// centre. Without a screen at the origin.
QRect firstFrame(QSize size, QPoint pointer, std::span<const ScreenArea> screens);

/// `frame`, no larger than all screens together, and moved onto the nearest one if nothing of its
/// upper edge, by which one gets hold of it, is on any.
QRect movedOntoScreen(QRect frame, std::span<const ScreenArea> screens);

}  // namespace zelnor::app
