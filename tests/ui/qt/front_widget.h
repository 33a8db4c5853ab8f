// The widgets of the window in front; nullptr for what is not there.
#pragma once

#include <QtWidgets/QWidget>
#include <string>

namespace vok::test {
QWidget* FrontWindow();
QWidget* FrontWidget(const std::string& control);
}  // namespace vok::test
