#pragma once

// frmOptions: the two settings, shown as stored and stored on OK. A change takes
// effect at the next open, which the confirmation says.

#include <QDialog>
#include <QStringList>

class QComboBox;

namespace orchidlamp {

class UserPrompts;

class frmOptions final : public QDialog {
  Q_OBJECT
 public:
  frmOptions(UserPrompts& prompts, QWidget* parent = nullptr);

  static QStringList TimeZoneEntries();
  static QStringList DelimiterEntries();
  // Code pages iconv knows, for 8-bit texts in the export to another phone.
  static QStringList CharsetEntries();

  QComboBox* tzd() const { return tzd_; }
  QComboBox* exd() const { return exd_; }
  QComboBox* mcd() const { return mcd_; }

 public slots:
  void cmdOK_Click();
  void cmdCancel_Click();

 private:
  UserPrompts& prompts_;
  QComboBox* tzd_ = nullptr;
  QComboBox* exd_ = nullptr;
  QComboBox* mcd_ = nullptr;
};

}  // namespace orchidlamp
