#pragma once

// The export panel ExportToText on the main window: three scope options (ExOP0,
// ExOP1, ExOP2 in the frame Frame2) and the buttons Bexport, Cexport and
// Command2. Its state is the export core's ExportPanel; the widgets only show it.

#include <QGroupBox>
#include <array>

#include "export/export_panel.h"
#include "export/text_export.h"

class QPushButton;
class QRadioButton;

namespace orchidlamp {

class ExportFrame final : public QGroupBox {
  Q_OBJECT
 public:
  explicit ExportFrame(QWidget* parent = nullptr);

  ExportPanel& state() { return state_; }
  // Shows what the state holds: captions, which options are visible and checked,
  // and the panel itself.
  void Sync();

 signals:
  void exportRequested(ExportForm form);

 private:
  ExportPanel state_;
  std::array<QRadioButton*, kExportScopes> options_{};
};

}  // namespace orchidlamp
