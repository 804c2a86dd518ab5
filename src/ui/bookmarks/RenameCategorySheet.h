#pragma once

#include <functional>
#include <string>

#include "ui/Sheet.h"

namespace zelnor::ui {

/// Asks for the name of a category.
class RenameCategorySheet final : public Sheet {
  Q_OBJECT

 public:
  /// `name` stands there at first. `onConfirm` gets the name as typed, which may be empty, once
  /// the sheet has begun to close.
  RenameCategorySheet(const std::string& name, std::function<void(const std::string&)> onConfirm,
                      QWidget& panel);
};

}  // namespace zelnor::ui
