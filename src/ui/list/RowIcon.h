#pragma once

class QPainter;
class QRect;

namespace zelnor {
class FileIcons;
struct FileRecord;
}  // namespace zelnor

namespace zelnor::ui {

/// Draws the picture of a file into the middle of `box`; while it is not known, or with no `icons`
/// at all, a square in the colour of its kind with a symbol on it.
void paintRowIcon(QPainter& painter, const QRect& box, const FileRecord& record, FileIcons* icons);

}  // namespace zelnor::ui
