// Build-time helper for the installed files that are made, not written by hand:
//   orchidlamp-assets png SVG SIZE OUT.png   renders the program's icon at SIZE x SIZE
//   orchidlamp-assets pdf GUIDE.md OUT.pdf   typesets the help guide as a PDF
// It runs during the build on machines without a display, so the caller sets
// QT_QPA_PLATFORM=offscreen. Exit 1 with a message when a file cannot be read or written.

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgRenderer>
#include <QTextDocument>
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

int TypesetPdf(const QString& guide, const QString& out) {
  QFile in(guide);
  if (!in.open(QIODevice::ReadOnly)) return Fail(QStringLiteral("cannot read %1").arg(guide));
  QTextDocument document;
  document.setDefaultFont(QFont(QStringLiteral("DejaVu Sans"), 10));
  document.setMarkdown(QString::fromUtf8(in.readAll()));

  QPdfWriter pdf(out);
  pdf.setTitle(QStringLiteral("Orchidlamp Help"));
  pdf.setCreator(QStringLiteral("Orchidlamp"));
  pdf.setPageSize(QPageSize(QPageSize::A4));
  pdf.setPageMargins(QMarginsF(20, 20, 20, 20), QPageLayout::Millimeter);
  // QTextDocument::print paginates and numbers the pages; it needs a layout
  // in the writer's resolution, which it sets up itself.
  document.print(&pdf);
  QFile written(out);
  if (!written.exists() || written.size() == 0) return Fail(QStringLiteral("cannot write %1").arg(out));
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  QGuiApplication app(argc, argv);
  const QStringList args = QGuiApplication::arguments();
  if (args.size() == 5 && args[1] == QStringLiteral("png")) {
    bool ok = false;
    const int size = args[3].toInt(&ok);
    if (!ok) return Fail(QStringLiteral("icon size '%1' is no number").arg(args[3]));
    return RenderPng(args[2], size, args[4]);
  }
  if (args.size() == 4 && args[1] == QStringLiteral("pdf")) return TypesetPdf(args[2], args[3]);
  return Fail(QStringLiteral("usage: orchidlamp-assets png SVG SIZE OUT.png | pdf GUIDE.md OUT.pdf"));
}
