#pragma once

#include <string>
#include <vector>

#include <QStackedWidget>

class QListWidget;

namespace zelnor::ui {

/// What is shown while nothing is searched for: the recent searches, or how to search.
class StartPage final : public QStackedWidget {
  Q_OBJECT

 public:
  explicit StartPage(QWidget* parent = nullptr);

  void setRecentSearches(const std::vector<std::string>& texts);
  /// Takes the keyboard, if there is anything to choose from.
  void enter();

 Q_SIGNALS:
  void chosen(const QString& text);

 private:
  QWidget* hint_;
  QWidget* recent_;
  QListWidget* list_;
};

}  // namespace zelnor::ui
