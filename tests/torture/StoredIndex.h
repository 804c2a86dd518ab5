#pragma once

#include <string>

#include "tests/torture/Walk.h"

namespace zelnor::test {

/// The index in `folder` as it is now; nothing if there is none yet. Throws DatabaseError.
Rows storedRows(const std::string& folder);

/// Whether a rebuild was begun in `folder` and did not end.
bool isHalfBuilt(const std::string& folder);

/// What the checks of the database in `folder` find wrong; empty if it is sound. Waits for whoever
/// writes to it.
std::string unsoundness(const std::string& folder);

}  // namespace zelnor::test
