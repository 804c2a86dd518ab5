#include "bench/TreeNames.h"

#include <cstddef>
#include <initializer_list>
#include <span>
#include <string_view>
#include <utility>

namespace zelnor::bench {
namespace {

using Words = std::span<const std::string_view>;

constexpr auto kWords = std::to_array<std::string_view>(
    {"access",  "account",  "action",   "adapter", "annual",  "archive",  "audio",    "backup",
     "base",    "batch",    "binary",   "border",  "budget",  "buffer",   "button",   "cache",
     "camera",  "chapter",  "client",   "cluster", "color",   "common",   "compiler", "config",
     "context", "contract", "control",  "core",    "course",  "cursor",   "data",     "debug",
     "decoder", "default",  "design",   "device",  "diagram", "dialog",   "draft",    "driver",
     "editor",  "element",  "encoder",  "engine",  "error",   "event",    "export",   "family",
     "feature", "field",    "filter",   "final",   "font",    "format",   "frame",    "garden",
     "graph",   "group",    "handler",  "header",  "helper",  "history",  "holiday",  "image",
     "import",  "index",    "input",    "invoice", "issue",   "kernel",   "layout",   "lecture",
     "letter",  "library",  "license",  "list",    "locale",  "manager",  "manual",   "market",
     "matrix",  "meeting",  "memory",   "message", "metrics", "model",    "module",   "monitor",
     "network", "notes",    "number",   "object",  "option",  "order",    "output",   "package",
     "page",    "parser",   "patch",    "photo",   "pixel",   "plan",     "player",   "plugin",
     "policy",  "poster",   "preset",   "profile", "project", "proxy",    "query",    "queue",
     "random",  "reader",   "receipt",  "record",  "region",  "register", "release",  "render",
     "report",  "request",  "resource", "result",  "review",  "river",    "route",    "sample",
     "scanner", "schema",   "screen",   "script",  "search",  "section",  "server",   "service",
     "session", "setup",    "shader",   "signal",  "sketch",  "socket",   "source",   "spring",
     "storage", "stream",   "string",   "student", "summary", "summer",   "support",  "survey",
     "symbol",  "system",   "table",    "target",  "tax",     "template", "test",     "texture",
     "theme",   "thread",   "ticket",   "token",   "travel",  "upload",   "user",     "utils",
     "vector",  "version",  "video",    "view",    "visual",  "wallet",   "widget",   "window",
     "winter",  "wizard",   "worker",   "writer"});

constexpr auto kAccented = std::to_array<std::string_view>(
    {"Übersicht", "Café",      "Résumé",    "Müller", "Straße", "Größe",   "élève",
     "Año",       "São Paulo", "Østergård", "Łódź",   "naïve",  "Prüfung", "Ménage",
     "façade",    "Žena",      "Ελλάδα",    "Москва", "отчёт",  "фото"});

constexpr auto kCjk = std::to_array<std::string_view>(
    {"报告", "会议记录", "合同",   "照片",   "文档", "项目",   "计划",     "音乐", "视频",
     "下载", "备份",     "预算",   "发票",   "设计", "最终版", "学习资料", "旅行", "写真",
     "資料", "東京",     "議事録", "請求書", "회의", "사진",   "보고서",   "测试", "图片"});

constexpr auto kCodeExtensions = std::to_array<std::string_view>(
    {"js",   "js",    "js", "ts",  "h",    "h",    "c",    "cpp",  "py",   "py",  "pyc",
     "java", "class", "go", "rs",  "o",    "json", "json", "md",   "html", "css", "map",
     "xml",  "yml",   "sh", "txt", "d.ts", "hpp",  "rb",   "toml", "svg"});
constexpr auto kDocumentExtensions =
    std::to_array<std::string_view>({"pdf", "pdf", "pdf", "docx", "docx", "xlsx", "pptx", "odt",
                                     "txt", "md", "csv", "rtf", "epub", "zip", "eml"});
constexpr auto kMediaExtensions =
    std::to_array<std::string_view>({"jpg", "jpg", "jpg", "JPG", "png", "png", "mp3", "mp3", "flac",
                                     "mp4", "mov", "heic", "gif", "webp", "wav", "mkv"});
constexpr auto kSystemExtensions =
    std::to_array<std::string_view>({"so", "so.1", "conf", "log", "log.gz", "service", "mo", "gz",
                                     "ttf", "png", "svg", "xml", "desktop", "dat", "ko"});
constexpr auto kCacheExtensions =
    std::to_array<std::string_view>({"bin", "tmp", "sqlite", "cache", "idx", "pack"});

constexpr auto kFixedFiles = std::to_array<std::string_view>(
    {"README.md", "index.js", "package.json", "Makefile", "__init__.py", "LICENSE",
     "CMakeLists.txt", "index.html", ".gitignore", ".npmignore", ".eslintrc", "tsconfig.json",
     "CHANGELOG.md", "index.d.ts", "setup.py", ".editorconfig"});
constexpr auto kFixedFolders = std::to_array<std::string_view>(
    {"src",    "lib",    "test",      "node_modules", "dist",   "build", "docs",   "include",
     "bin",    "share",  "assets",    "images",       "locale", ".git",  ".cache", "utils",
     "common", "vendor", "Documents", "Pictures",     "2019",   "2021",  "2023",   "old"});
constexpr auto kHidden = std::to_array<std::string_view>(
    {".bashrc", ".DS_Store", ".profile", ".lock", ".directory", ".config", ".nomedia", ".keep"});

std::string pick(Words words, Random& random) { return std::string(random.pick(words)); }

std::string capitalized(std::string result) {
  if (result.front() >= 'a' && result.front() <= 'z')
    result.front() = static_cast<char>(result.front() - 'a' + 'A');
  return result;
}

/// Two to four words, joined as the theme's people do.
std::string phrase(std::string_view separator, bool capitals, Random& random) {
  std::string result;
  const auto words = 2 + random.below(2) + random.below(2);
  for (std::uint64_t i = 0; i < words; ++i) {
    if (i > 0) result += separator;
    const auto word = pick(kWords, random);
    result += capitals ? capitalized(word) : word;
  }
  return result;
}

/// Braces fix the order in which random parts are drawn; a sum does not.
std::string joined(std::initializer_list<std::string> parts) {
  std::string result;
  for (const auto& part : parts) result += part;
  return result;
}

/// `count` random characters of `alphabet`.
std::string drawn(std::size_t count, std::string_view alphabet, Random& random) {
  std::string result(count, '0');
  for (char& character : result) character = alphabet[random.below(alphabet.size())];
  return result;
}

std::string hex(std::size_t count, Random& random) {
  return drawn(count, "0123456789abcdef", random);
}
std::string digits(std::size_t count, Random& random) { return drawn(count, "0123456789", random); }

std::string twoDigits(std::uint64_t number) {
  return joined({number < 10 ? "0" : "", std::to_string(number)});
}

std::string year(Random& random) { return std::to_string(2006 + random.below(20)); }

std::string date(Random& random, const std::string& separator) {
  return joined({year(random), separator, twoDigits(1 + random.below(12)), separator,
                 twoDigits(1 + random.below(28))});
}

std::string withExtension(const std::string& stem, Words extensions, Random& random) {
  return joined({stem, ".", pick(extensions, random)});
}

std::string codeStem(Random& random) {
  constexpr auto kSeparators = std::to_array<std::string_view>({"-", "_", "_", ""});
  const auto separator = pick(kSeparators, random);
  return phrase(separator, separator.empty(), random);
}

std::string documentStem(Random& random) {
  switch (random.below(8)) {
    case 0:
      return joined({year(random), "年", pick(kCjk, random)});
    case 1:
      return joined({capitalized(pick(kWords, random)), " ", pick(kAccented, random), " ",
                     date(random, "-")});
    case 2:
      return joined({pick(kCjk, random), "_", phrase(" ", false, random)});
    case 3:
      return joined({phrase(" ", true, random), " v", std::to_string(1 + random.below(9))});
    case 4:
      return joined({date(random, "-"), " ", phrase("-", false, random)});
    default:
      return phrase(random.chance(0.5) ? " " : "_", true, random);
  }
}

std::string mediaStem(Random& random) {
  switch (random.below(6)) {
    case 0:
    case 1:
      return joined({"IMG_", date(random, ""), "_", digits(6, random)});
    case 2:
      return joined({"DSC", digits(5, random)});
    case 3:
      return joined({twoDigits(1 + random.below(20)), " - ", phrase(" ", true, random)});
    case 4:
      return joined({pick(kCjk, random), " ", digits(3, random)});
    default:
      return joined({"Screenshot from ", date(random, "-")});
  }
}

std::string systemName(Random& random) {
  if (random.chance(0.3))
    return withExtension(joined({"lib", pick(kWords, random)}), kSystemExtensions, random);
  if (random.chance(0.1)) return pick(kWords, random);  // a program
  return withExtension(phrase("-", false, random), kSystemExtensions, random);
}

std::string cacheName(Random& random) {
  constexpr std::size_t kObjectDigits =
      38;  // what a content-addressed store leaves after its two-digit folder
  if (random.chance(0.3)) return hex(kObjectDigits, random);
  if (random.chance(0.5)) return hex(16, random);
  return withExtension(hex(12, random), kCacheExtensions, random);
}

}  // namespace

std::string fileName(Theme theme, Random& random) {
  if (random.chance(0.01)) return pick(kHidden, random);
  switch (theme) {
    case Theme::code:
      if (random.chance(0.12)) return pick(kFixedFiles, random);
      return withExtension(codeStem(random), kCodeExtensions, random);
    case Theme::documents:
      return withExtension(documentStem(random), kDocumentExtensions, random);
    case Theme::media:
      return withExtension(mediaStem(random), kMediaExtensions, random);
    case Theme::system:
      return systemName(random);
    case Theme::cache:
      return cacheName(random);
  }
  return {};
}

std::string folderName(Theme theme, Random& random) {
  if (random.chance(0.02)) return capitalized(pick(kWords, random)) + ".app";
  if (random.chance(0.02)) return joined({".", pick(kWords, random)});
  if (theme == Theme::cache) return hex(2, random);
  if (theme == Theme::documents || theme == Theme::media) {
    if (random.chance(0.15)) return pick(kCjk, random);
    if (random.chance(0.08)) return pick(kAccented, random);
    if (random.chance(0.1)) return phrase(" ", true, random);
    return capitalized(pick(kWords, random));
  }
  if (random.chance(0.35)) return pick(kFixedFolders, random);
  if (random.chance(0.1)) return phrase("-", false, random);
  return pick(kWords, random);
}

std::string numberedName(const std::string& name, std::size_t number) {
  const auto dot = name.find('.', 1);
  const auto stemLength = dot == std::string::npos ? name.size() : dot;
  return joined(
      {name.substr(0, stemLength), " (", std::to_string(number), ")", name.substr(stemLength)});
}

}  // namespace zelnor::bench
