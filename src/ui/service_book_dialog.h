#pragma once

// EditSB: the service-book editor, a modeless window over the main window. It
// is opened (by mEdit) on the selected service-book record with the panel's 22
// values in its boxes hrtnet0 ... hrtnet21; Save writes the rebuilt record
// alone, SaveAll the record's whole database with the rebuilt record in place,
// each as a new IPD beside the open backup.
//
// SaveAll takes the database of the main tree's selection at the moment it is
// pressed, which may by then differ from the edited record's; the edited record
// is the one the editor was opened for.

#include <QWidget>
#include <array>
#include <optional>

#include "editing/service_book_editor.h"
#include "ui/service_book_tabs.h"

class QLabel;
class QLineEdit;

namespace orchidlamp {

class UserPrompts;
class Workspace;

class EditSBForm final : public QWidget {
  Q_OBJECT
 public:
  EditSBForm(const Workspace& ws, UserPrompts& prompts, QWidget* parent = nullptr);

  // Takes the opened editor: its heading and values are shown.
  void Load(EditSB editor);

  QLabel* heading() const { return heading_; }
  QLineEdit* Box(std::size_t index) const { return hrtnet_[index]; }

 public slots:
  void Save_Click();
  void SaveAll_Click();

 private:
  void Run(bool all);

  const Workspace& ws_;
  UserPrompts& prompts_;
  std::optional<EditSB> editor_;
  QLabel* heading_ = nullptr;
  ServiceBookBoxWidgets hrtnet_{};
};

}  // namespace orchidlamp
