#include "ui/bookmarks/AddBookmarkSheet.h"

#include <QComboBox>
#include <QGridLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "bookmarks/BookmarkViewModel.h"
#include "ui/DisplayText.h"
#include "ui/Palette.h"
#include "ui/TextField.h"
#include "ui/TextLabel.h"
#include "ui/Typography.h"

namespace zelnor::ui {

namespace {

constexpr int kFormWidth = 340;
constexpr int kAroundForm = 20;  // of the sheet
const auto kTitle = QStringLiteral(u"保存书签");

/// Rows of a label and what belongs to it, in a box.
class Form final : public QWidget {
 public:
  explicit Form(QWidget* parent) : QWidget(parent), rows_(new QGridLayout(this)) {
    rows_->setContentsMargins(1, 1, 1, 1);
    rows_->setSpacing(0);
    for (const int gap : {0, 2, 4}) rows_->setColumnMinimumWidth(gap, /*minSize=*/12);
    rows_->setColumnStretch(/*column=*/3, /*stretch=*/1);
  }

  void addRow(const QString& title, QWidget* control) {
    constexpr int kHeight = 40;
    int row = rows_->rowCount();
    if (row > 1) rows_->addWidget(makeSeparator(Qt::Horizontal, this), row++, 0, 1, -1);
    rows_->setRowMinimumHeight(row, type::scaled(kHeight));
    auto* label = makeText(title, type::kBody, palette::kText, this);
    label->setBuddy(control);  // a picker reads as what it is set to, and what it is for
    rows_->addWidget(label, row, 1);
    rows_->addWidget(control, row, 3);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    constexpr double kRadius = 8;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette::kSeparator);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
  }

 private:
  QGridLayout* rows_;
};

}  // namespace

AddBookmarkSheet::AddBookmarkSheet(BookmarkViewModel& bookmarks, QWidget& panel)
    : Sheet(kTitle, panel),
      bookmarks_(bookmarks),
      name_(makeTextField(QStringLiteral(u"书签名称"), {}, card())),
      category_(new QComboBox(card())),
      query_(new ElidedLabel(type::kBody, palette::kSecondaryText, card(), Qt::ElideRight)) {
  parts().addWidget(makeText(kTitle, type::kHeadline, palette::kText, card(), QFont::DemiBold));
  parts().addWidget(makeForm());
  addButton(QStringLiteral(u"取消"), Role::cancel, {});
  addButton(QStringLiteral(u"保存"), Role::prominent, [this] { save(); });
  setFirstFocus(name_);
  listCategories();
  showQuery();
  connect(&bookmarks, &BookmarkViewModel::categoriesChanged, this,
          &AddBookmarkSheet::listCategories);
  connect(&bookmarks, &BookmarkViewModel::pendingBookmarkQueryChanged, this,
          &AddBookmarkSheet::showQuery);
}

QWidget* AddBookmarkSheet::makeForm() {
  const auto category = QStringLiteral(u"分类");
  const auto query = QStringLiteral(u"搜索条件");
  category_->setFont(type::font(type::kBody));
  category_->setAccessibleName(category);
  category_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  category_->setMinimumHeight(name_->minimumHeight());
  query_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  auto* form = new Form(card());
  form->addRow(name_->accessibleName(), name_);
  form->addRow(category, category_);
  form->addRow(query, query_);
  form->setFixedWidth(type::scaled(kFormWidth) - 2 * kAroundForm);
  return form;
}

/// The choice stays, as long as there is that category.
void AddBookmarkSheet::listCategories() {
  const auto chosen = category_->currentData().toString();
  category_->clear();
  for (const auto& category : bookmarks_.categories()) {
    category_->addItem(displayText(category.name), QString::fromStdString(category.id.text()));
  }
  const int row = category_->findData(chosen);
  const auto none = QString::fromStdString(Uuid().text());
  category_->setCurrentIndex(row >= 0 ? row : category_->findData(none));
}

void AddBookmarkSheet::showQuery() {
  const auto& query = bookmarks_.pendingBookmarkQuery();
  query_->setText(query.empty() ? QStringLiteral(u"（无关键词）") : displayText(query));
}

void AddBookmarkSheet::save() {
  const auto category = Uuid::parse(category_->currentData().toString().toStdString());
  bookmarks_.addBookmark(name_->text().toStdString(), bookmarks_.pendingBookmarkQuery(),
                         bookmarks_.pendingBookmarkFilter(), category.value_or(Uuid()));
}

}  // namespace zelnor::ui
