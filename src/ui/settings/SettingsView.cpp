#include "ui/settings/SettingsView.h"

#include <QKeyEvent>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "ui/settings/BookmarkSettingsView.h"
#include "ui/settings/IndexSettingsView.h"
#include "ui/settings/SettingsTabs.h"

namespace zelnor::ui {

SettingsView::SettingsView(const SettingsServices& services, QWidget* parent)
    : QWidget(parent),
      tabs_(new SettingsTabs(this)),
      pages_(new QStackedWidget(this)),
      index_(new IndexSettingsView(services.index, pages_)) {
  setWindowTitle(QStringLiteral(u"Zelnor 偏好设置"));
  setMinimumSize(kSmallest);
  resize(kSize);
  auto* general = new GeneralSettingsView(services.general, pages_);
  connect(general, &GeneralSettingsView::hotkeyConfigChanged, this,
          &SettingsView::hotkeyConfigChanged);
  connect(general, &GeneralSettingsView::isRecordingChanged, this,
          &SettingsView::isRecordingChanged);

  const auto add = [this](const char* symbol, const QString& title, QWidget* page) {
    tabs_->addTab(QLatin1String(symbol), title);
    pages_->addWidget(page);
  };
  add("gear", QStringLiteral(u"通用"), general);
  add("magnifyingglass", QStringLiteral(u"索引"), index_);
  add("bookmark", QStringLiteral(u"书签"),
      new BookmarkSettingsView(services.bookmarks, *this, pages_));
  tabs_->choose(0);
  connect(tabs_, &SettingsTabs::chosen, pages_, &QStackedWidget::setCurrentIndex);

  auto* parts = new QVBoxLayout(this);
  parts->setContentsMargins(0, 0, 0, 0);
  parts->setSpacing(0);
  parts->addWidget(tabs_);
  parts->addWidget(pages_, /*stretch=*/1);
}

void SettingsView::setStatus(const IndexStatus& status) { index_->setStatus(status); }

void SettingsView::keyPressEvent(QKeyEvent* event) {
  const bool closes = event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close);
  if (closes) {
    window()->close();
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace zelnor::ui
