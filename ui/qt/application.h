// The process's QApplication, and how things look that have no place in the layout: fonts, errors,
// tool tips.
#pragma once

#include <QtCore/QSettings>
#include <QtGui/QFont>
#include <QtWidgets/QWidget>

#include "ui/model/form.h"

namespace vok::qt {

/// Makes it where the host program has none, and keeps it then: Qt bears but one in a process's
/// life. Failures as those of `QtDesktop`.
void NeedApplication();

/// What is kept for the person from one window to the next, by any host program.
QSettings KeptForPerson();

/// The named font; the desktop's own where it is missing.
QFont FontOf(const Font& font);

/// Plain text for a tool tip, with any signs in it.
QString PlainToolTip(const std::string& text);

/// Gives a wrong entry and a locked text their back colours, or takes them away, and tells screen
/// readers of the wrong one by `error_text`. What they read besides is the tool tip.
void MarkState(QWidget& widget, const Control& control, const std::string& error_text);

}  // namespace vok::qt
