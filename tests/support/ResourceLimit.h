#pragma once

#include <sys/resource.h>

#include <algorithm>

namespace zelnor::test {

/// While this lives, the process may have at most `limit` of a resource, getrlimit(2).
class ResourceLimit {
 public:
  ResourceLimit(__rlimit_resource resource, rlim_t limit) : resource_(resource) {
    getrlimit(resource_, &before_);
    const rlimit lowered{.rlim_cur = std::min(limit, before_.rlim_max),
                         .rlim_max = before_.rlim_max};
    setrlimit(resource_, &lowered);
  }
  ResourceLimit(const ResourceLimit&) = delete;
  ResourceLimit& operator=(const ResourceLimit&) = delete;
  ~ResourceLimit() { setrlimit(resource_, &before_); }

 private:
  __rlimit_resource resource_;
  rlimit before_{};
};

}  // namespace zelnor::test
