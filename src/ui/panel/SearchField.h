#pragma once

#include <QFrame>
#include <QString>

class QLineEdit;

namespace zelnor::ui {

/// The query field: a pill with a magnifier, the text, and a button that clears it.
class SearchField final : public QFrame {
  Q_OBJECT

 public:
  explicit SearchField(QWidget* parent = nullptr);

  [[nodiscard]] QString text() const;
  /// Shows `text`; not signalled.
  void setText(const QString& text);
  /// Lets the user type here what was typed elsewhere.
  void insert(const QString& typed);
  /// As the clear button does; signalled if there was something to clear.
  void clear();

 Q_SIGNALS:
  /// The user changed the text.
  void edited(const QString& text);
  /// The user wants to go on to what is below the field.
  void leftDownwards();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QLineEdit* edit_;
  QWidget* clearButton_;
};

}  // namespace zelnor::ui
