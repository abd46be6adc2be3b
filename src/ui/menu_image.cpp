#include "ui/menu_image.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

namespace orchidlamp {
namespace {

// Menu positions here are 0-based, as the menu bar counts them.
QMenu* MenuAt(QMenuBar* bar, int menuPosition) {
  const QList<QAction*> menus = bar->actions();
  if (menuPosition < 0 || menuPosition >= menus.size()) return nullptr;
  return menus[menuPosition]->menu();
}

QAction* ItemAt(QMenuBar* bar, int menuPosition, int itemPosition) {
  QMenu* menu = MenuAt(bar, menuPosition);
  if (!menu) return nullptr;
  const QList<QAction*> items = menu->actions();
  if (itemPosition < 0 || itemPosition >= items.size()) return nullptr;
  return items[itemPosition];
}

}  // namespace

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

void MenuImage::RadioCheck(QMenuBar* bar, int menuPosition, int itemPosition) {
  for (int j = 0; j <= 3; ++j) {
    QAction* item = ItemAt(bar, menuPosition, j);
    if (!item || item->isSeparator()) continue;
    item->setCheckable(true);
    item->setChecked(j == itemPosition);
  }
}

bool MenuImage::IsRadioChecked(QMenuBar* bar, int menuPosition, int itemPosition) {
  QAction* item = ItemAt(bar, menuPosition, itemPosition);
  return item && item->isCheckable() && item->isChecked();
}

int MenuImage::CheckedItem(QMenuBar* bar, int menuPosition) {
  QMenu* menu = MenuAt(bar, menuPosition);
  if (!menu) return -1;
  const QList<QAction*> items = menu->actions();
  for (qsizetype j = 0; j < items.size(); ++j)
    if (items[j]->isCheckable() && items[j]->isChecked()) return static_cast<int>(j);
  return -1;
}

}  // namespace orchidlamp
