#pragma once

// Pictures beside menu items, kept by position: the key of an image is "KEY",
// the 1-based position of its top-level menu, then the 1-based position of the
// item in that menu (separators count). KEY111 is ambiguous (menu 1 item 11 or
// menu 11 item 1); the main menu never comes near ten items.

#include <QHash>
#include <QIcon>
#include <QString>

class QMenuBar;

namespace orchidlamp {

class MenuImage {
 public:
  static QString Key(int menuPosition, int itemPosition);

  void AddImage(const QIcon& picture, int itemPosition, int menuPosition);
  // Puts every stored picture on the item at its position; positions without a
  // picture, or pictures without an item, are passed over.
  void ApplyImages(QMenuBar* bar) const;

 private:
  QHash<QString, QIcon> images_;
};

}  // namespace orchidlamp
