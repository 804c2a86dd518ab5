#pragma once

#include <cstdint>
#include <map>
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
  /// The inode numbers of the files of several names that were changed last by a name that they
  /// have no longer: if that was gone before anybody looked, nothing tells of the others.
  [[nodiscard]] std::set<std::uint64_t> changedUnseen() const;
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
  void noteChange(const std::string& path);

  std::mt19937_64 random_;
  std::vector<std::string> roots_;
  std::string outside_;
  /// By which name each file of several was changed last, by inode number.
  std::map<std::uint64_t, std::string> changedBy_;
};

/// Makes everything below `folder` readable and removes it.
void removeTree(const std::string& folder);

}  // namespace zelnor::test
