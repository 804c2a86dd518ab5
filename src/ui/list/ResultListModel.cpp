#include "ui/list/ResultListModel.h"

#include <QStringList>

#include "ui/DisplayText.h"

namespace zelnor::ui {

namespace {

int rowsOf(const SearchViewModel& results) { return static_cast<int>(results.results().size()); }

QString size(const FileRecord& record) {
  return record.kind == FileKind::file ? sizeText(record.size) : QStringLiteral(u"—");
}

/// Tool tips take what looks like markup for markup.
QString toolTip(const FileRecord& record) {
  return QStringLiteral(u"<span>%1</span>").arg(displayText(record.path).toHtmlEscaped());
}

QString spoken(const FileRecord& record) {
  return QStringList{displayText(record.name), displayFolder(record.path), size(record),
                     dateText(record.mtime)}
      .join(u'，');
}

}  // namespace

ResultListModel::ResultListModel(const SearchViewModel& results, QObject* parent)
    : QAbstractListModel(parent), results_(results), rows_(rowsOf(results)) {
  connect(&results, &SearchViewModel::resultsChanged, this, &ResultListModel::follow);
}

int ResultListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

QVariant ResultListModel::data(const QModelIndex& index, int role) const {
  const auto& rows = results_.results();
  const auto row = static_cast<std::size_t>(index.row());
  if (!index.isValid() || row >= rows.size()) return {};
  const auto& record = rows[row].record;
  switch (role) {
    case Qt::DisplayRole:
      return displayText(record.name);
    case Qt::ToolTipRole:
      return toolTip(record);
    case folderRole:
      return displayFolder(record.path);
    case sizeRole:
      return size(record);
    case dateRole:
      return dateText(record.mtime);
    case recordRole:
      return QVariant::fromValue(&record);
    case Qt::AccessibleTextRole:
      return spoken(record);
    default:
      return {};
  }
}

void ResultListModel::follow(SearchViewModel::ResultsChange change) {
  switch (change) {
    case SearchViewModel::ResultsChange::replaced:
      beginResetModel();
      rows_ = rowsOf(results_);
      endResetModel();
      break;
    case SearchViewModel::ResultsChange::appended:
      resize();
      break;
    case SearchViewModel::ResultsChange::removed:
    case SearchViewModel::ResultsChange::refreshed:
      // Not a reset, after which a view would begin at the top.
      resize();
      if (rows_ > 0) Q_EMIT dataChanged(index(0), index(rows_ - 1));
      break;
  }
}

/// Rows come and go at the end.
void ResultListModel::resize() {
  const int rows = rowsOf(results_);
  if (rows > rows_) {
    beginInsertRows({}, rows_, rows - 1);
    rows_ = rows;
    endInsertRows();
  } else if (rows < rows_) {
    beginRemoveRows({}, rows, rows_ - 1);
    rows_ = rows;
    endRemoveRows();
  }
}

}  // namespace zelnor::ui
