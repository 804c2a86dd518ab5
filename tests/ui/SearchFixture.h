#pragma once

#include <gtest/gtest.h>

#include <QApplication>

#include "search/SearchServices.h"
#include "search/SearchViewModel.h"
#include "tests/search_viewmodel/FakeSearchSource.h"
#include "tests/support/MainThread.h"
#include "tests/support/ManualClock.h"
#include "tests/support/MemoryDefaultsStore.h"

namespace zelnor::ui {

/// A view model on a fake engine, on the test's own thread and time.
class SearchFixture : public testing::Test {
 protected:
  ~SearchFixture() override { main_.runReady(); }

  void settle() {
    main_.runReady();
    QApplication::processEvents();
  }
  void waitForSearch() {
    settle();
    clock_.advance(SearchViewModel::kDebounce);
    settle();
  }
  void search(const std::string& text) {
    model_.setQueryText(text);
    waitForSearch();
  }

  test::ManualClock clock_;
  test::MemoryDefaultsStore defaults_;
  test::FakeSearchSource source_;
  test::MainThread main_;
  SearchViewModel model_{
      SearchServices{source_, clock_, defaults_, main_.executor(), main_.executor()}};
};

}  // namespace zelnor::ui
