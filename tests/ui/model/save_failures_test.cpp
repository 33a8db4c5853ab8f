// Saves that the machine refuses: told in an error report, and nothing lost.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "settings/set_lists.h"
#include "settings/set_writer.h"
#include "settings/settings_database.h"
#include "tests/support/child_process.h"
#include "tests/support/ui/real_desk.h"

namespace vok {
namespace {

using testing::AllOf;
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
  /// Saves; true when the refusal was told once for each half and both say `why`.
  bool SaveIsRefused(const std::string& why) {
    form().Click("ComSaveSet");
    const auto boxes = desk.TakeBoxes();
    bool told = boxes.size() == 2;
    const char* const procedures[] = {"SavePeriods", "SaveDataSourceInfo"};
    for (std::size_t i = 0; i < boxes.size(); ++i) {
      const std::string end = std::string("\r\n\r\nError saving settings\r\n\r\nFunction : ") +
                              procedures[std::min<std::size_t>(i, 1)] +
                              "\r\nModule : FrmPeriods\"\r\nSource : ";
      told = told && boxes[i].icon == MessageIcon::kCritical && boxes[i].title == "VokCubeQ17" &&
             boxes[i].text.find(end) != std::string::npos &&
             boxes[i].text.find(why) != std::string::npos;
      if (!told) std::fprintf(stderr, "shown: %s\n", boxes[i].text.c_str());
    }
    return told;
  }
  void ExpectOldSetsAndThenASave() {
    EXPECT_EQ(Stored("Spring", ""), 1);
    form().Click("ComSaveSet");
    EXPECT_THAT(desk.TakeBoxes(), SizeIs(0));
    EXPECT_EQ(Stored("Changed", "changed"), 1) << "what was entered was still in the window";
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

TEST_F(SaveFailuresTest, ALockedDatabase) {
  Prepare();
  {
    const auto other = OpenSettings(desk.host, desk.publics.environment);
    const Transaction save(*other, Purpose::kSave);
    EXPECT_TRUE(SaveIsRefused("lock"));
  }
  ExpectOldSetsAndThenASave();
}

TEST_F(SaveFailuresTest, AReadOnlyDatabase) {
  Prepare();
  const std::string file = desk.settings + "/CubToQel.mdb";
  ::chmod(file.c_str(), 0444);
  ::chmod(desk.folder.path().c_str(), 0755);
  ::chmod(desk.settings.c_str(), 0555);
  const pid_t child = test::Start([&] {
    if (::geteuid() == 0 && ::setuid(65534) != 0) throw Failure(1, "the rights stay");
    if (!SaveIsRefused("CubToQel.mdb")) throw Failure(1, "saved");
  });
  EXPECT_EQ(test::StatusOf(child), 0);
  ::chmod(desk.settings.c_str(), 0755);
  ::chmod(file.c_str(), 0644);
  ExpectOldSetsAndThenASave();
}

struct SmallDisk {
  explicit SmallDisk(const std::string& path) : folder(path) {
    mounted = ::mount("none", folder.c_str(), "tmpfs", 0, "size=256k") == 0;
  }
  ~SmallDisk() {
    if (mounted) ::umount2(folder.c_str(), MNT_DETACH);
  }
  std::string folder;
  bool mounted;
};

TEST_F(SaveFailuresTest, AFullDisk) {
  const SmallDisk disk(desk.settings);
  if (!disk.mounted) GTEST_SKIP() << "no right to mount a small file system";
  Prepare();
  const std::string ballast = desk.settings + "/ballast";
  for (std::ofstream file(ballast); file.put('x').flush();) {
    file << std::string(4096, 'x');
  }
  EXPECT_TRUE(SaveIsRefused("disk is full"));
  ::unlink(ballast.c_str());
  ExpectOldSetsAndThenASave();
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
