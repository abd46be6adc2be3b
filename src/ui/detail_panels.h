#pragma once

// The record detail area: one frame per kind of record, laid over one another
// in the same place. At most one frame is visible; Show() hides the others.
// Frames, tab controls and boxes carry the layout's names as objectNames
// (SMSmessages, dir_text, ct34 ... ct51, atr0, bbkN1, hrtnet0 ... hrtnet21, ...).

#include <QWidget>
#include <array>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/kinds.h"
#include "records/record_kinds.h"
#include "records/service_book_panel.h"
#include "ui/service_book_tabs.h"

class QFormLayout;
class QGroupBox;
class QLabel;
class QLineEdit;

namespace orchidlamp {

class DetailPanels final : public QWidget {
  Q_OBJECT
 public:
  explicit DetailPanels(QWidget* parent = nullptr);

  void HideAll();
  // Fills the frame of `kind` from the decoder's members, in their order, and
  // makes it the one visible frame. The service book's frame takes `hrtnet`.
  void Show(Kind kind, const MemberList& members, const std::array<std::string, kServiceBookBoxes>& hrtnet);

  QGroupBox* Frame(Kind kind) const;
  // The visible frame, or null.
  QGroupBox* VisibleFrame() const;

 signals:
  // The user typed into a service-book box; the editor starts from these texts.
  void serviceBookBoxEdited(int box, const QString& text);

 private:
  // The frame of a kind's layout; kinds sharing a layout share the frame.
  void BuildFrame(const KindSpec& kind);
  void AddBoxes(QWidget* parent, QFormLayout* form, std::span<const FrameBox> boxes, const KindSpec& kind);
  void BuildServiceBook(QGroupBox* frame);
  void ShowPhoto(const QString& path);

  std::array<QGroupBox*, kKindCount> frames_{};
  // Per kind, the box of each member, in member order.
  std::array<std::vector<QWidget*>, kKindCount> boxes_{};
  ServiceBookBoxWidgets hrtnet_{};
  QLabel* photo_ = nullptr;
};

// Puts record text (8-bit, CR LF line breaks) into a QLineEdit or QPlainTextEdit.
void SetBoxText(QWidget* box, const std::string& text8bit);
QString BoxText(const QWidget* box);

}  // namespace orchidlamp
