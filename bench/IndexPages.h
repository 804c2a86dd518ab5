#pragma once

#include <functional>
#include <string>

class QWidget;

namespace zelnor::bench {

/// Shows the index page of the settings in each of its states, and calls `shoot` with the page and
/// the name of the state.
void forEachIndexPage(const std::function<void(QWidget& page, const std::string& name)>& shoot);

}  // namespace zelnor::bench
