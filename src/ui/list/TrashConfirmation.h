#pragma once

#include <functional>
#include <vector>

#include "search/SearchResult.h"

class QWidget;

namespace zelnor::ui {

/// Asks over `panel` whether these files are to go to the trash, and calls `confirmed` if they are.
void confirmTrash(const std::vector<SearchResult>& results, QWidget& panel,
                  std::function<void()> confirmed);

}  // namespace zelnor::ui
