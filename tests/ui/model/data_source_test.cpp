// The data source in the main query window, and the windows and files that it is chosen from.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "settings/set_writer.h"
#include "tests/support/ui/real_desk.h"
#include "ui/model/frm_cube.h"
#include "ui/model/frm_option.h"

namespace vok {
namespace {

using test::Box;
using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;

MessageBox Critical(const std::string& text) {
  return {text, test::kExecutable, MessageIcon::kCritical, MessageButtons::kOk, "", 0};
}

struct DataSourceTest : testing::Test {
  test::RealDesk desk;
};

TEST_F(DataSourceTest, ADataSourceWithoutANameIsNamedByTheTime) {
  struct {
    const char *country, *name;
  } const cases[] = {{"en_GB", "Save  15/11 16:32"},
                     {"de_DE", "Save  15.11 16:32"},
                     {"sv_SE", "Save  15-11 16:32"}};
  for (const auto& [country, name] : cases) {
    test::RealDesk abroad(country);
    abroad.memory.clock.now = Date{Date::FromCivil(2024, 11, 15).serial + (16 * 60 + 32) / 1440.0};
    const auto window = abroad.Open();
    for (const char* field : {"txtVarnelMDB", "TxtFileName", "txtCubeName", "CmbObs"}) {
      window->form().SetText(field, "x");
    }
    EXPECT_TRUE(window->SaveSettings());
    EXPECT_TRUE(abroad.StoredSource(name)) << name;
  }
}

TEST_F(DataSourceTest, MeasuresThatTheCubeLacksAreMarkedAndTold) {
  const auto window = desk.Open();
  desk.FillIn(window->form());
  window->form().Click("ComSaveSet");
  auto setting = *desk.StoredSource("Sales");
  setting.MoneySets[2].Measure = setting.MoneySets[5].Measure = "Profit";
  setting.MoneySets[4].Measure = "AMOUNT";
  setting.MoneySets[6].Measure = "Loss";
  SaveMoneyMeasures(desk.host, desk.publics.environment, setting);
  window->form().Raise(FormEvent::kClicked, "comboDataSource");
  EXPECT_THAT(desk.TakeBoxes(), ElementsAre(Critical("MEASURES \r\n\r\nProfit\r\nLoss")));
  std::string marked;
  for (int row = 0; row < kMoneySetCount; ++row) {
    const bool error = window->form().At({"TextMeasure", row}).Error;
    EXPECT_EQ(window->form().At({"ComMeasure", row}).Caption, error ? "Error" : "Measure");
    if (error) marked += std::to_string(row) + " ";
  }
  EXPECT_EQ(marked, "2 5 6 ");
}

TEST_F(DataSourceTest, ASettingWhoseCubeFileIsGoneIsShownAndSaysSo) {
  const auto window = desk.Open();
  Form& form = window->form();
  desk.FillIn(form);
  form.Click("ComSaveSet");
  desk.files.Delete(desk.Cube());
  const auto gone = [](const char* procedure, const char* module) {
    return Field(&MessageBox::text,
                 AllOf(HasSubstr("sample.cub"), HasSubstr(std::string("Function : ") + procedure +
                                                          "\r\nModule : " + module + "\r\n")));
  };
  form.Raise(FormEvent::kClicked, "comboDataSource");
  EXPECT_THAT(desk.TakeBoxes(),
              ElementsAre(gone("UpdObsList", "FrmPeriosd"), Critical("MEASURES \r\n\r\nAmount")));
  EXPECT_EQ(form.Text("CmbObs"), "Ledger1");
  desk.toolkit.in_window = {[](Form& option) { option.Click("cmdOk"); }};
  form.Click("cmdOptions");
  EXPECT_THAT(desk.TakeBoxes(), ElementsAre(gone("SetCmbMeas2", "FrmPeriods")));
  EXPECT_EQ(form.Text({"TextMeasure", 12}), "Amount");
}

TEST_F(DataSourceTest, TheCountOfMoneySetsStaysUntilAnotherIsTyped) {
  struct {
    int16_t stored;
    std::vector<const char*> typed;
    int16_t count;
    bool refused = false;
  } const cases[] = {{20, {}, 20},         {-1, {}, -1},          {20, {"13"}, 13},
                     {3, {"14"}, 0, true}, {3, {"two"}, 0, true}, {3, {"", "-1", "4"}, 4},
                     {3, {""}, 0}};
  for (const auto& [stored, typed, count, refused] : cases) {
    const WindowServices services{desk.host, desk.publics, desk.toolkit};
    FrmOption window(services, {});
    desk.toolkit.in_window = {[&texts = typed, marked = refused](Form& form) {
      for (const char* text : texts) form.SetText("txtCountMoney", text);
      EXPECT_EQ(form.At("txtCountMoney").Error, marked);
      form.Click("cmdOk");
    }};
    DataSourceSetting setting;
    setting.CountMoney = stored;
    EXPECT_TRUE(window.ShowForm(setting));
    EXPECT_EQ(setting.CountMoney, count) << stored;
  }
}

TEST_F(DataSourceTest, FilesArePickedFromTheSettingsFolder) {
  const auto window = desk.Open();
  Form& form = window->form();
  desk.toolkit.picked = "picked";
  struct {
    const char* button;
    const char* field;
    FileDialog dialog;
  } const cases[] = {
      {"cmdVarnelMDB", "txtVarnelMDB", {" - Open a file", "*.*|*.*", 4100}},
      {"cmdActFile", "txtActFile", {" - Open a file", "*.*|*.*", 4100}},
      {"cmdCube", "", {" - Open a file", "Cub files(*.cub)|*.cub", 4100}},
      {"cmdOutput", "txtOutput", {" - Save a file", "Excel files(*.xlsX)|*.xlsX", 2052, true}},
  };
  for (const auto& [button, field, wanted] : cases) {
    std::filesystem::current_path("/");
    desk.toolkit.in_window = {[](Form& selection) { selection.Click("ComCubeFile"); }};
    form.Click(button);
    const FileDialog& dialog = desk.toolkit.dialogs.back();
    EXPECT_EQ(dialog.title, test::kExecutable + wanted.title);
    EXPECT_EQ(dialog.filter, wanted.filter);
    EXPECT_EQ(dialog.flags, wanted.flags);
    EXPECT_EQ(dialog.save, wanted.save);
    EXPECT_EQ(desk.toolkit.folders.back(), desk.settings) << button;
    if (form.Has(field)) {
      EXPECT_EQ(form.Text(field), "picked");
    }
  }
  std::filesystem::current_path("/");
}

TEST_F(DataSourceTest, ACubeIsChosenFromAFileThatHasOne) {
  desk.Open();
  std::ofstream(desk.folder.File("bad.cub")) << "no cube";
  const WindowServices services{desk.host, desk.publics, desk.toolkit};
  frmCube window(services);
  desk.toolkit.in_window = {[&](Form& form) {
    EXPECT_FALSE(form.At("ComboCube").Enabled);
    desk.toolkit.picked = desk.Cube();
    form.Click("ComCubeFile");
    EXPECT_EQ(form.Text("ComboCube"), "QEL");
    form.Click("ComCubeFile");
    desk.toolkit.picked = "";
    form.Click("ComCubeFile");
    EXPECT_EQ(form.Text("TxtFileName"), desk.Cube());
    desk.toolkit.picked = desk.folder.File("bad.cub");
    form.Click("ComCubeFile");
    EXPECT_THAT(form.At("ComboCube").List, IsEmpty());
    EXPECT_FALSE(form.At("ComboCube").Enabled);
    form.Click("cmdOk");
  }};
  EXPECT_FALSE(window.ShowForm()) << "no cube is chosen in a file that has none";
  const auto boxes = desk.TakeBoxes();
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_THAT(boxes[0].text, HasSubstr("Function : ComCubeFile_Click\r\nModule : frmCube"));
  ASSERT_EQ(desk.toolkit.dialogs.size(), 4U);
  window.UpdListCube(nullptr);
  EXPECT_THAT(desk.TakeBoxes(), ElementsAre(Box("QeL cube not found...")));
}

}  // namespace
}  // namespace vok
