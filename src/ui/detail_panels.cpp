#include "ui/detail_panels.h"

#include <algorithm>

#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QVBoxLayout>

#include "ui/display_text.h"
#include "ui/service_book_tabs.h"

namespace orchidlamp {
namespace {

QWidget* MakeBox(const QString& name, bool multiLine, QWidget* parent) {
  QWidget* box;
  if (multiLine) {
    auto* edit = new QPlainTextEdit(parent);
    edit->setReadOnly(true);
    edit->setMinimumHeight(90);
    box = edit;
  } else {
    auto* edit = new QLineEdit(parent);
    edit->setReadOnly(true);
    box = edit;
  }
  box->setObjectName(name);
  return box;
}

QString Display(const std::string& text8bit) {
  QString text = FromRecordText(text8bit);
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  return text;
}

std::size_t Index(Kind kind) { return static_cast<std::size_t>(kind); }

struct ContactBox {
  const char* label;
  bool multiLine;
};

// In the decoder's member order (Title ... PhotoFile).
constexpr std::array<ContactBox, 35> kContactBoxes = {{
    {"Title", false},          {"First Name", false},     {"Last Name", false},    {"Company", false},
    {"Job", false},            {"Email", false},          {"Work Phone 1", false}, {"Work Phone 2", false},
    {"Home Phone 1", false},   {"Home Phone 2", false},   {"Mobile", false},       {"Pager", false},
    {"Fax", false},            {"Other", false},          {"PIN", false},          {"Work Address 1", true},
    {"Work Address 2", true},  {"Work City", false},      {"Work State", false},   {"Work ZIP", false},
    {"Work Country", false},   {"Home Address 1", true},  {"Home Address 2", true}, {"Home City", false},
    {"Home State", false},     {"Home ZIP", false},       {"Home Country", false}, {"Birthday", false},
    {"Anniversary", false},    {"Category", false},       {"Web Page", false},     {"Field 99", false},
    {"Reserved", false},       {"Notes", true},           {"Photo", false},
}};

// Which boxes each tab of ctab holds.
struct ContactTab {
  const char* caption;
  std::vector<int> members;
};

}  // namespace

void SetBoxText(QWidget* box, const std::string& text8bit) {
  if (auto* line = qobject_cast<QLineEdit*>(box)) {
    QString text = Display(text8bit);
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    line->setText(text);
    line->setCursorPosition(0);
  } else if (auto* plain = qobject_cast<QPlainTextEdit*>(box)) {
    plain->setPlainText(Display(text8bit));
  }
}

QString BoxText(const QWidget* box) {
  if (auto* line = qobject_cast<const QLineEdit*>(box)) return line->text();
  if (auto* plain = qobject_cast<const QPlainTextEdit*>(box)) return plain->toPlainText();
  return {};
}

DetailPanels::DetailPanels(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("DetailArea"));
  // Every frame sits in the same cell: they overlay one another.
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  BuildAutoText();
  BuildSms();
  BuildBookmarks();
  BuildContacts();
  BuildFieldsFrame(Kind::Memos, QStringLiteral("Memo"), QStringLiteral("Memos"),
                   {{44, QStringLiteral("Title")}, {45, QString()}}, {45});
  BuildFieldsFrame(Kind::Tasks, QStringLiteral("Task"), QStringLiteral("Tasks"),
                   {{40, QStringLiteral("Task")},
                    {41, QStringLiteral("Status")},
                    {42, QStringLiteral("Priority")},
                    {43, QStringLiteral("Notes")}},
                   {43});
  BuildCalendar();
  BuildServiceBook();
  BuildFieldsFrame(Kind::PhoneCallLogs, QStringLiteral("pcallslog"), QStringLiteral("Phone Calls Log"),
                   {{46, QStringLiteral("Name")},
                    {47, QStringLiteral("Number")},
                    {48, QStringLiteral("Date")},
                    {49, QStringLiteral("Duration")},
                    {50, QStringLiteral("Direction")},
                    {51, QStringLiteral("Status")}},
                   {});
  grid->setRowStretch(1, 1);
  HideAll();
}

QGroupBox* DetailPanels::AddFrame(const QString& name, const QString& caption) {
  auto* frame = new QGroupBox(caption, this);
  frame->setObjectName(name);
  static_cast<QGridLayout*>(layout())->addWidget(frame, 0, 0);
  return frame;
}

