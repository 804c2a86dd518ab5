#include "results/DesktopFileIcons.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "tasks/RunOn.h"

namespace zelnor {

namespace {

// The reader keeps as much of icons again, mostly the same ones.
constexpr std::size_t kLookBytes = std::size_t{4} << 20U;
constexpr std::size_t kIconBytes = std::size_t{2} << 20U;

/// Few enough for the first to be seen at once, and not a repaint for each.
constexpr std::size_t kAtATime = 8;

/// A file that changes has another picture.
std::string keyOf(const FileRecord& record, int pixels) {
  return std::to_string(pixels) + ' ' + std::to_string(record.mtime) + ' ' + record.path;
}

}  // namespace

DesktopFileIcons::DesktopFileIcons(Services services, QObject* parent)
    : FileIcons(parent),
      looks_(kLookBytes),
      icons_(kIconBytes),
      reader_(std::make_shared<FileIconReader>(std::move(services.appearances),
                                               std::move(services.finder))),
      background_(std::move(services.background)),
      tasks_(std::move(services.main)) {}

DesktopFileIcons::~DesktopFileIcons() = default;

QImage DesktopFileIcons::icon(const FileRecord& record, int pixels) {
  auto key = keyOf(record, pixels);
  if (const auto* look = looks_.find(key)) {
    if (!look->thumbnail.isNull()) return look->thumbnail;
    if (const auto* image = icons_.find(look->icon)) return *image;
  }
  ask({.key = std::move(key),
       .path = record.path,
       .isFolder = record.kind == FileKind::directory,
       .pixels = pixels});
  return {};
}

void DesktopFileIcons::ask(FileIconRequest request) {
  const auto known = std::ranges::find(waiting_, request.key, &FileIconRequest::key);
  if (known != waiting_.end()) {
    std::rotate(known, std::next(known), waiting_.end());
    return;
  }
  waiting_.push_back(std::move(request));
  if (waiting_.size() > kMaxWaiting) waiting_.erase(waiting_.begin());
  if (std::exchange(isWorking_, true)) return;
  tasks_.spawn([self = QPointer(this), reader = reader_, background = background_](
                   const std::stop_token&) { return work(self, reader, background); });
}

tasks::Async<void> DesktopFileIcons::work(QPointer<DesktopFileIcons> self,
                                          std::shared_ptr<FileIconReader> reader,
                                          tasks::Executor background) {
  while (self) {
    const auto requests = self->takeNewest();
    if (requests.empty()) {
      self->isWorking_ = false;
      co_return;
    }
    const auto read = [&] {
      Answers answers;
      for (const auto& request : requests) answers.push_back(reader->read(request));
      return answers;
    };
    auto answers = co_await tasks::runOn(background, read);
    if (self) self->accept(std::move(answers));
  }
}

DesktopFileIcons::Requests DesktopFileIcons::takeNewest() {
  const auto count = std::min(waiting_.size(), kAtATime);
  const auto first = waiting_.end() - static_cast<std::ptrdiff_t>(count);
  Requests taken;
  std::move(first, waiting_.end(), std::back_inserter(taken));
  waiting_.erase(first, waiting_.end());
  std::ranges::reverse(taken);
  return taken;
}

void DesktopFileIcons::accept(Answers answers) {
  for (auto& answer : answers) {
    // Asked for again meanwhile.
    std::erase_if(waiting_, [&](const auto& request) { return request.key == answer.key; });
    const bool isOwn = answer.icon.empty();
    if (!isOwn) icons_.insert(answer.icon, answer.image, costOf(answer.image));
    Look look{.thumbnail = isOwn ? answer.image : QImage(), .icon = std::move(answer.icon)};
    const auto cost = costOf(look.thumbnail);
    looks_.insert(answer.key, std::move(look), cost);
  }
  Q_EMIT arrived();
}

}  // namespace zelnor
