#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct URegularExpression;

namespace zelnor {

/// A compiled regular expression in ICU's syntax that ignores letter case. Used by one thread at a
/// time.
class RegularExpression {
 public:
  /// Nothing if `pattern` (UTF-8) does not compile.
  static std::optional<RegularExpression> compile(std::string_view pattern);

  /// Whether the expression is found anywhere in `name`; bytes that are not UTF-8 count as U+FFFD.
  /// A name that would take longer than about 10 ms does not match.
  bool isFoundIn(std::string_view name);

 private:
  struct Close {
    void operator()(URegularExpression* expression) const;
  };
  using Handle = std::unique_ptr<URegularExpression, Close>;

  explicit RegularExpression(Handle expression) : expression_(std::move(expression)) {}

  Handle expression_;
  std::u16string name_;  ///< the name being looked at; kept for its memory
};

}  // namespace zelnor
