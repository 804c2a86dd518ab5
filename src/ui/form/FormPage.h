#pragma once

class QScrollArea;
class QWidget;

namespace zelnor::ui {

/// Makes `area` scroll down a page of sections, one below the other, with even margins. Answers the
/// page, whose layout is a QVBoxLayout.
QWidget* makeFormPage(QScrollArea& area);

}  // namespace zelnor::ui
