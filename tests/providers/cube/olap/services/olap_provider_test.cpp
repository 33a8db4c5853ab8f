// The embedded cube through the platform's objects, as the query run uses it.
#include "providers/cube/olap/olap_provider.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "native.h"
#include "platform/failure.h"
#include "tests/support/cubes/sample_cube.h"

namespace vok::olap {
namespace {

struct OlapProviderTest : testing::Test {
  test::BuiltCube built{test::SampleTexts("small")};
  test::NativeFiles files;
  test::NativeLocale locale{"en_US"};
  OlapCubeProvider provider{files, locale};
  std::unique_ptr<CubeConnection> connection = provider.Connect(
      "DATA SOURCE=" + built.path() + ";PROVIDER=MSOLAP;Initial Catalog=[qel];", nullptr);
};

TEST_F(OlapProviderTest, ShowsTheStructureWithMeasuresFirst) {
  const auto cube = connection->Structure()->CubeAt(0);
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
  EXPECT_TRUE(dates->LevelAt(0)->IsAll());
  const auto months = dates->LevelAt(2);
  EXPECT_EQ(months->UniqueName(), "[Date].[Month]");
  EXPECT_EQ(months->MemberAt(months->MemberCount() - 1)->Parent()->Parent()->Name(), "All");
  EXPECT_FALSE(cube->FindDimension("Area")->HierarchyAt(0)->LevelAt(0)->IsAll());
  EXPECT_EQ(cube->FindDimension("Nothing"), nullptr);
  EXPECT_THROW(cube->DimensionAt(cube->DimensionCount()), Failure);
  EXPECT_THROW(months->MemberAt(months->MemberCount()), Failure);
}

TEST_F(OlapProviderTest, AnswersAfterTheConnectionIsGone) {
  std::filesystem::remove(built.path());
  const auto cellset =
      connection->Execute("SELECT {[Measures].[Units]} ON 0, {[QeL].Members} ON 1 FROM [QEL]");
  connection.reset();
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

}  // namespace
}  // namespace vok::olap
