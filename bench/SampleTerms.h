#pragma once

#include <span>
#include <string>

namespace zelnor::bench {

/// Terms worth searching for among the names of an index nobody knows, so that every kind of query
/// finds something there. A term is empty if the names offer none of its kind.
struct SampleTerms {
  std::string common;  ///< the most frequent run of three or more Latin letters, in lower case
  std::string rare;    ///< up to ten letters and digits that occur once; the longer the better
  std::string cjk;  ///< the most frequent run of characters from U+2E80 on, at most the first three
  std::string extension;  ///< the most frequent one

  static SampleTerms of(std::span<const std::string> names);
};

}  // namespace zelnor::bench
