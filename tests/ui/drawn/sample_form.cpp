#include "tests/ui/drawn/sample_form.h"

namespace vok::test {

using enum ControlType;

SampleForm::SampleForm() : Form("Sample", "") {
  Caption = "Sample דוגמה";
  ErrorText = "Wrong";
  Put("mnuFile", kMenu, "&File", "");
  Put("save", kMenu, "&Save", "mnuFile").Shortcut = "Ctrl+S";
  Put("run", kMenu, "&Run", "mnuFile").Shortcut = "F5";
  AddFields();
  AddLists();
  AddButtons();
  for (const Control& control : Controls()) {
    for (const FormEvent event : {FormEvent::kChanged, FormEvent::kLeft, FormEvent::kClicked}) {
      Rule(event, control.Name, [] {});
    }
  }
}

Control& SampleForm::Put(const char* name, ControlType type, const char* caption,
                         const char* container, GridCell cell) {
  Control& control = Add({name, type, kNoIndex, "", caption});
  control.Container = container;
  control.Cell = cell;
  return control;
}

void SampleForm::AddFields() {
  const char* const f = "fields";
  Put(f, kFrame, "Fields", "").Grows = true;
  Put("lblName", kLabel, "&Name", f);
  Control& name = Put("name", kTextBox, "", f, {0, 1});
  name.Width = 20;
  name.Grows = true;
  name.Label = "lblName";
  name.Row = "2";
  Put("lblDate", kLabel, "&Date", f, {1, 0});
  Control& date = Put("date", kTextBox, "", f, {1, 1});
  date.Label = "lblDate";
  date.ToolTipText = "Day, month, year";
  date.IsDate = true;
  Dates = {[](const std::string& text) {
             return text == "5/6/2009" ? std::optional(Date::FromCivil(2009, 6, 5)) : std::nullopt;
           },
           [](Date picked) {
             return std::to_string(picked.Day()) + ". " + std::to_string(picked.Year());
           }};
  Put("lblSet", kLabel, "Se&t", f, {0, 2});
  Control& set = Put("set", kComboBox, "", f, {0, 3});
  set.Label = "lblSet";
  set.List = {"A", "B", "Ж", "ג"};
  Control& kind = Put("kind", kComboBox, "", f, {1, 3});
  kind.List = {"one", "two"};
  kind.Locked = true;
  Put("box", kCheckBox, "&Box", f, {2, 1}).Value = kGrayed;
  Control& list = Put("list", kListBox, "", f, {2, 3, 1, 2});
  list.List = {"first", "second"};
  list.ListIndex = 0;
  list.Height = 3;
  Control& wrong = Put("wrong", kTextBox, "", f, {3, 1});
  wrong.Text = "wrong";
  wrong.Locked = wrong.Error = true;
}

void SampleForm::AddLists() {
  Put("busy", kProgressBar, "", "", {1, 0});
  Control& rows = Put("rows", kListView, "", "", {2, 0});
  rows.Items = {{.Text = "Account"}, {.Text = "Amount", .IsNumber = true}};
  rows.Rows = {{"Sales", "1,234.50"}, {"חשבון", "-7"}};
  rows.Height = 4;
  rows.GrowsDown = true;
  Control& chart = Put("chart", kChart, "", "", {3, 0});
  chart.Bars = {{"Spring", 120, "120.00"}, {"ק", -40, "-40.00"}};
  chart.Height = 3;
}

void SampleForm::AddButtons() {
  const char* const b = "buttons";
  Control& foot = Put(b, kFrame, "", "");
  foot.Region = Region::kFoot;
  foot.Grows = true;
  Put("child", kCommandButton, "&Child...", b);
  Control& ok = Put("ok", kCommandButton, "OK", b, {0, 1});
  ok.Default = ok.Grows = ok.AtEnd = true;
  Put("cancel", kCommandButton, "Cancel", b, {0, 2}).Cancel = true;
}

void SampleForm::Rule(FormEvent event, const std::string& name, std::function<void()> rule) {
  On(event, name, [this, event, name, rule = std::move(rule)](int) {
    if (event == FormEvent::kChanged) Note(name + "=" + Text(name));
    if (event == FormEvent::kLeft) Note("left " + name);
    if (event == FormEvent::kClicked) {
      Note("clicked " + name);
      if (name == "ok" || name == "cancel") Visible = false;
    }
    rule();
  });
}

void SampleForm::Note(const std::string& what) { told_ += (told_.empty() ? "" : "; ") + what; }

}  // namespace vok::test
