#include "ui/model/form.h"

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

/// Writes down what its rules hear, such as "txt0 changed".
struct Heard {
  Heard() {
    form.Add({"txt", kTextBox, 0});
    form.Add({"txt", kTextBox, 1});
    form.Add({"chk", kCheckBox});
    form.Add({"cmd", kCommandButton});
    form.Add({"Combo", kComboBox});
    for (const char* name : {"txt", "chk", "cmd", "Combo"}) {
      for (const FormEvent event : {FormEvent::kChanged, FormEvent::kLeft, FormEvent::kClicked}) {
        form.On(event, name, [this, name, event](int index) {
          const char* const what[] = {" changed", " left", " clicked"};
          events += name + std::to_string(index) + what[static_cast<int>(event)] + "\n";
        });
      }
    }
  }
  Form form{"frm", "1000"};
  std::string events;
};

TEST(Form, EventsReachTheRulesOfAControlWithItsIndex) {
  Heard heard;
  Form& form = heard.form;
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
  EXPECT_EQ(heard.events,
            "txt1 changed\ntxt0 left\nchk-1 clicked\nchk-1 clicked\nchk-1 clicked\n"
            "cmd-1 clicked\nCombo-1 changed\nCombo-1 clicked\nCombo-1 clicked\n");
  EXPECT_EQ(form.Text("Combo"), "y");
  EXPECT_EQ(NumberOf([&] { form.Choose("Combo", 2); }), failure_number::kInvalidCall);
  EXPECT_EQ(NumberOf([&] { form.SetText({"txt", 2}, ""); }), kNoSuchControl);
  EXPECT_EQ(NumberOf([&] { form.Click("txt"); }), kNoSuchControl);
}

TEST(Form, WhatIsTypedIsToldAsAWholeBeforeTheNextThingThatIsDone) {
  struct {
    const char* before;
    std::function<void(Form&)> next;
    const char* events;
    int acts;  ///< that `Acted` hears of, besides the two keys
  } const cases[] = {
      {"",
       [](Form& form) {
         form.Leave({"txt", 0});
       },
       "txt0 changed\ntxt0 left\n", 1},
      {"", [](Form& form) { form.Click("cmd"); }, "txt0 changed\ncmd-1 clicked\n", 1},
      {"", [](Form& form) { form.Click("chk"); }, "txt0 changed\nchk-1 clicked\n", 1},
      {"", [](Form& form) { form.Choose("Combo", 0); },
       "txt0 changed\nCombo-1 changed\nCombo-1 clicked\n", 1},
      {"",
       [](Form& form) {
         form.Type({"txt", 1}, "x");
       },
       "txt0 changed\n", 1},
      {"ab",
       [](Form& form) {
         form.Leave({"txt", 0});
       },
       "txt0 left\n", 1},
  };
  for (const auto& [before, next, events, acts] : cases) {
    Heard heard;
    heard.form.At({"txt", 0}).Text = before;
    heard.form.At({"txt", 0}).Dimmed = true;
    heard.form.SetList("Combo", {"x"});
    int acted = 0;
    heard.form.Acted = [&] { ++acted; };
    for (const char* text : {"a", "ab"}) {
      heard.form.Type({"txt", 0}, text);
      EXPECT_EQ(heard.form.Text({"txt", 0}), text);
      EXPECT_FALSE(heard.form.At({"txt", 0}).Dimmed);
    }
    EXPECT_EQ(heard.events, "") << "key by key";
    next(heard.form);
    EXPECT_EQ(heard.events, events);
    EXPECT_EQ(acted, 2 + acts);
  }
}

}  // namespace
}  // namespace vok
