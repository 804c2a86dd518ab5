#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace zelnor {

/// One case of an enumeration: its stored form and what the user sees for it.
template <class Enum>
struct LabelledCase {
  Enum value;
  std::string_view rawValue;
  std::string_view label;
};

/// Specialised for each labelled enumeration: an array of its cases in the order in which they are
/// listed, which is also the order of the enumerators.
template <class Enum>
inline constexpr std::array<LabelledCase<Enum>, 0> kCases{};

/// The stored form of a case.
template <class Enum>
constexpr std::string_view rawValue(Enum value) {
  return kCases<Enum>.at(static_cast<std::size_t>(value)).rawValue;
}

/// What every view shows for a case.
template <class Enum>
constexpr std::string_view label(Enum value) {
  return kCases<Enum>.at(static_cast<std::size_t>(value)).label;
}

/// The case with this stored form, compared exactly, or nothing.
template <class Enum>
constexpr std::optional<Enum> fromRawValue(std::string_view rawValue) {
  const auto& cases = kCases<Enum>;
  const auto found = std::find_if(cases.begin(), cases.end(), [&](const auto& candidate) {
    return candidate.rawValue == rawValue;
  });
  return found == cases.end() ? std::nullopt : std::optional(found->value);
}

}  // namespace zelnor
