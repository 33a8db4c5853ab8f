#include "ui/qt/date_edit.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QScreen>
#include <QtWidgets/QCalendarWidget>
#include <algorithm>
#include <utility>

namespace vok::qt {
namespace {

/// Below the field, on its screen.
QPoint PlaceBelow(const QWidget& field, const QSize& size) {
  const QRect room = field.screen()->availableGeometry();
  const QPoint below = field.mapToGlobal(field.rect().bottomLeft());
  return {std::max(room.left(), std::min(below.x(), room.right() - size.width())),
          std::max(room.top(), std::min(below.y(), room.bottom() - size.height()))};
}

}  // namespace

DateEdit::DateEdit(QWidget& parent, const DateTexts& dates,
                   std::function<void(const QString&)> picked)
    : Sized<QLineEdit>(&parent), dates_(dates), picked_(std::move(picked)) {}

void DateEdit::keyPressEvent(QKeyEvent* event) {
  const bool down = event->key() == Qt::Key_Down && event->modifiers() == Qt::AltModifier;
  if (event->key() != Qt::Key_F4 && !down) return Sized<QLineEdit>::keyPressEvent(event);
  OpenCalendar();
}

void DateEdit::mouseDoubleClickEvent(QMouseEvent*) { OpenCalendar(); }

void DateEdit::OpenCalendar() {
  auto* calendar = new QCalendarWidget(this);
  calendar->setWindowFlag(Qt::Popup);
  calendar->setAttribute(Qt::WA_DeleteOnClose);
  const auto now = dates_.read(text().toStdString());
  if (now && !now->IsZero()) {
    calendar->setSelectedDate(QDate(now->Year(), now->Month(), now->Day()));
  }
  const auto pick = [this, calendar](const QDate& day) {
    calendar->close();
    const Date date = Date::FromCivil(day.year(), day.month(), day.day());
    picked_(QString::fromStdString(dates_.write(date)));
  };
  connect(calendar, &QCalendarWidget::clicked, this, pick);
  connect(calendar, &QCalendarWidget::activated, this, pick);
  calendar->move(PlaceBelow(*this, calendar->sizeHint()));
  calendar->show();
  calendar->setFocus(Qt::PopupFocusReason);  // the field has not been left
}

}  // namespace vok::qt
