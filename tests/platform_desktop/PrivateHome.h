#pragma once

#include <string>

#include "tests/support/TemporaryFolder.h"

namespace zelnor::test {

/// The home of this test program: GLib looks up the user's folders once in a process, so it is set
/// before anything else and stays the same. Everything that tests put in the trash is in it.
const TemporaryFolder& privateHome();

}  // namespace zelnor::test
