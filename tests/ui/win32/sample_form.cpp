#include "tests/ui/win32/sample_form.h"

namespace vok::windows {

using enum ControlType;

SampleForm::SampleForm() : Form("Sample", "") {
  Caption = "Sample דוגמה";
  Add({.Name = "mnuFile", .Type = kMenu, .Caption = "&File"});
  Add({.Name = "save",
       .Type = kMenu,
       .Caption = "&Save",
       .Container = "mnuFile",
       .Shortcut = "Ctrl+S"});
  Add({.Name = "run", .Type = kMenu, .Caption = "&Run", .Container = "mnuFile", .Shortcut = "F5"});
  AddFields();
  AddButtons();
  for (const Control& control : Controls()) {
    for (const FormEvent event : {FormEvent::kChanged, FormEvent::kLeft, FormEvent::kClicked}) {
      Rule(event, control.Name, [] {});
    }
  }
}

void SampleForm::AddFields() {
  const char* const f = "fields";
  Add({.Name = f, .Type = kFrame, .Caption = "Fields", .Grows = true});
  Add({.Name = "lblName", .Caption = "&Name", .Container = f});
  Add({.Name = "name",
       .Type = kTextBox,
       .Container = f,
       .Cell = {0, 1},
       .Width = 20,
       .Grows = true,
       .Label = "lblName"});
  Add({.Name = "lblDate", .Caption = "&Date", .Container = f, .Cell = {1, 0}});
  Add({.Name = "date",
       .Type = kTextBox,
       .ToolTipText = "Day, month, year",
       .Container = f,
       .Cell = {1, 1},
       .Label = "lblDate"});
  Add({.Name = "lblSet", .Caption = "Se&t", .Container = f, .Cell = {0, 2}});
  Add({.Name = "set",
       .Type = kComboBox,
       .List = {"A", "B", "Ж", "ג"},
       .Container = f,
       .Cell = {0, 3},
       .Label = "lblSet"});
  Add({.Name = "kind",
       .Type = kComboBox,
       .List = {"one", "two"},
       .Locked = true,
       .Container = f,
       .Cell = {1, 3}});
  Add({.Name = "box", .Type = kCheckBox, .Caption = "&Box", .Container = f, .Cell = {2, 1}});
  Add({.Name = "list",
       .Type = kListBox,
       .List = {"first", "second"},
       .Container = f,
       .Cell = {2, 3, 1, 2},
       .Height = 3});
  Add({.Name = "wrong",
       .Type = kTextBox,
       .Text = "wrong",
       .Locked = true,
       .Error = true,
       .Container = f,
       .Cell = {3, 1}});
  Add({.Name = "tabs",
       .Type = kTabStrip,
       .Items = {{.Caption = "One"}, {.Caption = "Two"}},
       .Cell = {1, 0}});
  Add({.Name = "bar", .Type = kToolbar, .Items = {{.Caption = "Push"}}, .Cell = {2, 0}});
  Add({.Name = "busy", .Type = kProgressBar, .Cell = {3, 0}});
  Add({.Name = "rows",
       .Type = kListView,
       .Items = {{.Text = "Account"}, {.Text = "Amount", .IsNumber = true}},
       .Rows = {{"Sales", "1,234.50"}, {"חשבון", "-7"}},
       .Cell = {4, 0},
       .Height = 4,
       .GrowsDown = true});
  Add({.Name = "chart",
       .Type = kChart,
       .Bars = {{"Spring", 120, "120.00"}, {"ק", -40, "-40.00"}},
       .Cell = {5, 0},
       .Height = 3});
}

void SampleForm::AddButtons() {
  Add({.Name = "buttons", .Type = kFrame, .Cell = {6, 0}});
  Add({.Name = "child", .Type = kCommandButton, .Caption = "&Child...", .Container = "buttons"});
  Add({.Name = "ok",
       .Type = kCommandButton,
       .Caption = "OK",
       .Default = true,
       .Container = "buttons",
       .Cell = {0, 1},
       .Grows = true,
       .AtEnd = true});
  Add({.Name = "cancel",
       .Type = kCommandButton,
       .Caption = "Cancel",
       .Cancel = true,
       .Container = "buttons",
       .Cell = {0, 2}});
}

void SampleForm::Rule(FormEvent event, const std::string& name, std::function<void()> rule) {
  On(event, name, [this, event, name, rule = std::move(rule)](int) {
    const Control& control = At(name);
    if (event == FormEvent::kChanged) Note(name + "=" + control.Text);
    if (event == FormEvent::kLeft) Note("left " + name);
    if (event == FormEvent::kClicked) {
      Note("clicked " + name);
      if (name == "ok" || name == "cancel") Visible = false;
    }
    rule();
  });
}

void SampleForm::Note(const std::string& what) { told_ += (told_.empty() ? "" : "; ") + what; }

}  // namespace vok::windows
