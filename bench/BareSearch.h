#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/Sqlite.h"

namespace zelnor::bench {

/// Statements run on the index with nothing around them, on the calling thread: what the engine is
/// compared with. Same settings of the connection; each run compiles, binds and steps, and reads
/// every column of every row, making nothing of them.
class BareSearch {
 public:
  /// Opens the index in folder `data` for reading. Throws DatabaseError.
  explicit BareSearch(const std::string& data);

  /// The number of rows the statement yields. Throws std::runtime_error, as all below.
  std::int64_t rows(const SelectStatement& select) const;
  /// The first column of its first row; 0 if there is none.
  std::int64_t number(const SelectStatement& select) const;
  /// Names of some entries, spread evenly over the index.
  std::vector<std::string> sampleOfNames() const;

 private:
  ConnectionHandle connection_;
};

}  // namespace zelnor::bench
