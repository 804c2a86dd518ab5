#pragma once

class QApplication;

namespace zelnor::ui {

/// Gives the application the interface's own look, whatever the desktop's theme.
void applyStyle(QApplication& application);

}  // namespace zelnor::ui
