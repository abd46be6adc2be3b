#include "ui/icon_set.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

// Resources of a static library are registered by name, outside any namespace.
static void RegisterIconResources() { Q_INIT_RESOURCE(icons); }

namespace orchidlamp {
namespace {

QString ResourcePath(const QString& name) { return QStringLiteral(":/orchidlamp/icons/") + name + QStringLiteral(".svg"); }

}  // namespace

IconSet::IconSet() { RegisterIconResources(); }

QPixmap IconSet::Picture(const QString& name, int size) const {
  QSvgRenderer renderer(ResourcePath(name));
  QPixmap pixmap(size, size);
  pixmap.fill(Qt::transparent);
  if (!renderer.isValid()) return pixmap;
  QPainter painter(&pixmap);
  renderer.render(&painter);
  return pixmap;
}

QIcon IconSet::Named(const QString& name) const {
  if (auto found = icons_.constFind(name); found != icons_.constEnd()) return *found;
  QIcon icon;
  if (QFile::exists(ResourcePath(name)))
    for (int size : {16, 24, 32, 48}) icon.addPixmap(Picture(name, size));
  icons_.insert(name, icon);
  return icon;
}

QIcon IconSet::Small(ImageKey key) const {
  if (key == ImageKey::None || key == ImageKey::TickNone || key == ImageKey::TickSome || key == ImageKey::TickAll)
    return {};
  const std::string_view text = ImageKeyText(key);
  return Named(QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())));
}

}  // namespace orchidlamp
