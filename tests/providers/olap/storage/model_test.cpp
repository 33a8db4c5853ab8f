#include "providers/olap/storage/model.h"

#include <gtest/gtest.h>

#include "tests/support/cubes/sample_cube.h"

namespace vok::olap {
namespace {

class SampleModel : public testing::Test {
 protected:
  const CubeModel& model() const { return built_.cube().model; }
  const Hierarchy& hierarchy(const std::string& name) const {
    for (const Hierarchy& each : model().hierarchies) {
      if (each.name() == name) return each;
    }
    throw std::out_of_range(name);
  }

 private:
  test::BuiltCube built_{test::SampleLedger()};
};

TEST_F(SampleModel, NamesWhatTheSchemaNames) {
  EXPECT_EQ(model().name, "QEL");
  EXPECT_EQ(model().fact_count, 240u);
  EXPECT_EQ(model().measures[2].UniqueName(), "[Measures].[Facts]");
  EXPECT_TRUE(model().dimensions[0].is_time);
  EXPECT_EQ(hierarchy("Date").unique_name(), "[Date]");
  EXPECT_EQ(hierarchy("xlFile").unique_name(), "[ActX].[xlFile]");
  EXPECT_EQ(hierarchy("Date").LevelUniqueName(3), "[Date].[Month]");
  EXPECT_EQ(hierarchy("Date").levels()[0].name, "(All)");
  EXPECT_EQ(hierarchy("Date").levels()[3].kind, LevelKind::kMonths);
}

TEST_F(SampleModel, MembersHaveUniqueNamesFromTheTop) {
  const Hierarchy& files = hierarchy("xlFile");
  const struct {
    const Hierarchy& hierarchy;
    MemberId member;
    std::string unique_name;
  } cases[] = {
      {files, 0, "[ActX].[xlFile].[All]"},
      {files, 1, "[ActX].[xlFile].[Ledger1]"},
      {files, 6, "[ActX].[xlFile].[Ledger2].[File1]"},
      {hierarchy("QeL"), 4, "[QeL].[310\tRent ]]\t\t\tMiete]"},
      {hierarchy("Date"), 1 + 2 + 6 + 17, "[Date].[2010].[2].[6]"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(each.hierarchy.UniqueName(each.member), each.unique_name);
  }
}

TEST_F(SampleModel, MembersKnowTheirKin) {
  const Hierarchy& date = hierarchy("Date");
  ASSERT_EQ(date.MemberCount(), 1u + 2 + 6 + 18);
  EXPECT_EQ(date.LeafCount(), 18u);
  EXPECT_EQ(date.Parent(0), kNoMember);
  EXPECT_EQ(date.Children(0), (IdRange{1, 3}));
  EXPECT_EQ(date.Children(2), (IdRange{7, 9}));
  EXPECT_EQ(date.Children(26), (IdRange{27, 27}));
  EXPECT_EQ(date.Leaves(0), (IdRange{0, 18}));
  EXPECT_EQ(date.Leaves(2), (IdRange{12, 18}));
  EXPECT_EQ(date.Leaves(8), (IdRange{15, 18}));
  EXPECT_EQ(date.Parent(26), 8u);
  EXPECT_EQ(date.LevelOf(0), 0u);
  EXPECT_EQ(date.LevelOf(8), 2u);
  EXPECT_EQ(date.LevelOf(26), 3u);
}

}  // namespace
}  // namespace vok::olap
