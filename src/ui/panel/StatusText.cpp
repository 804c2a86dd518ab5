#include "ui/panel/StatusText.h"

namespace zelnor::ui {

StatusText statusText(const StatusFacts& facts, const QLocale& locale) {
  using Tone = StatusText::Tone;
  if (facts.error) return {*facts.error, Tone::error};
  if (facts.isSearching) return {QStringLiteral(u"搜索中..."), Tone::normal, /*isBusy=*/true};
  if (facts.isIndexing) {
    return {QStringLiteral(u"正在建立索引... %1 个文件").arg(facts.processedFiles), Tone::normal,
            /*isBusy=*/true};
  }
  if (facts.isIncomplete) {
    return {QStringLiteral(u"至少 %1 个结果").arg(countText(facts.resultCount, locale)),
            Tone::normal};
  }
  if (facts.resultCount >= 1) {
    return {QStringLiteral(u"共找到 %1 个结果").arg(countText(facts.resultCount, locale)),
            Tone::normal};
  }
  if (facts.notice) return {*facts.notice, Tone::normal};
  if (facts.totalFiles >= 1) {
    return {QStringLiteral(u"已索引 %1 个文件").arg(countText(facts.totalFiles, locale)),
            Tone::faint};
  }
  return {QStringLiteral(u"准备就绪"), Tone::faint};
}

QString sortTitle(SortField field, bool ascending) {
  return QStringLiteral(u"排序：%1 %2").arg(displayText(label(field)), ascending ? u"↑" : u"↓");
}

}  // namespace zelnor::ui
