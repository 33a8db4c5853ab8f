#include "ui/model/panel.h"

#include "texts/text_numbers.h"

namespace vok {
namespace {

std::string NumberText(int number) { return number == 0 ? std::string() : std::to_string(number); }

}  // namespace

Control& Panel::Add(GridCell cell, ControlType type, const ControlId& id, int text, int tip) {
  return form_.Add({.Name = id.name,
                    .Type = type,
                    .Index = id.index,
                    .Tag = NumberText(text),
                    .ToolTipText = NumberText(tip),
                    .Container = container_,
                    .Cell = cell});
}

Control& Panel::Label(GridCell cell, const ControlId& id, int text) {
  return Add(cell, ControlType::kLabel, id, text, 0);
}

Control& Panel::Field(GridCell cell, ControlType type, const ControlId& id,
                      const std::string& label, int width, int tip) {
  Control& field = Add(cell, type, id, 0, tip);
  field.Label = label;
  field.Width = width;
  return field;
}

Control& Panel::CheckBox(GridCell cell, const ControlId& id, int text, int tip) {
  return Add(cell, ControlType::kCheckBox, id, text, tip);
}

Control& Panel::Button(GridCell cell, const ControlId& id, int text, int tip) {
  return Add(cell, ControlType::kCommandButton, id, text, tip);
}

void Panel::Browse(GridCell cell, const ControlId& id, const std::string& label) {
  Control& button = Button(cell, id, text_number::kBrowse, text_number::kTipBrowse);
  button.Symbol = "…";
  button.Label = label;
}

Panel Panel::Frame(GridCell cell, const std::string& name, int text) {
  Add(cell, ControlType::kFrame, name, text, 0);
  return {form_, name};
}

Panel Panel::Foot(int row, const std::string& name) {
  Control& foot = Add({row, 0}, ControlType::kFrame, name, 0, 0);
  foot.Region = Region::kFoot;
  foot.Grows = true;
  return {form_, name};
}

void Panel::OkAndCancel() {
  Panel buttons = Foot(0, "fraButtons");
  Control& ok = buttons.Button({0, 0}, "cmdOk", text_number::kOk);
  ok.Default = ok.Grows = ok.AtEnd = true;
  buttons.Button({0, 1}, "cmdCancel", text_number::kCancel).Cancel = true;
}

void HoldDate(Form& form, Control& field, const Locale& locale) {
  field.IsDate = true;
  field.ToolTipText = NumberText(text_number::kTipDate);
  form.Dates = {[&locale](const std::string& text) { return locale.ParseDate(text); },
                [&locale](Date date) { return locale.ShortDate(date); }};
}

Control& AddMenu(Form& form, const std::string& name, int text, const std::string& container) {
  return form.Add({.Name = name,
                   .Type = ControlType::kMenu,
                   .Caption = NumberText(text),
                   .Container = container});
}

}  // namespace vok
