#pragma once

#include <QColor>

/// The fixed colours of the interface (sRGB, opaque).
namespace zelnor::ui::palette {

inline QColor rgb(float red, float green, float blue) { return QColor::fromRgbF(red, green, blue); }

inline const QColor kPanel = rgb(0.97F, 0.97F, 0.98F);
inline const QColor kBar = rgb(0.93F, 0.93F, 0.95F);
inline const QColor kSidebar = rgb(0.94F, 0.94F, 0.96F);
inline const QColor kText = rgb(0.08F, 0.08F, 0.10F);
inline const QColor kSecondaryText = rgb(0.48F, 0.48F, 0.52F);
inline const QColor kFaintText = rgb(0.68F, 0.68F, 0.70F);
inline const QColor kAccent = rgb(0.00F, 0.48F, 1.00F);
inline const QColor kSelection = rgb(0.88F, 0.94F, 1.00F);
inline const QColor kHover = rgb(0.94F, 0.94F, 0.96F);
inline const QColor kChip = rgb(0.88F, 0.88F, 0.90F);
inline const QColor kOutline = rgb(0.80F, 0.80F, 0.83F);
inline const QColor kGreen = rgb(0.22F, 0.72F, 0.33F);
inline const QColor kOrange = rgb(0.95F, 0.52F, 0.12F);
inline const QColor kSwitchOff = rgb(0.82F, 0.82F, 0.84F);
inline const QColor kRed = rgb(0.90F, 0.22F, 0.22F);
inline const QColor kSeparator = rgb(0.88F, 0.88F, 0.90F);

}  // namespace zelnor::ui::palette
