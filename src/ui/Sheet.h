#pragma once

#include <functional>

#include <QPointer>
#include <QVariantAnimation>
#include <QWidget>

class QVBoxLayout;

namespace zelnor::ui {

class PlainButton;

/// A sheet over the panel: what lies below is dimmed and out of reach until the sheet is closed,
/// the rest of the program goes on.
///
/// It slides in, takes the keyboard and gives it back where it was; Escape cancels it, Return
/// confirms it. Closed, it deletes itself. Several may lie over each other.
class Sheet : public QWidget {
  Q_OBJECT

 public:
  enum class Role : std::uint8_t { cancel, normal, prominent, destructive };

  /// A sheet over all of `panel`, called `title` by a screen reader. Shown by `open`.
  Sheet(const QString& title, QWidget& panel);

  void open();
  /// Closes the sheet as its button with the role `cancel` does, or as its only one.
  virtual void cancel();

 Q_SIGNALS:
  void closed();

 protected:
  /// Where the parts of the sheet go, one below the other.
  [[nodiscard]] QVBoxLayout& parts() { return *parts_; }
  [[nodiscard]] QWidget* card() { return card_; }
  /// Appends a button to the row at the bottom. Escape presses the one with the role `cancel`,
  /// Return the last one. `pressed` is called after the sheet has begun to close.
  PlainButton* addButton(const QString& title, Role role, std::function<void()> pressed);
  /// Puts the buttons in the middle of their row instead of at its end. After the last one.
  void centreButtons();
  /// What has the keyboard first; else the last button.
  void setFirstFocus(QWidget* widget) { firstFocus_ = widget; }
  void dismiss();

  bool eventFilter(QObject* watched, QEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void cover();
  void placeCard();

  QWidget& panel_;
  QWidget* card_;
  QVBoxLayout* parts_;
  QWidget* buttons_ = nullptr;
  PlainButton* cancelButton_ = nullptr;
  PlainButton* defaultButton_ = nullptr;
  QPointer<QWidget> firstFocus_;
  QPointer<QWidget> focusBefore_;
  QVariantAnimation slide_;
  double shown_ = 0;  ///< from 0 to 1
  bool isClosing_ = false;
};

}  // namespace zelnor::ui
