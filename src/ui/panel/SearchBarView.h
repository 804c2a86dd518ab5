#pragma once

#include <QWidget>

#include "search/SearchFilter.h"

namespace zelnor {
class SearchViewModel;
}

namespace zelnor::ui {

class ChoiceGroup;
class ClearButton;
class FilterToggle;
class Magnifier;
class NativeSearchTextField;
class SymbolButton;

/// The bar at the top: the query in its pill with its buttons, and below it the file types to
/// choose from and what opens the filters.
class SearchBarView final : public QWidget {
  Q_OBJECT

 public:
  /// The view model outlives the view.
  explicit SearchBarView(SearchViewModel& search, QWidget* parent = nullptr);

  [[nodiscard]] NativeSearchTextField& field() { return *field_; }
  /// What the toggles show.
  void setBookmarksShown(bool areShown);
  void setFiltersShown(bool areShown);

  /// How many of the presets of `filter` narrow the search; the type is shown by the chips.
  static int activeFilterCount(const SearchFilter& filter);

 Q_SIGNALS:
  void bookmarksToggled();
  void filtersToggled();
  void settingsRequested();
  void minimizeRequested();
  void closeRequested();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QLayout* makeInputRow();
  QWidget* makeChipRow();
  void showFilter(const SearchFilter& filter);

  SearchViewModel& search_;
  QWidget* pill_;
  Magnifier* magnifier_;
  NativeSearchTextField* field_;
  ClearButton* clear_;
  SymbolButton* bookmarks_;
  ChoiceGroup* chips_;
  FilterToggle* filters_;
};

}  // namespace zelnor::ui
