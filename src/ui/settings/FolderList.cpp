#include "ui/settings/FolderList.h"

#include <algorithm>
#include <utility>

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/DisplayText.h"
#include "ui/Palette.h"
#include "ui/PlainButton.h"
#include "ui/TextLabel.h"
#include "ui/form/FormSection.h"

namespace zelnor::ui {

namespace {

constexpr int kFolderSymbol = 15;
constexpr int kButtonSymbol = 14;
constexpr int kGap = 8;

}  // namespace

FolderList::FolderList(Description description, QWidget* parent)
    : QWidget(parent),
      description_(std::move(description)),
      section_(new FormSection(description_.title, this)) {
  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->addWidget(section_);
  addLastRow();
}

void FolderList::setPaths(const std::vector<std::string>& paths) {
  if (paths == paths_) return;
  const auto focused = focusedButton();
  paths_ = paths;
  section_->clear();
  buttons_.clear();
  for (const auto& path : paths_) addFolderRow(path);
  addLastRow();
  if (focused) {
    buttons_[std::min(*focused, buttons_.size() - 1)]->setFocus(Qt::OtherFocusReason);
  }
}

/// So that whoever takes away one folder after the other by keyboard need not come here anew.
std::optional<std::size_t> FolderList::focusedButton() const {
  const auto found =
      std::ranges::find_if(buttons_, [](const auto* button) { return button->hasFocus(); });
  if (found == buttons_.end()) return std::nullopt;
  return found - buttons_.begin();
}

void FolderList::addFolderRow(const std::string& path) {
  auto* row = new QHBoxLayout;
  row->setSpacing(kGap);
  row->addWidget(makeSymbol(description_.symbol, kFolderSymbol, palette::kAccent, this));
  auto* text = new ElidedLabel(type::kBody, palette::kText, this);
  text->setText(displayText(path));
  row->addWidget(text, /*stretch=*/1);
  auto* remove =
      addButton(QLatin1String("minus.circle.fill"), palette::kRed, QStringLiteral(u"移除"), *row);
  remove->setTitle(QStringLiteral(u"移除 ") + text->text());
  section_->addRow(row);
  connect(remove, &QPushButton::clicked, this, [this, path] { Q_EMIT removeRequested(path); });
}

void FolderList::addLastRow() {
  auto* row = new QHBoxLayout;
  auto* add = addButton(QLatin1String("plus"), palette::kAccent, description_.addTitle, *row);
  row->addStretch();
  section_->addRow(row);
  connect(add, &QPushButton::clicked, this, &FolderList::addRequested);
}

SymbolButton* FolderList::addButton(QLatin1String symbol, const QColor& color, const QString& title,
                                    QBoxLayout& row) {
  auto* button = new SymbolButton(symbol, kButtonSymbol, title, this);
  button->setSymbol(symbol, color);
  row.addWidget(button);
  buttons_.push_back(button);
  return button;
}

}  // namespace zelnor::ui
