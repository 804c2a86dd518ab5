#include "ui/list/RowMenu.h"

#include "ui/Menu.h"

namespace zelnor::ui {

Menu* makeRowMenu(const RowMenuActions& actions, QWidget* parent) {
  auto* menu = new Menu(parent);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->add(QLatin1String("doc"), QStringLiteral(u"打开"), actions.open);
  menu->add(QLatin1String("folder"), QStringLiteral(u"在 Finder 中显示"), actions.reveal);
  menu->add(QLatin1String("eye"), QStringLiteral(u"快速预览"), actions.preview);
  menu->addSeparator();
  menu->add(QLatin1String("doc.on.doc"), QStringLiteral(u"复制文件"), actions.copyFile);
  menu->add(QLatin1String("link"), QStringLiteral(u"复制路径"), actions.copyPath);
  menu->addSeparator();
  menu->add(QLatin1String("pencil"), QStringLiteral(u"重命名"), actions.rename);
  menu->addSeparator();
  menu->addDestructive(QLatin1String("trash"), QStringLiteral(u"移到废纸篓"), actions.moveToTrash);
  return menu;
}

}  // namespace zelnor::ui
