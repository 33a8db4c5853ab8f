// The desktop whose windows tests/ui/drawn tries: Qt's.
#pragma once

#include <QtWidgets/QApplication>
#include <string>

#include "ui/qt/qt_desktop.h"

namespace vok::test {

class DrawnDesktop : public qt::QtDesktop {
 public:
  DrawnDesktop();
  /// Parts of windows that there are in this process.
  static int PartsLeft() { return static_cast<int>(QApplication::allWidgets().size()); }
};

/// The widgets of the window in front; nullptr for what is not there.
QWidget* FrontWindow();
QWidget* FrontWidget(const std::string& control);

}  // namespace vok::test
