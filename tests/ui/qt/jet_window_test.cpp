// A genuine Jet file in the drawn window: shown, and never written.
#include <gtest/gtest.h>

#include "tests/support/jet_shape.h"
#include "tests/ui/drawn/drawn_desk.h"
#include "tests/ui/drawn/person.h"

namespace vok::test {
namespace {

TEST(QtWindows, SetsOfAJetFileAreShownAndNeverWritten) {
  DrawnDesk desk;
  const std::string file = desk.settings + "/CubToQel.mdb";
  std::filesystem::copy_file(JET_SAMPLES "/CubToQel-28-columns.mdb", file);
  const std::string before = ReadWholeFile(desk.files, file);
  jet::JetFiles jet_files(desk.files, desk.locale, {JET_READER}, SettingsShape(desk.locale));
  desk.database.jet = [&](const std::string& path) { return jet_files.Open(path); };
  const auto window = desk.OpenDrawn();
  const Person person(R"(
      focus comboDataSource; type Sales; press Tab
      front "sales.cub"; press Return
      front MEASURES; press Return
      click ComboPeriods; type P; press Tab; shot jet
      press Ctrl+S; front read here but never written. Nothing was changed.
      shot jet-refused; press Return
      front (while saving the data source "Sales"); press Return
      click cmdDeletePeriods; press Alt+Y; front vokcube settings import; press Return
      click cmdDeleteSource; press Alt+Y; front vokcube settings import; press Return
      see txtCubeName QEL; see TextMeasure(12) Amount
      see ComboPeriods P; see TextPeriod(4) ינו 2016; see txtDate1(4); see txtDate2(11) 15/04/2010
      close)");
  window->Show();
  EXPECT_EQ(ReadWholeFile(desk.files, file), before);
}

}  // namespace
}  // namespace vok::test
