#pragma once

#include <cstdint>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace zelnor::test {

/// Random operations on trees: the same for the same seed on the same trees.
class Operations {
 public:
  /// Works in `roots` and moves things to and from `outside`.
  Operations(std::uint64_t seed, std::vector<std::string> roots, std::string outside);

  void runOne();
  /// Enough changes to fill the kernel's queue.
  void overflow();
  /// The inode numbers of all files that ever had several names.
  [[nodiscard]] const std::set<std::uint64_t>& linked() const { return linked_; }
  /// One of 0 … n-1.
  int pick(int n);

 private:
  std::string path();
  std::string anywhere();

  void createFile();
  void append();
  void truncate();
  void changeTimes();
  void changeMode();
  void remove();
  void removeAll();
  void rename();
  void exchange();
  void replaceByFolder();
  void replaceByFile();
  void linkSymbolically();
  void linkHard();
  void createTree();
  void fill(const std::string& folder, int depth);
  void burst();

  std::mt19937_64 random_;
  std::vector<std::string> roots_;
  std::string outside_;
  std::set<std::uint64_t> linked_;
};

/// Makes everything below `folder` readable and removes it.
void removeTree(const std::string& folder);

}  // namespace zelnor::test
