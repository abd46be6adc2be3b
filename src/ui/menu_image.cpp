#include "ui/menu_image.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

namespace orchidlamp {

QString MenuImage::Key(int menuPosition, int itemPosition) {
  return QStringLiteral("KEY%1%2").arg(menuPosition).arg(itemPosition);
}

void MenuImage::AddImage(const QIcon& picture, int itemPosition, int menuPosition) {
  images_.insert(Key(menuPosition, itemPosition), picture);
}

void MenuImage::ApplyImages(QMenuBar* bar) const {
  const QList<QAction*> menus = bar->actions();
  for (qsizetype i = 0; i < menus.size(); ++i) {
    QMenu* menu = menus[i]->menu();
    if (!menu) continue;
    const QList<QAction*> items = menu->actions();
    for (qsizetype j = 0; j < items.size(); ++j) {
      const auto found = images_.constFind(Key(static_cast<int>(i + 1), static_cast<int>(j + 1)));
      if (found == images_.constEnd() || items[j]->isSeparator()) continue;
      items[j]->setIcon(*found);
      items[j]->setIconVisibleInMenu(true);
    }
  }
}

}  // namespace orchidlamp
