#pragma once

#include <functional>
#include <string>

#include "ui/Sheet.h"

class QLineEdit;

namespace zelnor::ui {

/// Asks for the new name of a file.
class RenameSheetView final : public Sheet {
  Q_OBJECT

 public:
  /// `name` is the name as it is, in bytes. `confirmed` is given the name as typed; one that was
  /// left alone comes back byte for byte, even if it is no text. `selectsStem`: what the user types
  /// first does not replace the extension.
  RenameSheetView(std::string name, bool selectsStem,
                  std::function<void(const std::string&)> confirmed, QWidget& panel);

 private:
  void addField(bool selectsStem);
  [[nodiscard]] std::string enteredName() const;

  std::string name_;
  QLineEdit* field_ = nullptr;
};

}  // namespace zelnor::ui
