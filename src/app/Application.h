#pragma once

namespace zelnor::app {

/// Runs the program; answers its exit status.
int run(int argc, char** argv);

}  // namespace zelnor::app
