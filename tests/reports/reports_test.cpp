#include <gmock/gmock.h>

#include "reports/error_report.h"
#include "reports/query_log.h"
#include "reports/timing.h"
#include "tests/support/failures.h"
#include "tests/support/memory_host.h"

namespace vok {
namespace {

TEST(ErrorReport, HoldsWhatTheReportingProcedureGave) {
  struct {
    Failure failure;
    ErrorReport report;
    const char* text;
  } cases[] = {
      {{1111, "Database not Found", "S"},
       {.FunctionName = "CubtoXls", .ModuleName = "ModCubtoXls"},
       "Error : 1111\r\n\r\nDatabase not Found\r\n\r\nFunction : CubtoXls\r\nModule : ModCubtoXls"
       "\r\nSource : S"},
      {{-2147467259, "d", "S", 40},
       {.Extra = "extra", .FunctionName = "F", .ModuleName = "M"},
       "Error : -2147467259\r\n\r\nd\r\n\r\nextra\r\n\r\n\r\nCode Section : 40\r\nFunction : F"
       "\r\nModule : M\r\nSource : S"},
      {{5, "", ""}, {}, "Error : 5\r\n\r\n\r\n\r\nSource : "},
  };
  for (auto& [failure, report, text] : cases) EXPECT_EQ(ErrorReportText(failure, report, {}), text);
}

TEST(ErrorReport, HelpGoesWithAPositiveContextOnly) {
  struct {
    std::string file;
    int32_t context;
    std::string reported, box_file;
    int32_t box_context = 0;
  } const cases[] = {
      {"help.chm", 7, "help.chm", "help.chm", 7},
      {"", 7, "VokCubeQ17", "VokCubeQ17", 7},
      {"", -1, "VokCubeQ17", ""},
      {"help.chm", 0, "help.chm", ""},
      {"", 0, "", ""},
  };
  for (const auto& [file, context, reported, box_file, box_context] : cases) {
    test::MemoryHost memory;
    ErrorReport report{.HelpFile = file, .HelpContext = context};
    ShowErrorReport(memory.host, Failure(5, "d"), report);
    const std::string text = ErrorReportText(Failure(5, "d"), report, memory.host.component);
    EXPECT_EQ(report.HelpFile, reported) << file << context;
    const MessageBox box{text,     "VokCubeQ17", MessageIcon::kCritical, MessageButtons::kOk,
                         box_file, box_context};
    EXPECT_TRUE(memory.boxes.boxes == std::vector{box}) << file << context;
  }
}

class QueryLogTest : public testing::Test {
 protected:
  QueryLogTest() { memory.registry.SetFolder("/s"); }
  std::string Written(const std::string& text, bool append, int16_t width, bool format) {
    memory.files.files[kFile] = "old";
    WriteQueryLog(memory.host, environment, text, "MdxQry", append, width, format);
    return memory.files.files[kFile];
  }
  static constexpr char kFile[] = "/s\\Log\\MdxQry.log";
  test::MemoryHost memory;
  Environment environment;
};

TEST_F(QueryLogTest, BreaksLinesByUtf16UnitsAndNeverInsideACharacter) {
  const std::string a(80, 'a'), b(80, 'b'), c(40, 'c');
  std::string hebrew;
  for (int i = 0; i < 80; ++i) hebrew += "ש";
  const std::string a79(79, 'a');
  struct {
    std::string text;
    int16_t width;
    std::string lines;
  } const cases[] = {
      {a + b + c, 80, a + "\r\n" + b + "\r\n" + c + "\r\n"},
      {a, 80, a + "\r\n"},
      {a + b, 80, a + "\r\n" + b + "\r\n"},
      {a + "x", 80, a + "\r\nx\r\n"},
      {"", 80, "\r\n"},
      {hebrew + "x", 80, hebrew + "\r\nx\r\n"},
      {a79 + "😀", 80, a79 + "\r\n😀\r\n"},
      {"😀😀", 1, "😀\r\n😀\r\n"},
      {"abc", 0, "abc\r\n"},
      {"abc", -1, "abc\r\n"},
      {"a\r\nb", 2, "a\r\r\n\nb\r\n"},
  };
  for (const auto& [text, width, lines] : cases) {
    EXPECT_EQ(Written(text, false, width, false), lines) << text;
    EXPECT_EQ(Written(text, true, width, false), "old\r\n\r\n" + lines) << text;
  }
}

TEST_F(QueryLogTest, FormatPutsLineEndsAtKeywordsInTheOrderOfItsRules) {
  struct {
    const char* text;
    const char* formatted;
  } const cases[] = {
      {"a,b;c", "a,\r\nb;\r\nc"},
      {"a and b Or c", "a \r\nAND b \r\nOR c"},
      {"x where y", "x  \r\nWHERE y"},
      {"select a from b", " \r\nSELECT\r\n a \r\n FROM \r\nb"},
      {"a options b", "a  \r\nOPTIONS b"},
      {"dimension inner join\tz", " \r\nDIMENSION  \r\nINNER JOIN\t\r\nz"},
      {"a and and b", "a \r\nAND and b"},
      {"a, or b", "a,\r\n \r\nOR b"},
      {"selectselect", " \r\nSELECT\r\n \r\nSELECT\r\n"},
      {"", ""},
  };
  for (const auto& [text, formatted] : cases) {
    EXPECT_EQ(Written(text, false, 80, true), std::string(formatted) + "\r\n") << text;
  }
  const std::string wide(200, 'a');
  EXPECT_EQ(Written(wide, false, 80, true), wide + "\r\n");
}

TEST_F(QueryLogTest, GoesToTheLogFolderOrTheComponentsOwn) {
  WriteQueryLog(memory.host, environment, "q", "MdxQry", true, 80, false);
  EXPECT_TRUE(memory.files.folders.contains("/s\\Log"));
  EXPECT_EQ(memory.files.files[kFile], "\r\n\r\nq\r\n") << "a new file begins in the same way";

  memory.registry.values.clear();
  WriteQueryLog(memory.host, environment, "q", "MdxQry0", false, 80, false);
  EXPECT_EQ(memory.files.files["component\\MdxQry0.log"], "q\r\n");
}

TEST_F(QueryLogTest, FailsWithTheFilesFailureAndSaysWhatToDo) {
  const auto expect_failure = [&](const std::string& refused, bool append) {
    memory.files.refused = {refused};
    const Failure failure = test::FailureOf([&] { Written("q", append, 80, false); });
    EXPECT_EQ(failure.number(), failure_number::kPathAccess);
    EXPECT_THAT(failure.description(),
                testing::AllOf(testing::StartsWith("Path/File access error: " + refused),
                               testing::HasSubstr("settings folder")));
  };
  expect_failure("/s\\Log", true);
  memory.files.folders = {"/s\\Log"};
  expect_failure(kFile, true);
  expect_failure(kFile, false);
}

TEST(Timing, MeasuresSecondsOfTheClock) {
  constexpr double kFails = -1;
  struct {
    uint32_t start, finish;
    double seconds;
  } const cases[] = {
      {1000, 2500, 1.5},
      {0, 0, 0},
      {0, 0x7FFFFFFF, 2147483.647},
      {0xFFFFFFFF, 499, 0.5},
      {0x80000000, 0x80000001, 0.001},
      {0x7FFFFFFF, 0x80000000, kFails},
      {0x80000000, 0, kFails},
  };
  for (const auto& [start, finish, seconds] : cases) {
    test::FixedClock clock;
    Timing timing(clock);
    clock.milliseconds = 3000;  // of an earlier run
    timing.Start();
    clock.milliseconds = 7000;
    timing.Finish();
    clock.milliseconds = start;
    timing.Start();
    EXPECT_EQ(timing.ElapsedTime(), Value(0.0)) << start;
    clock.milliseconds = finish;
    EXPECT_EQ(test::NumberOf([&] { timing.Finish(); }) != 0, seconds == kFails) << start;
    EXPECT_EQ(timing.ElapsedTime(), Value(seconds == kFails ? 0.0 : seconds)) << start;
  }
}

}  // namespace
}  // namespace vok
