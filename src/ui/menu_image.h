#pragma once

// Pictures beside menu items, kept by position: the key of an image is "KEY",
// the 1-based position of its top-level menu, then the 1-based position of the
// item in that menu (separators count). KEY111 is ambiguous (menu 1 item 11 or
// menu 11 item 1); the main menu never comes near ten items.
// Also the radio-style check marks over the first four items of a menu.

#include <QHash>
#include <QIcon>
#include <QString>

class QMenuBar;
class QMenu;

namespace orchidlamp {

class MenuImage {
 public:
  static QString Key(int menuPosition, int itemPosition);

  void AddImage(const QIcon& picture, int itemPosition, int menuPosition);
  // Puts every stored picture on the item at its position; positions without a
  // picture, or pictures without an item, are passed over.
  void ApplyImages(QMenuBar* bar) const;

  // Checks the item (0-based position) and clears items 0 ... 3 otherwise.
  static void RadioCheck(QMenuBar* bar, int menuPosition, int itemPosition);
  static bool IsRadioChecked(QMenuBar* bar, int menuPosition, int itemPosition);
  // The first checked item's 0-based position, or -1.
  static int CheckedItem(QMenuBar* bar, int menuPosition);

 private:
  QHash<QString, QIcon> images_;
};

}  // namespace orchidlamp
