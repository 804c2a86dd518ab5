#pragma once

#include <QLineEdit>

namespace zelnor::ui {

/// The field for what is searched for: a bare line of text that takes the keyboard when its window
/// appears.
class NativeSearchTextField final : public QLineEdit {
  Q_OBJECT

 public:
  explicit NativeSearchTextField(const QString& placeholder, QWidget* parent = nullptr);

  /// Shows `text` if it is another than the user's own; the caret of who types stays where it is.
  /// Not signalled.
  void setBoundText(const QString& text);
  /// Lets the user type here what was typed elsewhere.
  void type(const QString& text);

 Q_SIGNALS:
  /// The user wants to go on to what is below the field.
  void leftDownwards();
  /// The user wants what was found.
  void confirmed();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  bool isComposing_ = false;  ///< an input method holds text that the user has not chosen yet
};

}  // namespace zelnor::ui
