#include "cli/Program.h"

int main(int argc, char** argv) {
  return static_cast<int>(zelnor::cli::run({argv + 1, argv + argc}));
}
