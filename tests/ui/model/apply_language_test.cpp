#include "ui/model/apply_language.h"

#include <gtest/gtest.h>

#include "tests/support/language_host.h"
#include "texts/string_table.h"

namespace vok {
namespace {

using enum ControlType;

/// What a person sees of a control and its items.
std::string Shown(const Control& control) {
  std::string shown = control.Caption + "|" + control.ToolTipText;
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
  const std::vector<ControlItem> items = {{"1205", "x", "x", "1280"}, {"", "y", "y", "tip"}};
  struct {
    ControlType type;
    const char *tag, *caption, *tip;
    std::string shown;
    std::vector<ControlItem> items = {};
  } const cases[] = {
      {kLabel, "1205", "x", "1280", "OBS!|1280"},
      {kLabel, "", "x", "", "x|"},
      {kCommandButton, "1205", "x", "1280", "OBS!|Tip!"},
      {kCommandButton, "0", "x", "0", "x|0"},
      {kCommandButton, "-5", "x", "", "x|"},
      {kCheckBox, "1205", "x", "", "OBS!|"},
      {kFrame, " 1205 x", "x", "", "OBS!|"},
      {kTextBox, "1205", "", "1280", "|Tip!"},
      {kMenu, "1205", "1260", "", "File!|"},
      {kMenu, "1205", "-", "", "-|"},
      {kTabStrip, "", "x", "", "x||OBS!,x,Tip!|y,y,tip", items},
      {kToolbar, "", "", "", "||x,x,Tip!|y,y,tip", items},
      {kListView, "", "", "", "||x,OBS!,1280|y,y,tip", items},
  };
  for (const auto& c : cases) {
    Form form("frm", "1000");
    form.Add({"before", kLabel, kNoIndex, "no number"});
    form.Add({"a", c.type, kNoIndex, c.tag, c.caption, c.tip, "text"}).Items = c.items;
    form.Add({"after", kLabel, kNoIndex, "1205"});
    Load(form);
    EXPECT_EQ(Shown(form.At("a")), c.shown) << TypeName(c.type) << c.tag;
    EXPECT_EQ(form.Text("a") + form.At("after").Caption, "textOBS!") << "the walk goes on";
  }
}

TEST_F(ApplyLanguageTest, TheWindowTakesItsOwnTextAndItsSideAndGivesItsFontToItsControls) {
  Form form("frm", "1000");
  form.Font = {"Designed", 12};
  form.Add({"a", kLabel, kNoIndex, "1205"}).Font = {"Other", 8};
  for (const int marker : {0, 1}) {
    publics.language.RightToLeftMarker = marker;
    Load(form);
    EXPECT_EQ(form.RightToLeft, marker == 1);
    EXPECT_EQ(form.Caption, StringTableText(1000)) << "not the table's text";
    EXPECT_EQ(form.At("a").Font, (Font{"Designed", 12})) << "there are no texts 20 and 21";
    form.Tag = "";  // without a number the text stays
  }
  host.memory.files.files.clear();
  publics.language = {};
  Load(form);
  EXPECT_TRUE(form.RightToLeft) << "without a table it stays as it was designed";
}

}  // namespace
}  // namespace vok
