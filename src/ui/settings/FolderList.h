#pragma once

#include <optional>
#include <string>
#include <vector>

#include <QLatin1String>
#include <QWidget>

class QBoxLayout;
class QColor;

namespace zelnor::ui {

class FormSection;
class SymbolButton;

/// A list of folders, each with a button that takes it away, and one that adds another.
class FolderList final : public QWidget {
  Q_OBJECT

 public:
  /// What the list looks like and says.
  struct Description {
    QString title;
    QLatin1String symbol;  ///< beside each folder
    QString addTitle;
  };

  FolderList(Description description, QWidget* parent);

  /// Absolute paths, in bytes.
  void setPaths(const std::vector<std::string>& paths);

 Q_SIGNALS:
  void addRequested();
  void removeRequested(const std::string& path);

 private:
  void addFolderRow(const std::string& path);
  void addLastRow();
  SymbolButton* addButton(QLatin1String symbol, const QColor& color, const QString& title,
                          QBoxLayout& row);
  [[nodiscard]] std::optional<std::size_t> focusedButton() const;

  Description description_;
  FormSection* section_;
  std::vector<std::string> paths_;
  std::vector<SymbolButton*> buttons_;  ///< of the rows, from the top
};

}  // namespace zelnor::ui
