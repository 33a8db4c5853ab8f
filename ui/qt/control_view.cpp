#include "ui/qt/control_view.h"

#include "platform/failure.h"

namespace vok::qt {

std::unique_ptr<ControlView> NewView(const Control& control, QWidget& parent, Listener& listener) {
  switch (control.Type) {
    case ControlType::kLabel:
      return NewLabel(control, parent);
    case ControlType::kTextBox:
      return NewTextBox(control, parent, listener);
    case ControlType::kComboBox:
      return NewComboBox(control, parent, listener);
    case ControlType::kListBox:
      return NewListBox(control, parent, listener);
    case ControlType::kCheckBox:
      return NewCheckBox(control, parent, listener);
    case ControlType::kCommandButton:
      return NewButton(control, parent, listener);
    case ControlType::kFrame:
      return NewFrame(control, parent);
    case ControlType::kListView:
      return NewTable(control, parent);
    case ControlType::kProgressBar:
      return NewProgressBar(parent);
    case ControlType::kChart:
      return NewChart(control, parent);
    default:
      throw Failure(failure_number::kNotSupported, std::string("The desktop cannot draw the ") +
                                                       TypeName(control.Type) + " " + control.Name);
  }
}

}  // namespace vok::qt
