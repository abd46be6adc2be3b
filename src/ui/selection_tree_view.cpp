#include "ui/selection_tree_view.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>

#include "editing/selection_tree.h"
#include "ui/background_work.h"
#include "ui/tree_model.h"

namespace orchidlamp {
namespace {

// A check box drawn in the window's own colours, so the pictures need no files.
QIcon TickPicture(int state) {
  QIcon icon;
  for (int size : {16, 24, 32}) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal unit = size / 16.0;
    const QRectF box(2 * unit, 2 * unit, 12 * unit, 12 * unit);
    painter.setPen(QPen(QColor(0x44, 0x55, 0x66), unit));
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(box, 1.5 * unit, 1.5 * unit);
    if (state == 1) {
      painter.setPen(Qt::NoPen);
      painter.setBrush(QColor(0x7a, 0x9c, 0xc6));
      painter.drawRect(box.adjusted(3 * unit, 3 * unit, -3 * unit, -3 * unit));
    } else if (state == 2) {
      painter.setPen(QPen(QColor(0x1d, 0x6b, 0x2c), 2 * unit, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
      painter.drawPolyline(QPolygonF({QPointF(4.5 * unit, 8 * unit), QPointF(7 * unit, 10.5 * unit),
                                      QPointF(11.5 * unit, 5 * unit)}));
    }
    painter.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

}  // namespace

TickImages::TickImages() : none_(TickPicture(0)), some_(TickPicture(1)), all_(TickPicture(2)) {}

QIcon TickImages::Image(ImageKey key) const {
  switch (key) {
    case ImageKey::TickNone: return none_;
    case ImageKey::TickSome: return some_;
    case ImageKey::TickAll: return all_;
    default: return {};
  }
}

SelectionTreeView::SelectionTreeView(const QString& name, QWidget* parent) : QTreeView(parent) {
  setObjectName(name);
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setIconSize(QSize(16, 16));
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setExpandsOnDoubleClick(false);
  QFont font(QStringLiteral("Arial Unicode MS"));
  font.setPointSizeF(this->font().pointSizeF());
  setFont(font);
  model_ = new TreeModel(empty_, [this](ImageKey key) { return images_.Image(key); }, this);
  setModel(model_);
  connect(this, &QAbstractItemView::clicked, this, &SelectionTreeView::ClickedAt);
}

void SelectionTreeView::SetTree(DatabaseTree* tree) {
  tree_ = tree;
  TreeModel* old = model_;
  model_ = new TreeModel(tree ? *tree : empty_, [this](ImageKey key) { return images_.Image(key); }, this);
  setModel(model_);
  delete old;
  expandAll();
}

void SelectionTreeView::Toggle(NodeId node) {
  if (!tree_ || node == kNoNode) return;
  ToggleNodeCheck(*tree_, node);
  model_->ImagesChanged();
}

QRect SelectionTreeView::ImageRect(const QModelIndex& index) const {
  const QRect row = visualRect(index);
  // The picture sits at the start of the item with the style's small margin.
  return QRect(row.left(), row.top(), iconSize().width() + 6, row.height());
}

void SelectionTreeView::mousePressEvent(QMouseEvent* event) {
  pressedAt_ = event->position().toPoint();
  QTreeView::mousePressEvent(event);
}

void SelectionTreeView::ClickedAt(const QModelIndex& index) {
  const QModelIndex under = indexAt(pressedAt_);
  if (!under.isValid() || under != index) return;
  if (!ImageRect(under).contains(pressedAt_)) return;
  Toggle(model_->NodeOf(under));
}

void SelectionTreeView::keyPressEvent(QKeyEvent* event) {
  if (event->text().isEmpty()) {
    QTreeView::keyPressEvent(event);  // arrows, page keys: no character, not swallowed
    return;
  }
  if (event->key() == Qt::Key_Space) Toggle(model_->NodeOf(currentIndex()));
  event->accept();
}

void CopyIntoView(BackgroundWork& work, const DatabaseTree& source, DatabaseTree& into, SelectionTreeView& view,
                  std::function<void()> done) {
  work.Start<DatabaseTree>([&source](Progress&) { return LoadSelectionTree(source); },
                           [&into, &view, done = std::move(done)](DatabaseTree tree) {
                             into = std::move(tree);
                             view.SetTree(&into);
                             done();
                           });
}

}  // namespace orchidlamp
