#include "app/PanelFrame.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace zelnor::app {

namespace {

constexpr int kAboveMiddle = 80;
/// How much of the upper edge, across and down, has to be seen.
constexpr int kHandleWidth = 80;
constexpr int kHandleHeight = 32;
/// Beyond this no screen reaches; it also keeps sums from overflowing.
constexpr int kFarthest = 1 << 20;

bool isSensible(const std::array<int, 4>& numbers) {
  const auto isNear = [](int number) { return number > -kFarthest && number < kFarthest; };
  return std::ranges::all_of(numbers, isNear) && numbers[2] > 0 && numbers[3] > 0;
}

bool canBeGrasped(const QRect& frame, const ScreenArea& screen) {
  const QRect handle(frame.left(), frame.top(), frame.width(), kHandleHeight);
  const QRect seen = handle & screen.available;
  return seen.width() >= std::min(kHandleWidth, frame.width()) && seen.height() == kHandleHeight;
}

/// By how much a span of `length` at `from` has to move to lie within `low` and `high`.
int shift(int from, int length, int low, int high) {
  if (from < low || length > high - low) return low - from;
  return std::min(high - (from + length), 0);
}

QSize extentOf(std::span<const ScreenArea> screens) {
  QRect all;
  for (const auto& screen : screens) all |= screen.whole;
  return all.size();
}

QPoint shiftOnto(const QRect& frame, const QRect& area) {
  return {shift(frame.left(), frame.width(), area.left(), area.right() + 1),
          shift(frame.top(), frame.height(), area.top(), area.bottom() + 1)};
}

}  // namespace

std::string frameText(const QRect& frame) {
  return "{{" + std::to_string(frame.x()) + ", " + std::to_string(frame.y()) + "}, {" +
         std::to_string(frame.width()) + ", " + std::to_string(frame.height()) + "}}";
}

std::optional<QRect> frameFrom(std::string_view text) {
  std::array<int, 4> numbers{};
  constexpr std::array<std::string_view, 4> kBefore{"{{", ", ", "}, {", ", "};
  for (std::size_t index = 0; index < numbers.size(); ++index) {
    if (!text.starts_with(kBefore[index])) return std::nullopt;
    text.remove_prefix(kBefore[index].size());
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), numbers[index]);
    if (error != std::errc()) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  }
  if (text != "}}" || !isSensible(numbers)) return std::nullopt;
  return QRect(numbers[0], numbers[1], numbers[2], numbers[3]);
}

QRect firstFrame(QSize size, QPoint pointer, std::span<const ScreenArea> screens) {
  QRect frame(QPoint(), size);
  if (screens.empty()) return frame;
  const auto isUnderPointer = [&](const ScreenArea& screen) {
    return screen.whole.contains(pointer);
  };
  const auto found = std::ranges::find_if(screens, isUnderPointer);
  const auto& screen = found == screens.end() ? screens.front() : *found;
  frame.moveCenter(screen.available.center());
  frame.translate(0, -kAboveMiddle);
  if (frame.top() < screen.available.top()) frame.moveTop(screen.available.top());
  return frame;
}

QRect movedOntoScreen(QRect frame, std::span<const ScreenArea> screens) {
  if (screens.empty()) return frame;
  frame.setSize(frame.size().boundedTo(extentOf(screens)));
  const auto holds = [&](const ScreenArea& screen) { return canBeGrasped(frame, screen); };
  if (std::ranges::any_of(screens, holds)) return frame;
  const auto distance = [&](const ScreenArea& screen) {
    return shiftOnto(frame, screen.available).manhattanLength();
  };
  const auto nearest = std::ranges::min_element(screens, {}, distance);
  return frame.translated(shiftOnto(frame, nearest->available));
}

}  // namespace zelnor::app
