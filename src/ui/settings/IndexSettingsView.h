#pragma once

#include <QScrollArea>

#include "indexer/IndexStatus.h"

namespace zelnor {
class IndexViewModel;
}

namespace zelnor::ui {

class IndexSettingsView final : public QScrollArea {
  Q_OBJECT

 public:
  IndexSettingsView(IndexViewModel&, QWidget* parent) : QScrollArea(parent) {}
  void setStatus(const IndexStatus&) {}
};

}  // namespace zelnor::ui
