#include "ui/form/FormPage.h"

#include <QScrollArea>
#include <QVBoxLayout>

namespace zelnor::ui {

namespace {
constexpr int kSides = 24;
constexpr int kAbove = 18;
constexpr int kBetween = 12;
}  // namespace

QWidget* makeFormPage(QScrollArea& area) {
  area.setFrameShape(QFrame::NoFrame);
  area.setWidgetResizable(true);
  area.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area.setFocusPolicy(Qt::NoFocus);
  auto* page = new QWidget;
  auto* sections = new QVBoxLayout(page);
  sections->setContentsMargins(kSides, kAbove, kSides, kAbove);
  sections->setSpacing(kBetween);
  area.setWidget(page);
  return page;
}

}  // namespace zelnor::ui
