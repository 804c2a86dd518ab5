#pragma once

#include <QScrollArea>

#include "search/SearchFilter.h"

namespace zelnor {
class SearchViewModel;
}

namespace zelnor::ui {

class ChoiceGroup;
class FilterColumn;
class SlidingPane;

/// The strip of filters: size, date, and how the text is matched. It changes the filter and the
/// query text of the search, and holds nothing itself.
class FilterPanelView final : public QScrollArea {
  Q_OBJECT

 public:
  /// The view model outlives the view.
  explicit FilterPanelView(SearchViewModel& search, QWidget* parent = nullptr);

  /// In a low window the strip scrolls rather than take all of it. In pixels.
  void setHeightLimit(int limit);
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return {0, 0}; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* makeColumns(QWidget* parent);
  QWidget* makeReset(QWidget* parent);
  FilterColumn* makeMatchColumn(QWidget* parent);
  void showFilter(const SearchFilter& filter);
  void showMatchMode();
  template <class Change>
  void change(const Change& change);

  SearchViewModel& search_;
  ChoiceGroup* sizes_;
  ChoiceGroup* dates_;
  ChoiceGroup* modes_;
  SlidingPane* reset_ = nullptr;
  int heightLimit_;
};

}  // namespace zelnor::ui
