#pragma once

#include <functional>

#include "ui/Sheet.h"

namespace zelnor::ui {

/// Leads to the page of the system's settings that lets the program read all files.
class PermissionGuideView final : public Sheet {
  Q_OBJECT

 public:
  /// `openSettings` opens that page, if there is one; called once at most, as the guide closes.
  PermissionGuideView(std::function<void()> openSettings, QWidget& panel);
};

}  // namespace zelnor::ui
