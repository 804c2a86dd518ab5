#pragma once

#include <chrono>

#include <QString>

#include "bench/PaintWatch.h"
#include "bench/Stopwatch.h"
#include "ui/panel/SearchView.h"

namespace zelnor::bench {

/// How long the window waits for a further key.
inline constexpr double kDebounceSeconds =
    std::chrono::duration<double>(SearchViewModel::kDebounce).count();

/// Types into a search window as a user does. Events are handled meanwhile.
class Typist {
 public:
  Typist(PaintWatch& application, ui::SearchView& window, SearchViewModel& model)
      : application_(application), window_(window), model_(model) {}

  /// Types `text` into the empty field at ten characters a second and waits for the results; then
  /// empties the field. Answers the seconds from the last key until the results were painted.
  /// Throws std::runtime_error if they do not come.
  double type(const QString& text);

 private:
  void press(QChar character) const;
  /// Returns when the results of the search that the last key led to have been painted.
  void waitUntilPainted(const Stopwatch& sinceLastKey);

  PaintWatch& application_;
  ui::SearchView& window_;
  SearchViewModel& model_;
};

/// Handles events for this long.
void handleEventsFor(std::chrono::milliseconds time);

}  // namespace zelnor::bench
