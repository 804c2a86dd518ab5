#include "search/RequiredLiteral.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <utility>

namespace zelnor {

namespace {

using std::string_view_literals::operator""sv;

/// Escapes that stand for a character or a position and have no arguments.
constexpr auto kClassEscapes = "dDsSwWhHvV"sv;
constexpr auto kPlainEscapes = "dDsSwWhHvVRXbBAZzG"sv;
/// What may follow "(?" in a group that changes nothing about how its contents are read.
constexpr std::array kPlainGroups{":"sv, "="sv, "!"sv, ">"sv, "<="sv, "<!"sv};
constexpr auto kRepeats = "*+?{"sv;

bool isAscii(char byte) { return static_cast<unsigned char>(byte) < 0x80; }
bool isPrintable(char byte) { return byte >= ' ' && byte <= '~'; }
char asciiLowerCased(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}
bool isAlphanumeric(char byte) {
  const char lower = asciiLowerCased(byte);
  return (lower >= 'a' && lower <= 'z') || (byte >= '0' && byte <= '9');
}

/// Reads a pattern from its start to its end. Every step answers whether it understood.
class Reader {
 public:
  explicit Reader(std::string_view pattern) : rest_(pattern) {}

  std::optional<std::string> longestLiteral() {
    while (!rest_.empty()) {
      if (!readElement()) return std::nullopt;
    }
    if (depth_ != 0) return std::nullopt;
    endLiteral();
    return longest_;
  }

 private:
  enum class Repeats : std::uint8_t { once, atLeastOnce, maybeNever };

  bool readElement() {
    const char next = take();
    switch (next) {
      case '(':
        endLiteral();
        ++depth_;
        return !skip("?"sv) ||
               std::ranges::any_of(kPlainGroups, [&](auto kind) { return skip(kind); });
      case ')':
        --depth_;
        return depth_ >= 0 && readUnknown();
      case '|':
        return depth_ > 0;
      case '[':
        return skipClass() && readUnknown();
      case '\\':
        return readEscape();
      case '.':
      case '^':
      case '$':
        return readUnknown();
      case '*':
      case '+':
      case '?':
      case '{':
      case '}':
      case ']':
        return false;
      default:
        return isAscii(next) ? isPrintable(next) && readLiteral(next) : readUnknown();
    }
  }

  bool readEscape() {
    const char next = take();
    if (kPlainEscapes.find(next) != std::string_view::npos) return readUnknown();
    return isPrintable(next) && !isAlphanumeric(next) && readLiteral(next);
  }

  /// The rest of a class, without other classes in it.
  bool skipClass() {
    skip("^"sv);
    if (skip("]"sv)) return false;  // a character of the class, or its end?
    while (!rest_.empty()) {
      const char next = take();
      if (next == ']') return true;
      if (next == '[') return false;
      if (next != '\\') continue;
      const char escaped = take();
      if (isAlphanumeric(escaped) && kClassEscapes.find(escaped) == std::string_view::npos)
        return false;
    }
    return false;
  }

  bool readLiteral(char character) {
    const auto repeats = readRepeats();
    if (!repeats) return false;
    if (depth_ == 0 && repeats != Repeats::maybeNever) literal_ += asciiLowerCased(character);
    if (repeats != Repeats::once) endLiteral();
    return true;
  }

  /// Something was read that stands for no character in particular.
  bool readUnknown() {
    endLiteral();
    return readRepeats().has_value();
  }

  /// How often the last element occurs; nothing if that is not understood.
  std::optional<Repeats> readRepeats() {
    if (!startsWithRepeat()) return Repeats::once;
    const char first = take();
    if (first == '{') {
      const auto end = rest_.find('}');
      if (end == std::string_view::npos) return std::nullopt;
      rest_.remove_prefix(end + 1);
    }
    if (!skip("?"sv)) skip("+"sv);  // reluctant, possessive
    if (startsWithRepeat()) return std::nullopt;
    return first == '+' ? Repeats::atLeastOnce : Repeats::maybeNever;
  }

  [[nodiscard]] bool startsWithRepeat() const {
    return !rest_.empty() && kRepeats.find(rest_.front()) != std::string_view::npos;
  }
  void endLiteral() {
    if (literal_.size() > longest_.size()) longest_ = literal_;
    literal_.clear();
  }
  bool skip(std::string_view text) {
    if (!rest_.starts_with(text)) return false;
    rest_.remove_prefix(text.size());
    return true;
  }
  /// The next byte; NUL, which is not understood, at the end.
  char take() {
    if (rest_.empty()) return '\0';
    const char next = rest_.front();
    rest_.remove_prefix(1);
    return next;
  }

  std::string_view rest_;
  int depth_ = 0;  ///< of groups
  std::string literal_;
  std::string longest_;
};

}  // namespace

std::string requiredLiteral(std::string_view pattern) {
  return Reader(pattern).longestLiteral().value_or(std::string());
}

bool mayHoldLiteral(std::string_view name, std::string_view literal) {
  const auto found = std::ranges::search(name, literal, {}, asciiLowerCased);
  return !found.empty() || literal.empty() || !std::ranges::all_of(name, isAscii);
}

}  // namespace zelnor
