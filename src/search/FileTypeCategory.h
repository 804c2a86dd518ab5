#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "search/LabelledEnum.h"

namespace zelnor {

/// What kind of file a name promises. Sets of extensions overlap: "ts" is video and code.
enum class FileTypeCategory : std::uint8_t {
  all,
  document,
  image,
  video,
  audio,
  archive,
  code,
  executable,
  folder
};

template <>
inline constexpr std::array kCases<FileTypeCategory>{
    LabelledCase{FileTypeCategory::all, "all", "全部"},
    LabelledCase{FileTypeCategory::document, "document", "文档"},
    LabelledCase{FileTypeCategory::image, "image", "图片"},
    LabelledCase{FileTypeCategory::video, "video", "视频"},
    LabelledCase{FileTypeCategory::audio, "audio", "音频"},
    LabelledCase{FileTypeCategory::archive, "archive", "压缩包"},
    LabelledCase{FileTypeCategory::code, "code", "代码"},
    LabelledCase{FileTypeCategory::executable, "executable", "应用/安装包"},
    LabelledCase{FileTypeCategory::folder, "folder", "文件夹"},
};

/// An opaque sRGB colour, each part from 0 to 1.
struct Color {
  double red = 0;
  double green = 0;
  double blue = 0;

  friend bool operator==(const Color&, const Color&) = default;
};

/// The category's extensions, lower-case and without the dot. Empty for `all`, and for `folder`,
/// which goes by the entry's kind instead of its name.
std::span<const std::string_view> extensions(FileTypeCategory category);

/// The category of files with this extension, in any case of letters; `document` if it is in no
/// set.
FileTypeCategory categoryForExtension(std::string_view extension);

/// The tint of the category's icon.
Color iconColor(FileTypeCategory category);

}  // namespace zelnor
