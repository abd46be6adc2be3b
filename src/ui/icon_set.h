#pragma once

// The program's own small pictures: the tree's image list (imlSmallIcons, one
// icon per image key), the menu pictures pic1 ... pic11 and the splash picture.
// They are SVGs in the program's resources, rendered once per owner.

#include <QHash>
#include <QIcon>
#include <QPixmap>
#include <QString>

#include "core/image_key.h"

namespace orchidlamp {

class IconSet {
 public:
  IconSet();

  // Empty for ImageKey::None and for the tick states, which this list has no picture for.
  QIcon Small(ImageKey key) const;
  // By resource name: an image-list key ("sheet"), a menu picture ("pic3") or "splash".
  QIcon Named(const QString& name) const;
  QPixmap Picture(const QString& name, int size) const;

 private:
  mutable QHash<QString, QIcon> icons_;
};

}  // namespace orchidlamp
