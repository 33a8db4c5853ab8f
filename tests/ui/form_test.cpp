#include "ui/form.h"

#include <gtest/gtest.h>

#include "platform/failure.h"

namespace vok {
namespace {

using enum ControlType;

int32_t NumberOf(const std::function<void()>& call) {
  try {
    call();
    return 0;
  } catch (const Failure& failure) {
    return failure.number();
  }
}

TEST(Form, AControlHasThePropertiesOfItsTypeAndNoOthers) {
  struct {
    ControlType type;
    const char* name;
    Value value;
    int32_t failure = 0;
  } const cases[] = {
      {kLabel, "caption", "Von"},
      {kLabel, "aligment", 1, kNoSuchProperty},
      {kLabel, "Text", "x", kNoSuchProperty},
      {kTextBox, "Text", "x"},
      {kTextBox, "Caption", "x", kNoSuchProperty},
      {kComboBox, "listindex", 2},
      {kCheckBox, "Value", kGrayed},
      {kCheckBox, "Value", "many", failure_number::kTypeMismatch},
      {kCommandButton, "ENABLED", false},
      {kMenu, "ToolTipText", "x", kNoSuchProperty},
      {kMenu, "Caption", "1200"},
  };
  for (const auto& [type, name, value, failure] : cases) {
    Control control{"a", type};
    EXPECT_EQ(NumberOf([&] { control.SetProperty(name, value); }), failure) << name;
    if (failure != 0) continue;
    EXPECT_EQ(control.Property(name).ToText(), value.ToText()) << name;
  }
  Control tabs{"t", kTabStrip};
  tabs.Collection("tabs").push_back({.Tag = "1200"});
  EXPECT_EQ(tabs.Items.size(), 1U);
  EXPECT_EQ(NumberOf([&] { tabs.Collection("Buttons"); }), kNoSuchProperty);
}

TEST(Form, EventsReachTheRulesOfAControlWithItsIndex) {
  Form form("frm", "1000");
  form.Add({"txt", kTextBox, 0});
  form.Add({"txt", kTextBox, 1});
  form.Add({"chk", kCheckBox});
  form.Add({"cmd", kCommandButton});
  form.Add({"Combo", kComboBox});
  std::string events;
  for (const char* name : {"txt", "chk", "cmd", "Combo"}) {
    for (const FormEvent event : {FormEvent::kChanged, FormEvent::kLeft, FormEvent::kClicked}) {
      form.On(event, name, [&events, name, event](int index) {
        const char* const what[] = {" changed", " left", " clicked"};
        events += name + std::to_string(index) + what[static_cast<int>(event)] + "\n";
      });
    }
  }
  form.SetText({"txt", 1}, "a");
  form.SetText({"txt", 1}, "a");
  form.Leave({"txt", 0});
  form.Click("chk");
  form.SetValue("chk", kGrayed);
  form.Click("chk");
  form.SetValue("chk", kUnchecked);
  form.Click("cmd");
  form.At("cmd").Enabled = false;
  form.Click("cmd");
  form.SetList("Combo", {"x", "y"});
  form.Choose("Combo", 1);
  form.Choose("Combo", 1);
  EXPECT_EQ(events,
            "txt1 changed\ntxt0 left\nchk-1 clicked\nchk-1 clicked\nchk-1 clicked\n"
            "cmd-1 clicked\nCombo-1 changed\nCombo-1 clicked\nCombo-1 clicked\n");
  EXPECT_EQ(form.Text("Combo"), "y");
  EXPECT_EQ(NumberOf([&] { form.Choose("Combo", 2); }), failure_number::kInvalidCall);
  EXPECT_EQ(NumberOf([&] { form.SetText({"txt", 2}, ""); }), kNoSuchControl);
  EXPECT_EQ(NumberOf([&] { form.Click("txt"); }), kNoSuchControl);
}

}  // namespace
}  // namespace vok
