#include "ui/form.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/failure.h"

namespace vok {
namespace {

using testing::ElementsAre;

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
    int32_t failure;
  } const cases[] = {
      {ControlType::kLabel, "caption", "Von", 0},
      {ControlType::kLabel, "aligment", 1, kNoSuchProperty},
      {ControlType::kLabel, "Text", "x", kNoSuchProperty},
      {ControlType::kTextBox, "Text", "x", 0},
      {ControlType::kTextBox, "Caption", "x", kNoSuchProperty},
      {ControlType::kComboBox, "listindex", 2, 0},
      {ControlType::kCheckBox, "Value", kGrayed, 0},
      {ControlType::kCheckBox, "Value", "many", failure_number::kTypeMismatch},
      {ControlType::kCommandButton, "ENABLED", false, 0},
      {ControlType::kMenu, "ToolTipText", "x", kNoSuchProperty},
      {ControlType::kMenu, "Caption", "1200", 0},
  };
  for (const auto& [type, name, value, failure] : cases) {
    Control control{"a", type};
    EXPECT_EQ(NumberOf([&] { control.SetProperty(name, value); }), failure) << name;
    if (failure != 0) continue;
    EXPECT_EQ(control.Property(name).ToText(), Value(value).ToText()) << name;
  }
  Control tabs{"t", ControlType::kTabStrip};
  tabs.Collection("tabs").push_back({.Tag = "1200"});
  EXPECT_EQ(tabs.Items.size(), 1U);
  EXPECT_EQ(NumberOf([&] { tabs.Collection("Buttons"); }), kNoSuchProperty);
}

TEST(Form, EventsReachTheRulesOfAControlWithItsIndex) {
  Form form("frm", "1000");
  form.Add({"txt", ControlType::kTextBox, 0});
  form.Add({"txt", ControlType::kTextBox, 1});
  form.Add({"chk", ControlType::kCheckBox});
  form.Add({"cmd", ControlType::kCommandButton});
  form.Add({"Combo", ControlType::kComboBox});
  std::vector<std::string> events;
  for (const char* name : {"txt", "chk", "cmd", "Combo"}) {
    const auto note = [&events, name](const char* what) {
      return [&events, name, what](int index) {
        events.push_back(std::string(name) + std::to_string(index) + what);
      };
    };
    form.On(FormEvent::kChanged, name, note(" changed"));
    form.On(FormEvent::kLeft, name, note(" left"));
    form.On(FormEvent::kClicked, name, note(" clicked"));
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
  EXPECT_THAT(events, ElementsAre("txt1 changed", "txt0 left", "chk-1 clicked", "chk-1 clicked",
                                  "chk-1 clicked", "cmd-1 clicked", "Combo-1 changed",
                                  "Combo-1 clicked", "Combo-1 clicked"));
  EXPECT_EQ(form.Text("Combo"), "y");
  EXPECT_EQ(NumberOf([&] { form.Choose("Combo", 2); }), failure_number::kInvalidCall);
  EXPECT_EQ(NumberOf([&] { form.SetText({"txt", 2}, ""); }), kNoSuchControl);
  EXPECT_EQ(NumberOf([&] { form.Click("txt"); }), kNoSuchControl);
}

}  // namespace
}  // namespace vok
