#pragma once

#include <functional>

#include <QApplication>

namespace zelnor::bench {

/// An application that says when results have been painted.
class PaintWatch final : public QApplication {
 public:
  using QApplication::QApplication;

  /// Calls `painted` once, at the end of the next update of a window in which a page of results, or
  /// the one that says that there are none, was painted.
  void whenPainted(std::function<void()> painted);

  bool notify(QObject* receiver, QEvent* event) override;

 private:
  std::function<void()> painted_;
  bool hasPainted_ = false;
};

}  // namespace zelnor::bench
