// Saves that the machine refuses: told in an error report, and nothing lost.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

#include "settings/set_lists.h"
#include "settings/set_writer.h"
#include "settings/settings_database.h"
#include "tests/support/ui/real_desk.h"

namespace vok {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::SizeIs;

struct SaveFailuresTest : testing::Test {
  /// Saves the full setting, then changes it in the window.
  void Prepare() {
    window = desk.Open();
    desk.FillIn(form());
    form().Click("ComSaveSet");
    ASSERT_THAT(desk.TakeBoxes(), SizeIs(0));
    form().SetText({"TextPeriod", 0}, "Changed");
    form().SetText("txtActFile", "changed");
  }
  /// 1 when both sets are stored, once, with these texts.
  int Stored(const std::string& period, const std::string& act_file) {
    const auto sources = ReadAllDataSources(desk.host, desk.publics.environment);
    const auto sets = ReadAllPeriodSets(desk.host, desk.publics.environment);
    return sources.size() == 1 && sets.size() == 1 && sources[0].ActFile == act_file &&
           sources[0].MoneySets[0].Measure == "Amount" && sets[0].Period(1).PeriodName == period;
  }
  Form& form() { return window->form(); }

  test::RealDesk desk;
  std::unique_ptr<FrmPeriods> window;
};

/// While it lives no file of this process can be written to.
class FullDisk {
 public:
  FullDisk() {
    std::signal(SIGXFSZ, SIG_IGN);
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit none{0, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &none);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &before_); }

 private:
  rlimit before_{};
};

TEST_F(SaveFailuresTest, WhatTheDatabaseRefusesIsToldForEachSetAndStaysInTheWindow) {
  Prepare();
  struct {
    const char* why;
    std::function<void()> save;
  } const cases[] = {{"locked",
                      [this] {
                        const auto other = OpenSettings(desk.host, desk.publics.environment);
                        const Transaction save(*other, Purpose::kSave);
                        form().Click("ComSaveSet");
                      }},
                     {"disk", [this] {
                        const FullDisk disk;
                        form().Click("ComSaveSet");
                      }}};
  for (const auto& [why, save] : cases) {
    save();
    const auto told = [why = why](const std::string& procedure) {
      const std::string where = "\r\n\r\nError saving settings\r\n\r\nFunction : " + procedure +
                                "\r\nModule : FrmPeriods\"";
      return AllOf(Field(&MessageBox::icon, MessageIcon::kCritical),
                   Field(&MessageBox::text, AllOf(HasSubstr(why), HasSubstr(where))));
    };
    EXPECT_THAT(desk.TakeBoxes(), ElementsAre(told("SavePeriods"), told("SaveDataSourceInfo")));
    EXPECT_EQ(Stored("Spring", ""), 1);
  }
  form().Click("ComSaveSet");
  EXPECT_THAT(desk.TakeBoxes(), SizeIs(0));
  EXPECT_EQ(Stored("Changed", "changed"), 1);
}

TEST_F(SaveFailuresTest, ASetThatCouldNotBeLoadedIsNotReplacedUnseen) {
  Prepare();
  form().SetText("ComboPeriods", "Other");
  form().SetText("comboDataSource", "Other");
  form().Click("ComSaveSet");
  const auto stored = [this] {
    std::string all;
    for (const PeriodSet& set : ReadAllPeriodSets(desk.host, desk.publics.environment)) {
      all += set.SetName + "=" + set.Period(1).PeriodName + " ";
    }
    for (const auto& source : ReadAllDataSources(desk.host, desk.publics.environment)) {
      all += source.SetName + "=" + source.ActFile + " ";
    }
    return all;
  };
  const std::string before = "Half 1=Spring Other=Changed Sales= Other=changed ";
  ASSERT_EQ(stored(), before);
  for (const char* combo : {"ComboPeriods", "comboDataSource"}) {
    SCOPED_TRACE(combo);
    desk.files.calls = 0;
    desk.files.fail_at = 1;
    form().Choose(combo, 0);
    desk.files.fail_at = 0;
    EXPECT_THAT(desk.TakeBoxes(), SizeIs(1)) << "not loaded";
    form().Click("ComSaveSet");
    const auto boxes = desk.TakeBoxes();
    ASSERT_THAT(boxes, SizeIs(1));
    EXPECT_THAT(boxes[0].text, AllOf(HasSubstr("could not be loaded"), HasSubstr("delete it first"),
                                     HasSubstr(form().Text(combo))));
    EXPECT_EQ(stored(), before);
    form().SetText(combo, "Other");
  }
  form().Click("ComSaveSet");
  EXPECT_THAT(desk.TakeBoxes(), SizeIs(0)) << "under another name";
  form().Choose("ComboPeriods", 0);
  EXPECT_EQ(form().Text({"TextPeriod", 0}), "Spring") << "read at last";
  form().Click("ComSaveSet");
  EXPECT_THAT(desk.TakeBoxes(), SizeIs(0));
}

TEST_F(SaveFailuresTest, ARunThatTheDiskEndsAtAnyPointIsToldAndLeavesTheSettings) {
  Prepare();
  form().Click("ComSaveSet");
  const std::string workbook = desk.folder.File("out.xlsX");
  form().SetText("txtOutput", desk.folder.File("out"));
  int refused = 0;
  for (int fail_at = 1;; ++fail_at) {
    WriteWholeFile(desk.disk, workbook, "yesterday's");
    desk.files.calls = 0;
    desk.files.fail_at = fail_at;
    form().Click("cmdQuery");
    desk.files.fail_at = 0;
    const auto boxes = desk.TakeBoxes();
    if (desk.files.calls < fail_at) {
      EXPECT_THAT(boxes, SizeIs(0));
      EXPECT_NE(ReadWholeFile(desk.disk, workbook), "yesterday's");
      break;
    }
    ++refused;
    ASSERT_GE(boxes.size(), 1U) << fail_at;
    EXPECT_THAT(boxes[0].text, HasSubstr("the disk is full")) << fail_at;
    EXPECT_EQ(ReadWholeFile(desk.disk, workbook), "yesterday's") << fail_at;
    EXPECT_EQ(Stored("Changed", "changed"), 1) << fail_at;
  }
  EXPECT_GT(refused, 5);
}

}  // namespace
}  // namespace vok
