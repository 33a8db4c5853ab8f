// Short ways to add controls to a form. Numbers are those of texts; 0: none.
#pragma once

#include <string>
#include <vector>

#include "ui/form.h"

namespace vok {

Control& AddLabel(Form& form, const std::string& name, int text);
Control& AddButton(Form& form, const ControlId& id, int text, int tip = 0);
/// `cmdOk` and `cmdCancel`, which Enter and Escape click.
void AddOkAndCancel(Form& form);
Control& AddCheckBox(Form& form, const ControlId& id, int text, int tip = 0);
/// A text box, combo box or list box.
Control& AddField(Form& form, ControlType type, const ControlId& id, int tip = 0);
/// A menu, or an entry of the menu `container`.
Control& AddMenu(Form& form, const std::string& name, int text, const std::string& container = {});

}  // namespace vok