void DetailPanels::BuildFieldsFrame(Kind kind, const QString& name, const QString& caption,
                                    const std::vector<std::pair<int, QString>>& boxes,
                                    const std::vector<int>& multiLine) {
  QGroupBox* frame = AddFrame(name, caption);
  auto* form = new QFormLayout(frame);
  for (const auto& [ct, label] : boxes) {
    const bool multi = std::find(multiLine.begin(), multiLine.end(), ct) != multiLine.end();
    QWidget* box = MakeBox(QStringLiteral("ct%1").arg(ct), multi, frame);
    form->addRow(label, box);
    boxes_[Index(kind)].push_back(box);
  }
  frames_[Index(kind)] = frame;
}

void DetailPanels::BuildSms() {
  QGroupBox* frame = AddFrame(QStringLiteral("SMSmessages"), QStringLiteral("SMS Messages"));
  auto* form = new QFormLayout(frame);
  const std::array<std::pair<const char*, const char*>, 6> rows = {{{"dir_text", "Direction"},
                                                                     {"folder_name", "Folder"},
                                                                     {"sent_date", "Sent on"},
                                                                     {"recv_date", "Recv. On"},
                                                                     {"tel_number", "Number"},
                                                                     {"msg_text", "Message"}}};
  for (const auto& [name, label] : rows) {
    QWidget* box = MakeBox(QString::fromLatin1(name), std::string_view(name) == "msg_text", frame);
    form->addRow(QString::fromLatin1(label), box);
    boxes_[Index(Kind::SmsMessages)].push_back(box);
  }
  frames_[Index(Kind::SmsMessages)] = frame;
}

void DetailPanels::BuildAutoText() {
  QGroupBox* frame = AddFrame(QStringLiteral("AutoTextm"), QStringLiteral("AutoText"));
  auto* form = new QFormLayout(frame);
  QWidget* replace = MakeBox(QStringLiteral("atr0"), false, frame);
  QWidget* with = MakeBox(QStringLiteral("atr1"), true, frame);
  form->addRow(QStringLiteral("Replace"), replace);
  form->addRow(QStringLiteral("With"), with);
  boxes_[Index(Kind::AutoText)] = {replace, with};
  frames_[Index(Kind::AutoText)] = frame;
}

void DetailPanels::BuildBookmarks() {
  QGroupBox* frame = AddFrame(QStringLiteral("BBookmarks"), QString());
  auto* form = new QFormLayout(frame);
  QWidget* name = MakeBox(QStringLiteral("bbkN1"), false, frame);
  QWidget* url = MakeBox(QStringLiteral("bbkN2"), false, frame);
  form->addRow(QString(), name);
  form->addRow(QString(), url);
  boxes_[Index(Kind::BrowserBookmarks)] = {name, url};
  frames_[Index(Kind::BrowserBookmarks)] = frame;
}

void DetailPanels::BuildCalendar() {
  QGroupBox* frame = AddFrame(QStringLiteral("Calendar"), QStringLiteral("Calendar"));
  auto* form = new QFormLayout(frame);
  std::vector<QWidget*> boxes;
  for (int ct = 34; ct <= 39; ++ct) boxes.push_back(MakeBox(QStringLiteral("ct%1").arg(ct), ct == 39, frame));
  form->addRow(QStringLiteral("Subject"), boxes[0]);
  form->addRow(QStringLiteral("Location"), boxes[1]);
  // Start and end share the "Start" row: the appointment's span reads left to right.
  auto* span = new QHBoxLayout;
  span->addWidget(boxes[2]);
  span->addWidget(boxes[3]);
  form->addRow(QStringLiteral("Start"), span);
  form->addRow(QStringLiteral("Duration"), boxes[4]);
  form->addRow(QStringLiteral("Notes"), boxes[5]);
  boxes_[Index(Kind::Calendar)] = boxes;
  boxes_[Index(Kind::CalendarAll)] = boxes;
  frames_[Index(Kind::Calendar)] = frames_[Index(Kind::CalendarAll)] = frame;
}

