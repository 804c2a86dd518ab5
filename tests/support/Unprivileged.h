#pragma once

#include <unistd.h>

namespace zelnor::test {

/// While this lives, a test that runs as root is an ordinary user, for whom permissions count.
class Unprivileged {
 public:
  static constexpr uid_t kNobody = 65534;

  Unprivileged() {
    if (isRoot_ && seteuid(kNobody) != 0) _exit(1);
  }
  Unprivileged(const Unprivileged&) = delete;
  Unprivileged& operator=(const Unprivileged&) = delete;
  ~Unprivileged() {
    if (isRoot_ && seteuid(0) != 0) _exit(1);
  }

 private:
  const bool isRoot_ = geteuid() == 0;
};

}  // namespace zelnor::test
