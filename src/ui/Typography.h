#pragma once

#include <QFont>

/// The type sizes of the interface. Main thread, once there is an application.
namespace zelnor::ui::type {

/// Pixels at scale 1 and with fonts as desktops set them; larger for users who want larger ones.
enum Size : int {
  kHero = 44,      ///< the symbol of a page with nothing to list
  kTitle = 17,     ///< of a sheet that explains something
  kQuery = 15,     ///< what is searched for, and the first line of a page
  kHeadline = 13,  ///< titles of sheets and alerts
  kBody = 13,      ///< names of files
  kLabel = 12,     ///< what can be chosen
  kDetail = 11,    ///< what stands beside or below a name
  kCaption = 10,   ///< notes, headings of groups
};

/// How much larger than that the user wants to read. Desktops set fonts of 9 to 11 points; only
/// what is beyond is a wish.
double scale();
/// A length that holds text, grown as the text.
int scaled(int length);

QFont font(Size size, QFont::Weight weight = QFont::Normal);
QFont monospaced(Size size);

}  // namespace zelnor::ui::type
