#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace zelnor {

/// An identity (RFC 4122) as its text: 36 characters, upper case, with hyphens.
class Uuid {
 public:
  /// The nil identity, all zeros.
  Uuid() = default;

  /// One that nobody has had before.
  static Uuid random();
  /// Takes digits of either case; nothing if `text` is anything else than an identity.
  static std::optional<Uuid> parse(std::string_view text);

  [[nodiscard]] const std::string& text() const { return text_; }

  friend bool operator==(const Uuid&, const Uuid&) = default;

 private:
  explicit Uuid(std::string text) : text_(std::move(text)) {}

  std::string text_ = "00000000-0000-0000-0000-000000000000";
};

}  // namespace zelnor

template <>
struct std::hash<zelnor::Uuid> {
  std::size_t operator()(const zelnor::Uuid& id) const noexcept {
    return std::hash<std::string>{}(id.text());
  }
};
