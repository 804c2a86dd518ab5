#pragma once

#include <functional>

namespace zelnor::test {

/// Waits until `condition` holds; false after ten seconds without that.
bool waitUntil(const std::function<bool()>& condition);

}  // namespace zelnor::test
