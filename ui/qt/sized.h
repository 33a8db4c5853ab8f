// Widgets of the size that their control asks for.
#pragma once

#include <QtGui/QFontMetrics>

#include "ui/model/form.h"

namespace vok::qt {

/// A widget that wants no more than its least size, where it has one. All that is left over goes to
/// the controls that grow.
template <typename Widget>
class Sized : public Widget {
 public:
  using Widget::Widget;
  QSize sizeHint() const override {
    QSize size = Widget::sizeHint();
    if (this->minimumWidth() > 0) size.setWidth(this->minimumWidth());
    if (this->minimumHeight() > 0) size.setHeight(this->minimumHeight());
    return size;
  }
};

inline int CharacterWidth(const QWidget& widget) {
  return widget.fontMetrics().horizontalAdvance(QLatin1Char('0'));
}
inline int TextWidth(const Control& control, const QWidget& widget) {
  return control.Width * CharacterWidth(widget);
}
inline int TextHeight(const Control& control, const QWidget& widget) {
  return control.Height * widget.fontMetrics().lineSpacing();
}

}  // namespace vok::qt
