// A field for a date, in which a calendar can be opened: by F4, Alt+Down or a double click.
#pragma once

#include <QtWidgets/QLineEdit>
#include <functional>

#include "ui/model/form.h"
#include "ui/qt/sized.h"

namespace vok::qt {

class DateEdit : public Sized<QLineEdit> {
 public:
  /// `picked` gets the date's text. `dates` outlives the field.
  DateEdit(QWidget& parent, const DateTexts& dates, std::function<void(const QString&)> picked);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void OpenCalendar();

  const DateTexts& dates_;
  std::function<void(const QString&)> picked_;
};

}  // namespace vok::qt
