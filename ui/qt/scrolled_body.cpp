#include "ui/qt/scrolled_body.h"

#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtWidgets/QScrollBar>
#include <algorithm>

namespace vok::qt {

ScrolledBody::ScrolledBody(QWidget& window)
    : QScrollArea(&window),
      splitter_(new QSplitter(Qt::Horizontal, this)),
      body_(new QWidget(splitter_)),
      beside_(new QWidget(splitter_)) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setWidgetResizable(true);
  splitter_->setChildrenCollapsible(false);
  splitter_->setStretchFactor(1, 1);
  beside_->hide();
  setWidget(splitter_);
  connect(splitter_, &QSplitter::splitterMoved, this, [this] {
    if (splitter_->orientation() == Qt::Horizontal) split_ = splitter_->saveState();
  });
}

void ScrolledBody::ShowBeside(bool shown) {
  if (shown == !beside_->isHidden()) return;
  beside_->setVisible(shown);
  updateGeometry();
  Arrange();
  // once all has its place
  QMetaObject::invokeMethod(this, &ScrolledBody::RestoreSplit, Qt::QueuedConnection);
}

void ScrolledBody::RestoreSplit() {
  const bool side_by_side = splitter_->orientation() == Qt::Horizontal && !beside_->isHidden();
  if (side_by_side && !split_.isEmpty()) splitter_->restoreState(split_);
}

void ScrolledBody::Reveal(QWidget& widget) {
  if (!isAncestorOf(&widget)) return;
  const QPointer<QWidget> wanted(&widget);
  QMetaObject::invokeMethod(
      this,
      [this, wanted] {
        if (wanted != nullptr) ScrollTo(*wanted);
      },
      Qt::QueuedConnection);
}

void ScrolledBody::ScrollTo(QWidget& widget) {
  const bool seen = widget.visibleRegion().boundingRect() == widget.rect();
  if (seen) return;
  if (beside_->isAncestorOf(&widget)) verticalScrollBar()->setValue(beside_->y());
  ensureWidgetVisible(&widget);
}

int ScrolledBody::WidthSideBySide() const {
  const int body = body_->minimumSizeHint().width();
  if (beside_->isHidden()) return body;
  return body + splitter_->handleWidth() + beside_->minimumSizeHint().width();
}

void ScrolledBody::Arrange() {
  const bool scrolls = sizeHint().height() > height();
  const int room = width() - (scrolls ? verticalScrollBar()->sizeHint().width() : 0);
  const auto wanted = room >= WidthSideBySide() ? Qt::Horizontal : Qt::Vertical;
  if (wanted == splitter_->orientation()) return;
  splitter_->setOrientation(wanted);
  RestoreSplit();
}

void ScrolledBody::resizeEvent(QResizeEvent* event) {
  Arrange();
  QScrollArea::resizeEvent(event);
}

/// What stands in it may have come to need other room.
bool ScrolledBody::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) Arrange();
  return QScrollArea::viewportEvent(event);
}

QSize ScrolledBody::sizeHint() const {
  const int body = body_->sizeHint().height();
  const int beside = beside_->isHidden() ? 0 : beside_->sizeHint().height();
  return {WidthSideBySide(), std::max(body, beside)};
}

QSize ScrolledBody::minimumSizeHint() const {
  constexpr int kLeastLines = 6;
  const int lines = kLeastLines * fontMetrics().lineSpacing();
  return sizeHint().boundedTo({4 * lines, lines});
}

}  // namespace vok::qt
