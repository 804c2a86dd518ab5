#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "store/FileRecord.h"

namespace zelnor::cli {

/// How a result is printed.
enum class OutputFormat : std::uint8_t {
  plain,      ///< its path on a line
  longLines,  ///< kind, size in bytes, modification time and path on a line
  null,       ///< its path with a NUL behind it
  json        ///< one object on a line
};

/// One result as text, its end included. On a terminal, names cannot do more than be read
/// (`visible`); elsewhere they keep their bytes.
std::string formatted(const FileRecord& record, OutputFormat format, bool forTerminal);

/// `text` with its control characters, bytes that are not UTF-8 and marks that turn the direction
/// of writing written as escapes ("\n", "\x1b", "\u202e").
std::string visible(std::string_view text);

/// `bytes` as a JSON string. Bytes that are not UTF-8 become the lone surrogates U+DC80 to U+DCFF,
/// from which Python's os.fsencode makes the same bytes again (PEP 383).
std::string jsonString(std::string_view bytes);

/// A time as local date and time of day, to the second.
std::string localTime(std::int64_t unixSeconds);

}  // namespace zelnor::cli
