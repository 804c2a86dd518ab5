#pragma once

#include <memory>
#include <span>

#include <QPixmap>

#include "search/SearchResult.h"

class QMimeData;
class QWidget;

namespace zelnor::ui {

/// The files as other programs take them: a list of URIs, made from the bytes of the paths.
std::unique_ptr<QMimeData> filesToDrop(std::span<const SearchResult> files);

/// Drags the files out of the program, as copies; `picture` goes with the pointer. Returns once
/// they are dropped or not.
void dragOut(QWidget& source, std::span<const SearchResult> files, const QPixmap& picture);

/// What goes with the pointer: `icon`, with the number of files on it where there are several.
QPixmap dragPicture(const QPixmap& icon, std::size_t count);

}  // namespace zelnor::ui
