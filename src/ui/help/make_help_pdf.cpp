// Build step: renders the program's help text (Markdown) into the PDF that
// ships beside the program. Usage: make_help_pdf INPUT.md OUTPUT.pdf
// Runs without a display (the offscreen platform is chosen when none is set).

#include <QFile>
#include <QGuiApplication>
#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>
#include <QTextDocument>
#include <cstdio>

int main(int argc, char* argv[]) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: make_help_pdf INPUT.md OUTPUT.pdf\n");
    return 2;
  }
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication app(argc, argv);

  QFile input(QString::fromLocal8Bit(argv[1]));
  if (!input.open(QIODevice::ReadOnly)) {
    std::fprintf(stderr, "make_help_pdf: cannot read %s\n", argv[1]);
    return 1;
  }
  QTextDocument document;
  document.setMarkdown(QString::fromUtf8(input.readAll()));
  QFont font = document.defaultFont();
  font.setPointSizeF(10.5);
  document.setDefaultFont(font);
  document.setDefaultStyleSheet(QStringLiteral("table { border-collapse: collapse; } td, th { padding: 3px; }"));

  QPdfWriter writer(QString::fromLocal8Bit(argv[2]));
  writer.setTitle(QStringLiteral("Orchidlamp Help"));
  writer.setCreator(QStringLiteral("Orchidlamp"));
  writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(8, 10, 8, 10),
                                   QPageLayout::Millimeter));
  document.print(&writer);
  return 0;
}
