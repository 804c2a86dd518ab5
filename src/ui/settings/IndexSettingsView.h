#pragma once

#include <QPointer>
#include <QScrollArea>

#include "indexer/IndexStatus.h"
#include "indexer/IndexViewModel.h"

class QFileDialog;
class QVBoxLayout;

namespace zelnor::ui {

class FolderList;
class IndexStatusCard;
class RebuildSection;
class Switch;

/// The page of the settings about the index: how it is, which folders it holds, and a way to
/// rebuild it.
///
/// It shows what the view model holds and what it is told of the indexer.
class IndexSettingsView final : public QScrollArea {
  Q_OBJECT

 public:
  /// The view model outlives the page.
  explicit IndexSettingsView(IndexViewModel& index, QWidget* parent = nullptr);

  /// What the indexer is doing.
  void setStatus(const IndexStatus& status);

 private:
  using PathList = IndexViewModel::PathList;

  void layOut();
  void addOptions(QVBoxLayout& column);
  Switch* makeSwitch(const QString& title, bool IndexConfiguration::* field);
  void listenToIndex();
  void showConfiguration();
  void showState();
  void connectList(FolderList* folders, PathList list);
  void pickFolder(PathList list);

  IndexViewModel& index_;
  IndexStatus status_;
  QWidget* content_;
  IndexStatusCard* card_;
  FolderList* included_;
  FolderList* excluded_;
  RebuildSection* rebuild_;
  QPointer<QFileDialog> picker_;
};

}  // namespace zelnor::ui
