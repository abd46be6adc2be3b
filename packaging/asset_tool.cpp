// Build-time helper that renders the program's icon for the icon theme:
//   orchidlamp-assets png SVG SIZE OUT.png
// It runs during the build on machines without a display, so the caller sets
// QT_QPA_PLATFORM=offscreen. Exit 1 with a message when a file cannot be read or written.

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>

namespace {

int Fail(const QString& text) {
  std::fprintf(stderr, "orchidlamp-assets: %s\n", qPrintable(text));
  return 1;
}

int RenderPng(const QString& svg, int size, const QString& out) {
  QSvgRenderer renderer(svg);
  if (!renderer.isValid()) return Fail(QStringLiteral("cannot read %1").arg(svg));
  if (size < 8 || size > 1024) return Fail(QStringLiteral("icon size %1 is out of range").arg(size));
  QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  renderer.render(&painter);
  painter.end();
  if (!image.save(out, "PNG")) return Fail(QStringLiteral("cannot write %1").arg(out));
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  // The offscreen platform warns about the missing session folders of a build machine.
  qputenv("QT_LOGGING_RULES", "default.warning=false;qt.qpa.*.warning=false");
  QGuiApplication app(argc, argv);
  const QStringList args = QGuiApplication::arguments();
  if (args.size() == 5 && args[1] == QStringLiteral("png")) {
    bool ok = false;
    const int size = args[3].toInt(&ok);
    if (!ok) return Fail(QStringLiteral("icon size '%1' is no number").arg(args[3]));
    return RenderPng(args[2], size, args[4]);
  }
  return Fail(QStringLiteral("usage: orchidlamp-assets png SVG SIZE OUT.png"));
}
