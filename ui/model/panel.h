// A container of a form while its controls are added: each goes into a cell of the container's
// grid. Numbers are those of texts; 0: none.
#pragma once

#include <string>

#include "platform/locale.h"
#include "ui/model/form.h"

namespace vok {

class Panel {
 public:
  /// The form itself.
  explicit Panel(Form& form) : form_(form) {}

  Control& Label(GridCell cell, const ControlId& id, int text);
  /// A text box, combo box, list box, list view or chart. `label` names the label beside or above
  /// it; `width` is in characters.
  Control& Field(GridCell cell, ControlType type, const ControlId& id, const std::string& label,
                 int width, int tip = 0);
  Control& CheckBox(GridCell cell, const ControlId& id, int text, int tip = 0);
  Control& Button(GridCell cell, const ControlId& id, int text, int tip = 0);
  /// A small button of three dots that lets the person pick a file for the field of that label.
  void Browse(GridCell cell, const ControlId& id, const std::string& label);
  /// A frame, drawn around its controls when it has a text.
  Panel Frame(GridCell cell, const std::string& name, int text = 0);
  /// A frame of the form's foot, in that row of it.
  Panel Foot(int row, const std::string& name);
  /// `cmdOk` and `cmdCancel` at the end of the foot, which Enter and Escape click.
  void OkAndCancel();

 private:
  Panel(Form& form, std::string container) : form_(form), container_(std::move(container)) {}
  Control& Add(GridCell cell, ControlType type, const ControlId& id, int text, int tip);

  Form& form_;
  std::string container_;
};

/// Makes the text box a field for dates as the country writes them.
void HoldDate(Form& form, Control& field, const Locale& locale);

/// Adds a menu, or an entry of the menu `container`.
Control& AddMenu(Form& form, const std::string& name, int text, const std::string& container = {});

}  // namespace vok
