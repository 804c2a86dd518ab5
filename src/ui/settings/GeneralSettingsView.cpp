#include "ui/settings/GeneralSettingsView.h"

#include <utility>

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "shell/LaunchAtLoginService.h"
#include "shell/Preferences.h"
#include "ui/Palette.h"
#include "ui/TextLabel.h"
#include "ui/form/FormButton.h"
#include "ui/form/FormPage.h"
#include "ui/form/FormSection.h"
#include "ui/form/Switch.h"
#include "ui/settings/HotkeyRecorderView.h"

namespace zelnor::ui {

namespace {

/// A value that can only be read, and copied.
QLabel* makeValue(const QString& text, type::Size size, QWidget* parent) {
  auto* label = makeText(text, size, palette::kSecondaryText, parent);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

}  // namespace

GeneralSettingsView::GeneralSettingsView(GeneralSettings settings, QWidget* parent)
    : QScrollArea(parent), settings_(std::move(settings)), page_(makeFormPage(*this)) {
  for (auto* section :
       {makeStartSection(), makeHotkeySection(), makeWindowSection(), makeAboutSection()}) {
    page_->layout()->addWidget(section);
  }
  static_cast<QVBoxLayout*>(page_->layout())->addStretch();
}

FormSection* GeneralSettingsView::makeStartSection() {
  const auto title = QStringLiteral(u"开机自动启动");
  auto* section = new FormSection(QStringLiteral(u"启动"), page_);
  auto* isOn = new Switch(title, section);
  auto* service = &settings_.launchService;
  isOn->setChecked(service->isEnabled());
  connect(isOn, &QPushButton::clicked, service, &LaunchAtLoginService::setEnabled);
  connect(service, &LaunchAtLoginService::looked, isOn, &QPushButton::setChecked);
  section->addRow(title, isOn);
  return section;
}

FormSection* GeneralSettingsView::makeHotkeySection() {
  auto* section = new FormSection(QStringLiteral(u"快捷键"), page_);
  recorder_ = new HotkeyRecorderView(settings_.preferences.hotkey(), section);
  auto* reset = new FormButton(QStringLiteral(u"恢复默认"), type::kCaption, section);
  connect(recorder_, &HotkeyRecorderView::recorded, this, &GeneralSettingsView::setHotkey);
  connect(recorder_, &HotkeyRecorderView::isRecordingChanged, this,
          &GeneralSettingsView::isRecordingChanged);
  connect(reset, &QPushButton::clicked, this, [this] { setHotkey({}); });

  auto* controls = new QWidget(section);
  auto* row = new QHBoxLayout(controls);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(10);
  row->addWidget(recorder_);
  row->addWidget(reset);
  section->addRow(QStringLiteral(u"全局唤起快捷键"), controls);
  auto* note =
      makeText(QStringLiteral(u"点击快捷键框后按下新的按键组合，至少需要一个修饰键（⌘⌥⌃⇧）"),
               type::kCaption, palette::kSecondaryText, section);
  note->setWordWrap(true);
  section->addRow(note);
  return section;
}

void GeneralSettingsView::setHotkey(const platform::HotkeyConfiguration& config) {
  recorder_->setCurrentConfig(config);
  settings_.preferences.setHotkey(config);
  Q_EMIT hotkeyConfigChanged(config);
}

FormSection* GeneralSettingsView::makeWindowSection() {
  const auto title = QStringLiteral(u"失去焦点时自动关闭窗口");
  auto* section = new FormSection(QStringLiteral(u"窗口"), page_);
  auto* isOn = new Switch(title, section);
  auto* preferences = &settings_.preferences;
  isOn->setChecked(preferences->autoCloseOnFocusLoss());
  connect(isOn, &QPushButton::clicked, preferences, &Preferences::setAutoCloseOnFocusLoss);
  section->addRow(title, isOn);
  return section;
}

FormSection* GeneralSettingsView::makeAboutSection() {
  auto* section = new FormSection(QStringLiteral(u"关于"), page_);
  section->addRow(QStringLiteral(u"版本"), makeValue(settings_.version, type::kBody, section));
  section->addRow(QStringLiteral(u"数据存储"),
                  makeValue(settings_.dataFolder, type::kCaption, section));
  return section;
}

}  // namespace zelnor::ui
