#include "bench/FixedData.h"

#include <array>
#include <cstdint>
#include <string_view>

#include "platform/FileError.h"
#include "store/DatabaseError.h"

namespace zelnor::bench {
namespace {

struct Entry {
  std::string_view path;
  std::int64_t size;
  std::int64_t mtime;
  FileKind kind = FileKind::file;
};

constexpr std::int64_t kNovember = 1'795'111'200;  // 2026-11-19
constexpr std::int64_t kDay = 86'400;

constexpr std::array kEntries{
    Entry{"/home/user/文档/财务/季度/2026 年第三季度报告（终稿）.docx", 1'234'567, kNovember},
    Entry{"/home/user/文档/财务/季度报告", 0, kNovember - 240, FileKind::directory},
    Entry{"/home/user/图片/素材/季度报告-封面.png", 843'210, kNovember - 8 * kDay},
    Entry{"/home/user/下载/季度报告-归档.tar.gz", 48'700'000, kNovember - 21 * kDay},
    Entry{"/home/user/视频/季度报告-发布会.mp4", 3'210'000'000, kNovember - 30 * kDay},
    Entry{"/home/user/音乐/季度报告-片头.flac", 31'000'000, kNovember - 44 * kDay},
    Entry{"/home/user/src/报告/report_builder.cpp", 12'345, kNovember - 45 * kDay},
    Entry{"/home/user/下载/季度报告-安装.deb", 8'100'000, kNovember - 60 * kDay},
    Entry{"/home/user/桌面/季度报告", 18, kNovember - 61 * kDay, FileKind::symlink},
    Entry{"/home/user/归档/"
          "一个非常长的文件名用来检查列表在空间不够时从中间省略而不是把扩展名也截掉-季度报告-"
          "第十二版-最终-确认-再确认.pptx",
          999, kNovember - 90 * kDay},
    Entry{"/home/user/国际/تقرير الربع الثالث.pdf", 77'000, kNovember - 100 * kDay},
    Entry{"/home/user/国际/Z̷̢a̸̡l̵̨g̶o̴ - é combining.txt", 4, kNovember - 101 * kDay},
    Entry{"/home/user/奇怪/gpj.\u202Eexe 换\n行 <b>标记 & 符号", 4, kNovember - 102 * kDay},
    Entry{"/无主", 0, 0},
};

constexpr int kFurther = 1'220;

std::vector<SearchResult> makeRows() {
  std::vector<SearchResult> rows;
  const auto add = [&rows](const Entry& entry) {
    FileRecord record;
    record.id = static_cast<std::int64_t>(rows.size()) + 1;
    record.path = entry.path;
    record.name = entry.path.substr(entry.path.rfind('/') + 1);
    record.size = entry.size;
    record.mtime = entry.mtime;
    record.kind = entry.kind;
    rows.push_back({record});
  };
  for (const auto& entry : kEntries) add(entry);
  for (int i = 0; i < kFurther; ++i) {
    const auto path = "/home/user/文档/月报/报告-" + std::to_string(i) + ".xlsx";
    add({path, 20'000 + i, kNovember - i * kDay});
  }
  return rows;
}

bool isAbout(const SearchQuery& query, std::string_view word) {
  return query.text.find(word) != std::string::npos;
}

[[noreturn]] void refuse() { throw platform::FileError("权限不够"); }

}  // namespace

FixedSource::FixedSource() : rows_(makeRows()) {}

tasks::Async<SearchPage> FixedSource::search(SearchQuery query, std::int64_t limit,
                                             std::int64_t offset, std::stop_token /*stop*/) {
  const bool isHeld = isAbout(query, "等待") || (isAbout(query, "更多") && offset > 0);
  if (isHeld) co_await tasks::Completion<bool>::wait(gate_);
  if (isAbout(query, "错误")) throw DatabaseError::stepFailed(/*code=*/10);
  SearchPage page;
  const auto count = static_cast<std::int64_t>(rows_.size());
  for (auto row = offset; row < count && row < offset + limit && !isAbout(query, "无"); ++row) {
    page.results.push_back(rows_[static_cast<std::size_t>(row)]);
  }
  co_return page;
}

tasks::Async<std::int64_t> FixedSource::searchCount(SearchQuery query, std::stop_token /*stop*/) {
  co_return isAbout(query, "无") ? 0 : static_cast<std::int64_t>(rows_.size());
}

void RefusingDesktop::trash(const std::string& /*path*/) { refuse(); }
void RefusingDesktop::rename(const std::string& /*from*/, const std::string& /*to*/) { refuse(); }
void RefusingDesktop::open(const std::string& /*path*/,
                           const platform::Activation& /*activation*/) {
  refuse();
}
void RefusingDesktop::reveal(const std::string& /*path*/,
                             const platform::Activation& /*activation*/) {
  refuse();
}

}  // namespace zelnor::bench
