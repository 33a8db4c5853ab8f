#include "ui/controls.h"

#include "env/text_numbers.h"

namespace vok {
namespace {

std::string NumberText(int number) { return number == 0 ? std::string() : std::to_string(number); }

Control& Add(Form& form, ControlType type, const ControlId& id, int text, int tip) {
  return form.Add({.Name = id.name,
                   .Type = type,
                   .Index = id.index,
                   .Tag = NumberText(text),
                   .ToolTipText = NumberText(tip)});
}

}  // namespace

Control& AddLabel(Form& form, const std::string& name, int text) {
  return Add(form, ControlType::kLabel, name, text, 0);
}

Control& AddButton(Form& form, const ControlId& id, int text, int tip) {
  return Add(form, ControlType::kCommandButton, id, text, tip);
}

void AddOkAndCancel(Form& form) {
  AddButton(form, "cmdOk", text_number::kOk).Default = true;
  AddButton(form, "cmdCancel", text_number::kCancel).Cancel = true;
}

Control& AddCheckBox(Form& form, const ControlId& id, int text, int tip) {
  return Add(form, ControlType::kCheckBox, id, text, tip);
}

Control& AddField(Form& form, ControlType type, const ControlId& id, int tip) {
  return Add(form, type, id, 0, tip);
}

Control& AddMenu(Form& form, const std::string& name, int text, const std::string& container) {
  Control& menu = Add(form, ControlType::kMenu, name, 0, 0);
  menu.Caption = NumberText(text);
  menu.Container = container;
  return menu;
}

}  // namespace vok
