// The widgets of each type of control.
#pragma once

#include <memory>

#include "ui/win32/widget.h"

namespace vok::windows {

std::unique_ptr<Widget> MakeLabel(Control& control);
std::unique_ptr<Widget> MakeFrame(Control& control);
std::unique_ptr<Widget> MakeButton(Control& control);
std::unique_ptr<Widget> MakeCheckBox(Control& control);
std::unique_ptr<Widget> MakeTextBox(Control& control);
std::unique_ptr<Widget> MakeComboBox(Control& control);
std::unique_ptr<Widget> MakeListBox(Control& control);
std::unique_ptr<Widget> MakeListView(Control& control);
std::unique_ptr<Widget> MakeChart(Control& control);
std::unique_ptr<Widget> MakeProgressBar(Control& control);
std::unique_ptr<Widget> MakeTabStrip(Control& control);
std::unique_ptr<Widget> MakeToolbar(Control& control);

}  // namespace vok::windows
