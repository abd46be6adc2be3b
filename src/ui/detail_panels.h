#pragma once

// The record detail area: one frame per kind of record, laid over one another
// in the same place. At most one frame is visible; Show() hides the others.
// Frames, tab controls and boxes carry the layout's names as objectNames
// (SMSmessages, dir_text, ct34 ... ct51, atr0, bbkN1, hrtnet0 ... hrtnet21, ...).

#include <QWidget>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "core/kinds.h"
#include "records/decoded_records.h"
#include "records/service_book_panel.h"
#include "ui/service_book_tabs.h"

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
  QGroupBox* AddFrame(const QString& name, const QString& caption);
  void BuildSms();
  void BuildContacts();
  void BuildFieldsFrame(Kind kind, const QString& name, const QString& caption,
                        const std::vector<std::pair<int, QString>>& boxes, const std::vector<int>& multiLine);
  void BuildAutoText();
  void BuildBookmarks();
  void BuildCalendar();
  void BuildServiceBook();
  void ShowPhoto(const QString& path);

  std::array<QGroupBox*, kKindCount> frames_{};
  // Per kind, the boxes in the decoder's member order.
  std::array<std::vector<QWidget*>, kKindCount> boxes_{};
  ServiceBookBoxWidgets hrtnet_{};
  QLabel* photo_ = nullptr;
};

// Puts record text (8-bit, CR LF line breaks) into a QLineEdit or QPlainTextEdit.
void SetBoxText(QWidget* box, const std::string& text8bit);
QString BoxText(const QWidget* box);

}  // namespace orchidlamp
