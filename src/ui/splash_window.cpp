#include "ui/splash_window.h"

#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "orchidlamp/version.h"
#include "ui/icon_set.h"

namespace orchidlamp {

frmSplash::frmSplash(const IconSet& icons, QWidget* parent)
    : QWidget(parent, Qt::Dialog | Qt::FramelessWindowHint) {
  setObjectName(QStringLiteral("frmSplash"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(QString::fromLatin1(kProductName));
  setFocusPolicy(Qt::StrongFocus);

  auto* outer = new QHBoxLayout(this);
  auto* picture = new QLabel(this);
  picture->setObjectName(QStringLiteral("Image1"));
  picture->setPixmap(icons.Picture(QStringLiteral("splash"), 128));
  outer->addWidget(picture);

  auto* frame = new QFrame(this);
  frame->setObjectName(QStringLiteral("Frame2"));
  frame->setFrameShape(QFrame::StyledPanel);
  auto* lines = new QVBoxLayout(frame);
  auto* product = new QLabel(QString::fromLatin1(kProductName), frame);
  product->setObjectName(QStringLiteral("lblProductName"));
  QFont big = product->font();
  big.setPointSizeF(big.pointSizeF() * 2.2);
  big.setBold(true);
  product->setFont(big);
  auto* version = new QLabel(QStringLiteral("Version ") + QString::fromLatin1(kShortVersion), frame);
  version->setObjectName(QStringLiteral("lblVersion"));
  auto* about = new QLabel(QStringLiteral("Reads and reworks BlackBerry handheld backups\n(IPD files and BBB desktop backups)."), frame);
  about->setObjectName(QStringLiteral("lblDescription"));
  auto* hint = new QLabel(QStringLiteral("Click or press any key to close."), frame);
  hint->setObjectName(QStringLiteral("lblHint"));
  hint->setEnabled(false);
  lines->addWidget(product);
  lines->addWidget(version);
  lines->addSpacing(8);
  lines->addWidget(about);
  lines->addStretch(1);
  lines->addWidget(hint);
  outer->addWidget(frame, 1);

  for (QWidget* w : {static_cast<QWidget*>(picture), static_cast<QWidget*>(frame), static_cast<QWidget*>(product),
                     static_cast<QWidget*>(version), static_cast<QWidget*>(about), static_cast<QWidget*>(hint)})
    w->installEventFilter(this);
}

bool frmSplash::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::KeyPress) {
    close();
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

void frmSplash::mousePressEvent(QMouseEvent*) { close(); }

void frmSplash::keyPressEvent(QKeyEvent*) { close(); }

}  // namespace orchidlamp
