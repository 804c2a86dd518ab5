#pragma once

#include <string>
#include <vector>

#include <QLatin1String>

#include "platform/TrayItem.h"

namespace zelnor::ui {

/// The symbol in the sizes that bars have, in a grey that can be read on light and dark.
std::vector<platform::TrayItem::Picture> trayPictures(QLatin1String symbol);

/// The symbol in the same grey, for an entry of a menu that another program draws.
std::string menuPicture(QLatin1String symbol);

}  // namespace zelnor::ui
