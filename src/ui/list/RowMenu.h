#pragma once

#include <functional>

class QWidget;

namespace zelnor::ui {

class Menu;

/// What can be done with a row.
struct RowMenuActions {
  std::function<void()> open;
  std::function<void()> reveal;
  std::function<void()> preview;
  std::function<void()> copyFile;
  std::function<void()> copyPath;
  std::function<void()> rename;
  std::function<void()> moveToTrash;
};

/// The context menu of a row; it belongs to `parent` and deletes itself once it is closed.
Menu* makeRowMenu(const RowMenuActions& actions, QWidget* parent);

}  // namespace zelnor::ui
