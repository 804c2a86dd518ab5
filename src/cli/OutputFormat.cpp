#include "cli/OutputFormat.h"

#include <array>
#include <ctime>
#include <iomanip>
#include <sstream>

#include "cli/Utf8.h"

namespace zelnor::cli {

namespace {

constexpr int kSizeColumn = 14;

std::string hexadecimal(unsigned value, int digits) {
  std::ostringstream text;
  text << std::hex << std::setfill('0') << std::setw(digits) << value;
  return text.str();
}

unsigned byteValue(char byte) { return static_cast<unsigned char>(byte); }

std::string escapedByte(char byte) {
  switch (byte) {
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      return "\\x" + hexadecimal(byteValue(byte), 2);
  }
}

bool isControl(char byte) { return byteValue(byte) < 0x20 || byte == 0x7F; }

/// The name of a character that a terminal would act on instead of showing it, or nothing.
std::string nameIfInvisible(std::string_view character) {
  // C1 control characters, U+0080 to U+009F.
  if (character.size() == 2 && character[0] == '\xC2' && byteValue(character[1]) < 0xA0) {
    return "\\u00" + hexadecimal(byteValue(character[1]), 2);
  }
  // Marks, embeddings, overrides and isolates of writing direction: U+200E, U+200F, U+202A to
  // U+202E, U+2066 to U+2069.
  if (character.size() != 3 || character[0] != '\xE2') return {};
  const auto code =
      ((byteValue(character[1]) & 0x3FU) << 6U) | (byteValue(character[2]) & 0x3FU) | 0x2000U;
  const bool turns = (code >= 0x200E && code <= 0x200F) || (code >= 0x202A && code <= 0x202E) ||
                     (code >= 0x2066 && code <= 0x2069);
  return turns ? "\\u" + hexadecimal(code, 4) : std::string();
}

std::string visibleCharacter(std::string_view character) {
  if (character.size() == 1) {
    return isControl(character[0]) ? escapedByte(character[0]) : std::string(character);
  }
  auto name = nameIfInvisible(character);
  return name.empty() ? std::string(character) : name;
}

std::string jsonCharacter(char byte) {
  switch (byte) {
    case '"':
      return "\\\"";
    case '\\':
      return "\\\\";
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      return isControl(byte) ? "\\u00" + hexadecimal(byteValue(byte), 2) : std::string(1, byte);
  }
}

/// Goes through `bytes` character by character; `ofByte` answers for those that belong to no
/// character.
template <class OfCharacter, class OfByte>
std::string translated(std::string_view bytes, OfCharacter ofCharacter, OfByte ofByte) {
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const auto length = characterLength(bytes);
    text += length > 0 ? ofCharacter(bytes.substr(0, length)) : ofByte(bytes.front());
    bytes.remove_prefix(length > 0 ? length : 1);
  }
  return text;
}

std::string_view kindName(FileKind kind) {
  switch (kind) {
    case FileKind::directory:
      return "directory";
    case FileKind::symlink:
      return "symlink";
    case FileKind::file:
      break;
  }
  return "file";
}

/// As in the first column of ls.
char kindLetter(FileKind kind) {
  switch (kind) {
    case FileKind::directory:
      return 'd';
    case FileKind::symlink:
      return 'l';
    case FileKind::file:
      break;
  }
  return '-';
}

std::string longLine(const FileRecord& record, const std::string& path) {
  std::ostringstream line;
  line << kindLetter(record.kind) << ' ' << std::setw(kSizeColumn) << record.size << "  "
       << localTime(record.mtime) << "  " << path << '\n';
  return line.str();
}

std::string jsonLine(const FileRecord& record) {
  std::ostringstream line;
  line << R"({"name":)" << jsonString(record.name) << R"(,"path":)" << jsonString(record.path)
       << R"(,"size":)" << record.size << R"(,"mtime":)" << record.mtime << R"(,"kind":")"
       << kindName(record.kind) << "\"}\n";
  return line.str();
}

}  // namespace

std::string formatted(const FileRecord& record, OutputFormat format, bool forTerminal) {
  const auto path = [&] { return forTerminal ? visible(record.path) : record.path; };
  switch (format) {
    case OutputFormat::longLines:
      return longLine(record, path());
    case OutputFormat::null:
      return record.path + '\0';
    case OutputFormat::json:
      return jsonLine(record);
    case OutputFormat::plain:
      break;
  }
  return path() + '\n';
}

std::string visible(std::string_view text) {
  return translated(text, visibleCharacter, escapedByte);
}

std::string jsonString(std::string_view bytes) {
  const auto ofCharacter = [](std::string_view character) {
    return character.size() == 1 ? jsonCharacter(character[0]) : std::string(character);
  };
  const auto ofByte = [](char byte) { return "\\udc" + hexadecimal(byteValue(byte), 2); };
  return '"' + translated(bytes, ofCharacter, ofByte) + '"';
}

std::string localTime(std::int64_t unixSeconds) {
  const std::time_t time = unixSeconds;
  std::tm parts{};
  std::array<char, 64> text{};
  // Years that do not fit `tm` are nobody's modification times.
  if (::localtime_r(&time, &parts) == nullptr) return std::to_string(unixSeconds);
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts)};
}

}  // namespace zelnor::cli
