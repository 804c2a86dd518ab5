#pragma once

#include <cstdint>
#include <string_view>

#include <QLocale>
#include <QString>

/// What is shown for the bytes and numbers of the index. Pure functions.
namespace zelnor::ui {

/// A name or path for the eye: bytes that are not UTF-8 become U+FFFD, and characters that would
/// act instead of being seen are made visible. Control characters become their picture ("␊"), those
/// that reorder text (they can make "gnp.exe" look like "exe.png"), break lines or cannot be
/// pictured become "⟨U+202E⟩".
QString displayText(std::string_view bytes);

/// The folder part of an absolute path, as display text: "/" for what lies in the root.
QString displayFolder(std::string_view path);

/// The user's locale; Chinese, like all texts of the interface, where the system sets none.
QLocale displayLocale();

/// A size in decimal units, with no more digits than anybody reads: "843 KB", "1.2 MB", "1.25 GB".
QString sizeText(std::int64_t bytes, const QLocale& locale = displayLocale());

/// A moment, given in seconds since 1970, as short date and time of the local time zone.
QString dateText(std::int64_t seconds, const QLocale& locale = displayLocale());

/// A count with the digit grouping of the locale.
QString countText(std::int64_t count, const QLocale& locale = displayLocale());

}  // namespace zelnor::ui
