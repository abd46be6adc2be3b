#include "ui/detail_panels.h"

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

QString Latin1(std::string_view text) {
  if (text.empty()) return QString();
  return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

std::size_t MemberOf(const RecordForm& form, std::string_view name) {
  for (std::size_t i = 0; i < form.members.size(); ++i)
    if (form.members[i].name == name) return i;
  return form.members.size();
}

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
  for (int k = 0; k < kKindCount; ++k) BuildFrame(SpecOf(static_cast<Kind>(k)));
  grid->setRowStretch(1, 1);
  HideAll();
}

void DetailPanels::BuildFrame(const KindSpec& kind) {
  const FrameLayout& frameLayout = *kind.form->frame;
  // A kind whose layout an earlier kind already built shares that frame and its boxes.
  for (int k = 0; k < static_cast<int>(kind.kind); ++k) {
    if (SpecOf(static_cast<Kind>(k)).form->frame != &frameLayout) continue;
    frames_[Index(kind.kind)] = frames_[static_cast<std::size_t>(k)];
    boxes_[Index(kind.kind)] = boxes_[static_cast<std::size_t>(k)];
    return;
  }
  auto* frame = new QGroupBox(Latin1(frameLayout.caption), this);
  frame->setObjectName(Latin1(frameLayout.objectName));
  static_cast<QGridLayout*>(layout())->addWidget(frame, 0, 0);
  frames_[Index(kind.kind)] = frame;
  boxes_[Index(kind.kind)].assign(kind.form->members.size(), nullptr);
  if (frameLayout.serviceBook) {
    BuildServiceBook(frame);
  } else if (!frameLayout.tabs.empty()) {
    auto* outer = new QVBoxLayout(frame);
    auto* tabs = new QTabWidget(frame);
    tabs->setObjectName(Latin1(frameLayout.tabsName));
    outer->addWidget(tabs);
    for (const FrameTab& tab : frameLayout.tabs) {
      auto* page = new QWidget(tabs);
      auto* form = new QFormLayout(page);
      AddBoxes(page, form, tab.boxes, kind);
      if (tab.photo) {
        photo_ = new QLabel(page);
        photo_->setObjectName(QStringLiteral("ContactPhoto"));
        photo_->setMinimumSize(96, 96);
        photo_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        form->addRow(QString(), photo_);
      }
      tabs->addTab(page, Latin1(tab.caption));
    }
  } else {
    AddBoxes(frame, new QFormLayout(frame), frameLayout.boxes, kind);
  }
}

void DetailPanels::AddBoxes(QWidget* parent, QFormLayout* form, std::span<const FrameBox> boxes,
                            const KindSpec& kind) {
  std::vector<QWidget*>& byMember = boxes_[Index(kind.kind)];
  // A box for a name that is no member of the kind is a fault of the layout table: at() throws.
  auto make = [&](const FrameBox& b) {
    QWidget* box = MakeBox(Latin1(b.objectName.empty() ? b.member : b.objectName), b.multiLine, parent);
    byMember.at(MemberOf(*kind.form, b.member)) = box;
    return box;
  };
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    QWidget* box = make(boxes[i]);
    const MemberSpec& member = kind.form->members[MemberOf(*kind.form, boxes[i].member)];
    const QString label = Latin1(boxes[i].label.value_or(member.caption));
    if (i + 1 == boxes.size() || !boxes[i + 1].sharesRow) {
      form->addRow(label, box);
      continue;
    }
    // Boxes that share a row sit side by side under the first one's label.
    auto* row = new QHBoxLayout;
    row->addWidget(box);
    while (i + 1 < boxes.size() && boxes[i + 1].sharesRow) row->addWidget(make(boxes[++i]));
    form->addRow(label, row);
  }
}

void DetailPanels::BuildServiceBook(QGroupBox* frame) {
  auto* outer = new QVBoxLayout(frame);
  outer->addWidget(BuildServiceBookTabs(frame, hrtnet_));
  for (std::size_t i = 0; i < hrtnet_.size(); ++i) {
    connect(hrtnet_[i], &QLineEdit::textEdited, this, [this, i](const QString& text) {
      emit serviceBookBoxEdited(static_cast<int>(i), text);
    });
  }
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
  const FrameLayout& layout = *SpecOf(kind).form->frame;
  if (layout.serviceBook) {
    for (std::size_t i = 0; i < kServiceBookBoxes; ++i) {
      hrtnet_[i]->setText(FromRecordText(hrtnet[i]));
      hrtnet_[i]->setCursorPosition(0);
    }
  } else {
    const std::vector<QWidget*>& boxes = boxes_[Index(kind)];
    for (std::size_t i = 0; i < boxes.size(); ++i)
      if (boxes[i]) SetBoxText(boxes[i], i < members.size() ? members[i].value : "");
    if (!layout.photoMember.empty()) {
      const std::size_t photo = MemberOf(*SpecOf(kind).form, layout.photoMember);
      ShowPhoto(photo < members.size() ? FromPath(members[photo].value) : QString());
    }
  }
  frames_[Index(kind)]->show();
}

}  // namespace orchidlamp
