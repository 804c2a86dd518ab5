#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/FileOpener.h"

namespace zelnor::platform {

/// The program's place in the desktop's bar, drawn with its menu by the bar. Main thread only.
class TrayItem {
 public:
  /// A square picture: 32 bits a pixel, alpha, red, green, blue, row by row from the top.
  struct Picture {
    std::int32_t side = 0;
    std::string pixels;
  };

  struct MenuEntry {
    std::string title;                  ///< UTF-8, shown as it is; empty for a separator
    std::string png;                    ///< its picture, as a file; empty if it has none
    std::vector<std::string> shortcut;  ///< such as "Control", "Q"; empty if it has none
  };

  struct Description {
    std::string id;
    std::string title;
    std::string toolTip;
    std::string iconName;  ///< preferred where the desktop's icon folders have it
    std::vector<Picture> pictures;
    std::vector<MenuEntry> menu;
  };

  struct Events {
    /// An entry of the menu was chosen, by its index.
    std::function<void(std::size_t entry, Activation)> chosen;
    /// A bar that does not open the menu itself asks for it at this point of the screen. Answers
    /// false if that is not possible, so that the bar may yet do so.
    std::function<bool(int x, int y)> menuRequested;
    /// Whether a bar shows the item from now on. Comes once soon after `show`, then as it changes;
    /// not while the program that knows the bars does not answer, which others had better not ask
    /// either.
    std::function<void(bool isShown)> shownChanged;
  };

  virtual ~TrayItem() = default;

  /// Puts the item into every bar that is there or comes, for as long as this object lives. Once.
  virtual void show(Description description, Events events) = 0;
};

}  // namespace zelnor::platform