void DetailPanels::BuildContacts() {
  QGroupBox* frame = AddFrame(QStringLiteral("Contacts"), QStringLiteral("Contacts"));
  auto* outer = new QVBoxLayout(frame);
  auto* tabs = new QTabWidget(frame);
  tabs->setObjectName(QStringLiteral("ctab"));
  outer->addWidget(tabs);

  const MemberList names = DecodedContact{}.Members();
  std::vector<QWidget*> boxes(kContactBoxes.size(), nullptr);
  const std::vector<ContactTab> layout = {
      {"Name", {0, 1, 2, 3, 4, 5, 29, 30, 27, 28}},
      {"Phones", {6, 7, 8, 9, 10, 11, 12, 13, 14}},
      {"Work Address", {15, 16, 17, 18, 19, 20}},
      {"Home Address", {21, 22, 23, 24, 25, 26}},
      {"Notes", {33, 31, 32, 34}},
  };
  for (const ContactTab& tab : layout) {
    auto* page = new QWidget(tabs);
    auto* form = new QFormLayout(page);
    for (int m : tab.members) {
      const auto i = static_cast<std::size_t>(m);
      const QString name = QString::fromLatin1(names[i].name.data(), static_cast<qsizetype>(names[i].name.size()));
      boxes[i] = MakeBox(name, kContactBoxes[i].multiLine, page);
      form->addRow(QString::fromLatin1(kContactBoxes[i].label), boxes[i]);
    }
    if (std::string_view(tab.caption) == "Notes") {
      photo_ = new QLabel(page);
      photo_->setObjectName(QStringLiteral("ContactPhoto"));
      photo_->setMinimumSize(96, 96);
      photo_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
      form->addRow(QString(), photo_);
    }
    tabs->addTab(page, QString::fromLatin1(tab.caption));
  }
  boxes_[Index(Kind::AddressBook)] = boxes;
  boxes_[Index(Kind::AddressBookAll)] = boxes;
  frames_[Index(Kind::AddressBook)] = frames_[Index(Kind::AddressBookAll)] = frame;
}

void DetailPanels::BuildServiceBook() {
  QGroupBox* frame = AddFrame(QStringLiteral("Servicebook"), QStringLiteral("Service Book"));
  auto* outer = new QVBoxLayout(frame);
  outer->addWidget(BuildServiceBookTabs(frame, hrtnet_));
  for (std::size_t i = 0; i < hrtnet_.size(); ++i) {
    connect(hrtnet_[i], &QLineEdit::textEdited, this, [this, i](const QString& text) {
      emit serviceBookBoxEdited(static_cast<int>(i), text);
    });
  }
  frames_[Index(Kind::ServiceBook)] = frame;
}

void DetailPanels::HideAll() {
  for (QGroupBox* frame : frames_)
    if (frame) frame->hide();
}

QGroupBox* DetailPanels::Frame(Kind kind) const { return frames_[Index(kind)]; }

QGroupBox* DetailPanels::VisibleFrame() const {
  for (QGroupBox* frame : frames_)
    if (frame && !frame->isHidden()) return frame;
  return nullptr;
}

void DetailPanels::ShowPhoto(const QString& path) {
  QPixmap picture;
  if (!path.isEmpty()) picture.load(path);
  if (picture.isNull()) {
    photo_->clear();
    return;
  }
  photo_->setPixmap(picture.scaled(160, 160, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

void DetailPanels::Show(Kind kind, const MemberList& members,
                        const std::array<std::string, kServiceBookBoxes>& hrtnet) {
  HideAll();
  if (kind == Kind::ServiceBook) {
    for (std::size_t i = 0; i < kServiceBookBoxes; ++i) {
      hrtnet_[i]->setText(FromRecordText(hrtnet[i]));
      hrtnet_[i]->setCursorPosition(0);
    }
  } else {
    const std::vector<QWidget*>& boxes = boxes_[Index(kind)];
    for (std::size_t i = 0; i < boxes.size(); ++i) SetBoxText(boxes[i], i < members.size() ? members[i].value : "");
    if (kind == Kind::AddressBook || kind == Kind::AddressBookAll)
      ShowPhoto(members.size() == boxes.size() ? FromPath(members.back().value) : QString());
  }
  frames_[Index(kind)]->show();
}

}  // namespace orchidlamp
