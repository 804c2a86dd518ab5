#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "bench/Random.h"

namespace zelnor::bench {

/// What a folder is for; its names and extensions follow from it.
enum class Theme : std::uint8_t { code, documents, media, system, cache };

inline constexpr std::array kAllThemes{Theme::code, Theme::documents, Theme::media, Theme::system,
                                       Theme::cache};

/// A name such as people and programs give to files of this theme, 22 bytes on average. Not unique.
std::string fileName(Theme theme, Random& random);
/// The same for folders; shorter, 9 bytes on average.
std::string folderName(Theme theme, Random& random);

/// `name` with a number before its extension: "a.txt" and 2 give "a (2).txt".
std::string numberedName(const std::string& name, std::size_t number);

}  // namespace zelnor::bench
