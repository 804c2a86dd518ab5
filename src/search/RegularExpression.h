#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

struct URegularExpression;

namespace zelnor {

/// A compiled regular expression in ICU's syntax that ignores letter case. Used by one thread at a
/// time, but for what is const.
class RegularExpression {
 public:
  enum class Answer : std::uint8_t {
    found,
    notFound,
    givenUp,  ///< it would have taken longer than the asker's patience
  };

  /// Asked about seven times in a millisecond, while a name is looked at, how to go on: `ticks`
  /// counts how often for this name. False gives the name up.
  using Patience = std::function<bool(std::int32_t ticks)>;

  /// Nothing if `pattern` (UTF-8) does not compile.
  static std::optional<RegularExpression> compile(std::string_view pattern);

  /// The same expression for another thread.
  [[nodiscard]] RegularExpression clone() const;

  /// A quick look, by far faster than `lookIn`: false only if the expression is not found in
  /// `name`.
  [[nodiscard]] bool mayBeFoundIn(std::string_view name) const;

  /// Whether the expression is found anywhere in `name`; bytes that are not UTF-8 count as U+FFFD.
  Answer lookIn(std::string_view name, const Patience& patience);

 private:
  struct Close {
    void operator()(URegularExpression* expression) const;
  };
  using Handle = std::unique_ptr<URegularExpression, Close>;

  RegularExpression(Handle expression, std::string literal)
      : expression_(std::move(expression)), literal_(std::move(literal)) {}

  Handle expression_;
  std::string literal_;  ///< that names hold in which the expression is found; may be empty
  std::u16string name_;  ///< the name being looked at; kept for its memory
};

}  // namespace zelnor
