#include "indexer/IndexSettingsText.h"

#include <algorithm>
#include <chrono>
#include <memory>

#include <unicode/datefmt.h>
#include <unicode/unistr.h>

#include <QDateTime>

namespace zelnor {

namespace {

using TimePoint = std::chrono::system_clock::time_point;

qint64 milliseconds(TimePoint time) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
}

QString shortText(TimePoint time, const QLocale& locale) {
  return locale.toString(QDateTime::fromMSecsSinceEpoch(milliseconds(time)), QLocale::ShortFormat);
}

/// The date abbreviated, as in "2024年1月5日 15:04"; Qt knows only a short and a long form.
QString abbreviatedText(TimePoint time, const QLocale& locale) {
  const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
      icu::DateFormat::kMedium, icu::DateFormat::kShort,
      icu::Locale::createFromName(locale.name().toUtf8().constData())));
  if (!format) return shortText(time, locale);
  icu::UnicodeString text;
  format->format(static_cast<UDate>(milliseconds(time)), text);
  return QString::fromUtf16(text.getBuffer(), text.length());
}

}  // namespace

IndexSettingsText indexSettingsText(const IndexStatus& status, bool isRebuilding,
                                    const QLocale& locale) {
  const auto busy = QStringLiteral(u"索引中...");
  const auto files =
      QStringLiteral(u"%1 个").arg(locale.toString(static_cast<qlonglong>(status.totalFiles)));
  IndexSettingsText text{
      .state = isRebuilding ? QStringLiteral(u"状态：索引中") : QStringLiteral(u"状态：正常"),
      .cardButton = isRebuilding ? busy : QStringLiteral(u"立即重建索引"),
      .fileCount = files,
      .lastUpdate = QStringLiteral(u"尚未索引"),
      .sectionButton = isRebuilding ? busy : QStringLiteral(u"重建索引"),
      .indexedFiles = QStringLiteral(u"已索引文件：") + files,
      .lastIndexed = std::nullopt,
      .followed = std::nullopt};
  if (const auto date = status.lastIndexDate) {
    text.lastUpdate = abbreviatedText(*date, locale);
    text.lastIndexed = QStringLiteral(u"上次索引：") + shortText(*date, locale);
  }
  if (const auto& count = status.followed) {
    text.followed = QStringLiteral(u"实时跟踪 %1 个文件夹，定期检查 %2 个文件夹")
                        .arg(locale.toString(static_cast<qlonglong>(count->live)),
                             locale.toString(static_cast<qlonglong>(count->swept)));
  }
  return text;
}

std::optional<double> rebuildProgress(const IndexStatus& status) {
  if (status.processedFiles < 1) return 0.0;
  if (status.totalFiles < 1) return std::nullopt;
  return std::min(
      static_cast<double>(status.processedFiles) / static_cast<double>(status.totalFiles), 1.0);
}

}  // namespace zelnor
