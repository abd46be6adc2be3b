#pragma once

// frmSplash: the small information window that doubles as the about box. It has
// no buttons and no timer: any click or key on it, its frame or its picture
// closes it.

#include <QWidget>

namespace orchidlamp {

class IconSet;

inline constexpr const char* kProductName = "Orchidlamp";

class frmSplash final : public QWidget {
  Q_OBJECT
 public:
  frmSplash(const IconSet& icons, QWidget* parent = nullptr);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace orchidlamp
