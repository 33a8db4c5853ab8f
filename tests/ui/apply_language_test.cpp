#include "ui/apply_language.h"

#include <gtest/gtest.h>

#include "env/string_table.h"
#include "tests/support/language_host.h"

namespace vok {
namespace {

/// What a person sees of a control.
std::string Shown(const Control& control) {
  std::string shown = control.Caption + "|" + control.ToolTipText + "|" + control.Text;
  for (const ControlItem& item : control.Items) {
    shown += "|" + item.Caption + "," + item.Text + "," + item.ToolTipText;
  }
  return shown;
}

class ApplyLanguageTest : public testing::Test {
 protected:
  ApplyLanguageTest() {
    host.SetTable({{1205, 1, "OBS!"}, {1280, 1, "Tip!"}, {1260, 1, "File!"}, {1000, 1, "Window!"}});
  }
  void Load(Form& form) { LoadTexts(host.host, publics, form); }

  test::LanguageHost host;
  Publics publics;
};

TEST_F(ApplyLanguageTest, EachTypeOfControlTakesItsTextsFromItsOwnPlace) {
  const std::string own = StringTableText(1201);
  struct {
    const char* what;
    Control control;
    std::string expected;
  } const cases[] = {
      {"label", {"a", ControlType::kLabel, kNoIndex, "1205", "x"}, "OBS!||"},
      {"label, no row", {"a", ControlType::kLabel, kNoIndex, "1201", "x"}, own + "||"},
      {"label, no text", {"a", ControlType::kLabel, kNoIndex, "1999", "x"}, "1999||"},
      {"label, 0", {"a", ControlType::kLabel, kNoIndex, "0", "x"}, "0||"},
      {"label, no number", {"a", ControlType::kLabel, kNoIndex, "", "x"}, "x||"},
      {"label's tip stays", {"a", ControlType::kLabel, kNoIndex, "1205", "", "1280"}, "OBS!|1280|"},
      {"button", {"a", ControlType::kCommandButton, kNoIndex, "1205", "x", "1280"}, "OBS!|Tip!|"},
      {"button, 0", {"a", ControlType::kCommandButton, kNoIndex, "0", "x", "0"}, "x|0|"},
      {"button, text", {"a", ControlType::kCommandButton, kNoIndex, "b", "x", "tip"}, "x|tip|"},
      {"button, negative", {"a", ControlType::kCommandButton, kNoIndex, "-5", "x"}, "x||"},
      {"check box", {"a", ControlType::kCheckBox, kNoIndex, "1205", "x"}, "OBS!||"},
      {"frame", {"a", ControlType::kFrame, kNoIndex, " 1205 x", "x"}, "OBS!||"},
      {"text box without number", {"a", ControlType::kTextBox, kNoIndex, "", "", "", "t"}, "||t"},
      {"text box, 0", {"a", ControlType::kTextBox, kNoIndex, "0", "", "", "t"}, "||t"},
      {"text box lacks a caption",
       {"a", ControlType::kTextBox, kNoIndex, "1205", "", "1280", "t"},
       "|Tip!|t"},
      {"menu", {"a", ControlType::kMenu, kNoIndex, "1205", "1260"}, "File!||"},
      {"menu's line", {"a", ControlType::kMenu, kNoIndex, "1205", "-"}, "-||"},
      {"tabs",
       {.Name = "a",
        .Type = ControlType::kTabStrip,
        .Caption = "x",
        .Items = {{"1205", "x", "x", "1280"}, {"", "y", "y", "tip"}}},
       "x|||OBS!,x,Tip!|y,y,tip"},
      {"tool bar",
       {.Name = "a", .Type = ControlType::kToolbar, .Items = {{"1205", "x", "x", "1280"}}},
       "|||x,x,Tip!"},
      {"list",
       {.Name = "a", .Type = ControlType::kListView, .Items = {{"1205", "x", "x", "1280"}}},
       "|||x,OBS!,1280"},
  };
  for (const auto& [what, control, expected] : cases) {
    Form form("frm", "1000");
    form.Add({"before", ControlType::kLabel, kNoIndex, "no number"});
    form.Add(control);
    form.Add({"after", ControlType::kLabel, kNoIndex, "1205"});
    Load(form);
    EXPECT_EQ(Shown(form.At("a")), expected) << what;
    EXPECT_EQ(form.At("after").Caption, "OBS!") << what << ": the walk goes on";
  }
}

TEST_F(ApplyLanguageTest, TheWindowTakesItsOwnTextAndGivesItsFontToItsControls) {
  Form form("frm", "1000");
  form.Font = {"Designed", 12};
  form.Add({"a", ControlType::kLabel, kNoIndex, "1205"}).Font = {"Other", 8};
  Load(form);
  EXPECT_EQ(form.Caption, StringTableText(1000)) << "not the table's text";
  EXPECT_EQ(form.Font, (Font{"Designed", 12})) << "there are no texts 20 and 21";
  EXPECT_EQ(form.At("a").Font, form.Font);

  Form without("frm", "");
  without.Caption = "x";
  Load(without);
  EXPECT_EQ(without.Caption, "x");
}

TEST_F(ApplyLanguageTest, EachLoadChoosesAnewAndTheMarkerDecidesTheSide) {
  host.SetTable({{1205, 1, "one"}, {1205, 2, "two"}});
  struct {
    const char* ini;
    int marker;
    bool right_to_left;
    const char* text;
  } const cases[] = {{"0", 0, false, "one"}, {"1", 1, true, "two"}, {"1", 2, false, "two"}};
  for (const auto& [ini, marker, right_to_left, text] : cases) {
    host.SetIni(ini);
    publics.language.RightToLeftMarker = marker;
    Form form("frm", "1000");
    form.RightToLeft = !right_to_left;
    form.Add({"a", ControlType::kLabel, kNoIndex, "1205"});
    Load(form);
    EXPECT_EQ(form.At("a").Caption, text);
    EXPECT_EQ(form.RightToLeft, right_to_left) << marker;
  }
  host.memory.files.files.clear();
  publics.language = {};
  Form form("frm", "1000");
  form.RightToLeft = true;
  form.Add({"a", ControlType::kLabel, kNoIndex, "1205"});
  Load(form);
  EXPECT_EQ(form.At("a").Caption, StringTableText(1205));
  EXPECT_TRUE(form.RightToLeft) << "without a table the window stays as designed";
}

}  // namespace
}  // namespace vok
