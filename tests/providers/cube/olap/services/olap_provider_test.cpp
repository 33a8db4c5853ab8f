// The embedded cube through the platform's objects, as the query run uses it.
#include "providers/cube/olap/olap_provider.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "native.h"
#include "platform/failure.h"
#include "tests/support/cubes/sample_cube.h"
#include "tests/support/failures.h"

namespace vok::olap {
namespace {

class OlapProviderTest : public testing::Test {
 protected:
  std::unique_ptr<CubeConnection> Connected(const std::string& text) {
    return provider_.Connect(text, nullptr);
  }
  std::string RunText(const std::string& catalog) const {
    return "DATA SOURCE=" + cube_.path() + ";PROVIDER=MSOLAP;Initial Catalog=[" + catalog + "];";
  }
  std::unique_ptr<CubeDef> Cube() {
    const auto catalog = Connected(RunText("qel"))->Structure();
    EXPECT_EQ(catalog->CubeCount(), 1u);
    return catalog->CubeAt(0);
  }

  test::BuiltCube cube_{test::SampleTexts("small")};
  test::NativeFiles files_;
  test::NativeLocale locale_{"en_US"};
  OlapCubeProvider provider_{files_, locale_};
};

TEST_F(OlapProviderTest, ShowsTheStructureWithMeasuresFirst) {
  const auto cube = Cube();
  EXPECT_EQ(cube->Name(), "QEL");
  ASSERT_EQ(cube->DimensionCount(), 6u);
  const auto measures = cube->DimensionAt(0)->HierarchyAt(0)->LevelAt(0);
  EXPECT_EQ(measures->UniqueName(), "[Measures].[MeasuresLevel]");
  EXPECT_FALSE(measures->IsAll());
  ASSERT_EQ(measures->MemberCount(), 3u) << "not of other dimensions, nor one that is not visible";
  EXPECT_FALSE(measures->MemberAt(1)->IsCalculated());
  const auto computed = measures->MemberAt(2);
  EXPECT_TRUE(computed->IsCalculated());
  EXPECT_EQ(computed->UniqueName(), "[Measures].[Per Unit]");
  EXPECT_EQ(computed->Parent(), nullptr);

  const auto dates = cube->FindDimension("DATE")->HierarchyAt(0);
  ASSERT_EQ(dates->LevelCount(), 3u);
  EXPECT_TRUE(dates->LevelAt(0)->IsAll());
  const auto months = dates->LevelAt(2);
  EXPECT_EQ(months->UniqueName(), "[Date].[Month]");
  EXPECT_FALSE(months->IsAll());
  const auto last = months->MemberAt(months->MemberCount() - 1);
  EXPECT_EQ(last->UniqueName(), "[Date].[2010].[4]");
  EXPECT_EQ(last->Parent()->Parent()->Name(), "All");
  EXPECT_EQ(cube->FindDimension("actx")->HierarchyAt(0)->UniqueName(), "[ActX].[xlFile]");
  EXPECT_FALSE(cube->FindDimension("Area")->HierarchyAt(0)->LevelAt(0)->IsAll());
  EXPECT_EQ(cube->FindDimension("Nothing"), nullptr);
  EXPECT_THROW(cube->DimensionAt(6), Failure);
  EXPECT_THROW(months->MemberAt(months->MemberCount()), Failure);
}

TEST_F(OlapProviderTest, AnswersAfterTheConnectionIsGone) {
  auto connection = Connected(RunText("QEL"));
  EXPECT_EQ(connection->DefaultDatabase(), "QEL");
  EXPECT_EQ(connection->CatalogNames(), std::vector<std::string>{"QEL"});
  std::filesystem::remove(cube_.path());
  const auto cellset =
      connection->Execute("SELECT {[Measures].[Units]} ON 0, {[QeL].Members} ON 1 FROM [QEL]");
  connection.reset();
  ASSERT_EQ(cellset->PositionCount(1), 6u);
  EXPECT_EQ(cellset->Member(1, 5, 0).caption, "E]");
  EXPECT_TRUE(cellset->Cell(4).IsEmpty());
  EXPECT_THROW(cellset->Cell(6), Failure);
  EXPECT_THROW(cellset->PositionCount(2), Failure);
  EXPECT_THROW(cellset->Member(1, 6, 0), Failure);
  std::vector<double> numbers(4);
  std::vector<CellState> states(4);
  EXPECT_THROW(cellset->ReadCells(0, 2, numbers, states), Failure);
  std::vector<std::string_view> captions(3);
  EXPECT_THROW(cellset->ReadCaptions(1, 0, 4, captions), Failure);
}

TEST_F(OlapProviderTest, EndsQueriesThatAreCancelledOrPastALimit) {
  const auto number_of = [&](CubeConnection& connection) {
    return test::FailureOf([&] {
             connection.Execute("SELECT {[Measures].Members} ON 0, [Date].Members ON 1 FROM [QEL]");
           })
        .number();
  };
  QueryStop stop;
  const auto connection = provider_.Connect(RunText("QEL"), &stop);
  EXPECT_EQ(number_of(*connection), 0);
  stop.Ask();
  EXPECT_EQ(number_of(*connection), kQueryCancelled);
  EXPECT_EQ(number_of(*Connected(RunText("QEL") + "Timeout=1e-9")), failure_number::kTimeout);
  EXPECT_EQ(number_of(*Connected(RunText("QEL") + "Max Cells=10")), failure_number::kSyntax);
}

TEST_F(OlapProviderTest, SaysWhatIsWrongWithAConnection) {
  const struct {
    std::string text;
    int32_t number;
    const char* says;
  } kCases[] = {
      {RunText("Other"), failure_number::kUnspecified, "no catalog \"Other\". It has: \"QEL\""},
      {"Provider=MSOLAP;Data Source=/no-such.cub", failure_number::kFileNotFound, "such.cub"},
      {"Provider=Other;Data Source=x.cub", failure_number::kProviderNotFound, "\"Other\""},
      {"Provider=MSOLAP", failure_number::kUnspecified, "names no cube file"},
  };
  for (const auto& test : kCases) {
    const Failure failure = vok::test::FailureOf([&] { Connected(test.text); });
    EXPECT_EQ(failure.number(), test.number) << test.text;
    EXPECT_NE(failure.description().find(test.says), std::string::npos) << failure.description();
  }
}

}  // namespace
}  // namespace vok::olap
