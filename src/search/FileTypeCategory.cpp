#include "search/FileTypeCategory.h"

#include <algorithm>
#include <string>

namespace zelnor {

namespace {

using std::string_view_literals::operator""sv;

constexpr std::array kDocument{"pdf"sv,   "doc"sv,     "docx"sv, "xls"sv, "xlsx"sv,
                               "ppt"sv,   "pptx"sv,    "txt"sv,  "rtf"sv, "md"sv,
                               "pages"sv, "numbers"sv, "key"sv,  "odt"sv, "ods"sv,
                               "odp"sv,   "csv"sv,     "epub"sv, "mobi"sv};
constexpr std::array kImage{"jpg"sv, "jpeg"sv, "png"sv,  "gif"sv,  "bmp"sv, "tiff"sv,
                            "tif"sv, "webp"sv, "heic"sv, "heif"sv, "raw"sv, "cr2"sv,
                            "nef"sv, "arw"sv,  "svg"sv,  "ico"sv,  "psd"sv, "ai"sv};
constexpr std::array kVideo{"mp4"sv, "mov"sv,  "avi"sv, "mkv"sv, "wmv"sv,
                            "flv"sv, "webm"sv, "m4v"sv, "3gp"sv, "ts"sv,
                            "mts"sv, "m2ts"sv, "vob"sv, "rm"sv,  "rmvb"sv};
constexpr std::array kAudio{"mp3"sv,  "aac"sv, "wav"sv, "flac"sv, "ogg"sv,  "wma"sv, "m4a"sv,
                            "aiff"sv, "aif"sv, "mid"sv, "midi"sv, "opus"sv, "ape"sv};
constexpr std::array kArchive{"zip"sv, "rar"sv, "7z"sv,  "tar"sv, "gz"sv,     "bz2"sv,    "xz"sv,
                              "dmg"sv, "pkg"sv, "iso"sv, "tgz"sv, "tar.gz"sv, "tar.bz2"sv};
constexpr std::array kCode{"swift"sv, "py"sv,   "js"sv,  "ts"sv,   "java"sv, "c"sv,   "cpp"sv,
                           "h"sv,     "hpp"sv,  "go"sv,  "rs"sv,   "rb"sv,   "php"sv, "html"sv,
                           "css"sv,   "json"sv, "xml"sv, "yaml"sv, "yml"sv,  "sh"sv,  "bash"sv,
                           "zsh"sv,   "sql"sv,  "m"sv,   "kt"sv,   "dart"sv};
constexpr std::array kExecutable{"app"sv, "pkg"sv, "dmg"sv, "exe"sv, "msi"sv, "ipa"sv};

constexpr Color kGrey{0.55, 0.55, 0.60};
constexpr Color kOrange{0.95, 0.52, 0.12};

std::string lowerCased(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return lower;
}

}  // namespace

std::span<const std::string_view> extensions(FileTypeCategory category) {
  switch (category) {
    case FileTypeCategory::document:
      return kDocument;
    case FileTypeCategory::image:
      return kImage;
    case FileTypeCategory::video:
      return kVideo;
    case FileTypeCategory::audio:
      return kAudio;
    case FileTypeCategory::archive:
      return kArchive;
    case FileTypeCategory::code:
      return kCode;
    case FileTypeCategory::executable:
      return kExecutable;
    case FileTypeCategory::all:
    case FileTypeCategory::folder:
      break;
  }
  return {};
}

FileTypeCategory categoryForExtension(std::string_view extension) {
  const auto wanted = lowerCased(extension);
  // The order of the cases decides for extensions in several sets.
  for (const auto& candidate : kCases<FileTypeCategory>) {
    const auto set = extensions(candidate.value);
    if (std::ranges::find(set, wanted) != set.end()) return candidate.value;
  }
  return FileTypeCategory::document;
}

Color iconColor(FileTypeCategory category) {
  switch (category) {
    case FileTypeCategory::document:
      return {0.20, 0.50, 0.90};
    case FileTypeCategory::image:
      return {0.22, 0.72, 0.33};
    case FileTypeCategory::video:
      return {0.55, 0.32, 0.90};
    case FileTypeCategory::audio:
    case FileTypeCategory::archive:
      return kOrange;
    case FileTypeCategory::code:
      return {0.00, 0.48, 1.00};
    case FileTypeCategory::folder:
      return {0.35, 0.60, 0.95};
    case FileTypeCategory::all:
    case FileTypeCategory::executable:
      break;
  }
  return kGrey;
}

}  // namespace zelnor
