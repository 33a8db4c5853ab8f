// Which members a hierarchy gets from its table, and in which order.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/cubes/sample_cube.h"

namespace vok::olap {
namespace {

constexpr const char* kCube =
    R"(<Schema name="S"><Cube name="C"><Table name="fact"/><Dimension name="D" foreignKey="id">
<Hierarchy primaryKey="id" %</Hierarchy></Dimension>
<Measure name="N" aggregator="count"/></Cube></Schema>)";

/// "name=caption" where they differ, level by level.
std::vector<std::string> MembersOf(const test::CubeTexts& texts) {
  const test::BuiltCube built(texts);
  const Hierarchy& hierarchy = built.cube().model.hierarchies[0];
  std::vector<std::string> members;
  for (MemberId member = 0; member < hierarchy.MemberCount(); ++member) {
    const std::string name(hierarchy.Name(member));
    const std::string caption(hierarchy.Caption(member));
    members.push_back(name == caption ? name : name + "=" + caption);
  }
  return members;
}

TEST(Members, FollowTheirOrdinalsThenTheirKeys) {
  using Names = std::vector<std::string>;
  const std::string table = R"(hasAll="false"><Table name="d"/>)";
  const struct {
    std::string hierarchy;
    const char* rows;  // id, k, o, c
    Names members;
  } cases[] = {
      {table + R"(<Level name="L" column="k" type="Integer"/>)",
       "1,10,,\n2,9,,\n3,-1,,\n4,,,\n5,007,,\n",
       {"-1", "7", "9", "10", "#null"}},
      {table + R"(<Level name="L" column="k" type="Numeric"/>)",
       "1,1.50,,\n2,1.5,,\n3,1e1,,\n4,2,,\n",
       {"1.5", "2", "10"}},
      {table + R"(<Level name="L" column="k"/>)",
       "1,b,,\n2,10,,\n3,9,,\n4,ä,,\n5,B,,\n6,\"\",,\n7,,,\n",
       {"", "10", "9", "B", "b", "ä", "#null"}},
      {table + R"(<Level name="L" column="k" ordinalColumn="o"/>)",
       "1,a,10,\n2,b,9,\n3,c,9,\n4,d,,\n",
       {"b", "c", "a", "d"}},
      {table + R"(<Level name="L" column="k" ordinalColumn="o"/>)",
       "1,a,10,\n2,b,9,\n3,c,x,\n",
       {"a", "b", "c"}},
      {table + R"(<Level name="L" column="k" nameColumn="o" captionColumn="c"/>)",
       "1,2,two,zwei\n2,1,one,\n3,2,ignored,ignored\n",
       {"one", "two=zwei"}},
      {table + R"(<Level name="L" column="k"/><Level name="M" column="o" type="Integer"/>)",
       "1,b,2,\n2,a,3,\n3,b,1,\n4,a,1,\n5,b,2,\n",
       {"a", "b", "1", "3", "1", "2"}},
      // The All member is named as servers name it.
      {R"(><Table name="d"/><Level name="L" column="k"/>)", "1,a,,\n", {"All Ds", "a"}},
      {R"(name="H" allMemberCaption="Everything"><Table name="d"/><Level name="L" column="k"/>)",
       "1,a,,\n",
       {"All Hs=Everything", "a"}},
  };
  for (const auto& each : cases) {
    std::string schema = kCube;
    schema.replace(schema.find('%'), 1, each.hierarchy);
    EXPECT_EQ(
        MembersOf({schema, {{"d", std::string("id,k,o,c\n") + each.rows}, {"fact", "id\n1\n"}}}),
        each.members)
        << schema << each.rows;
  }
}

TEST(Members, OfTheFactTableNeedNoTable) {
  const test::CubeTexts texts = {
      R"(<Schema name="S"><Cube name="C"><Table name="fact"/><Dimension name="D"><Hierarchy>
<Level name="L" column="k"/></Hierarchy></Dimension><Measure name="N" aggregator="count"/></Cube></Schema>)",
      {{"fact", "k\nb\n\na\nb\n"}}};
  EXPECT_EQ(MembersOf(texts), (std::vector<std::string>{"All Ds", "a", "b", "#null"}));
  const auto counts = test::BuiltCube(texts).cube().facts->Read({{0}, {}, FactQuery::Group{0, 1}});
  EXPECT_THAT(counts[0].numbers, testing::ElementsAre(1, 2, 1));
}

TEST(Ledger, HasDatesAloneForTimesAndNamesItsAllLevel) {
  const test::BuiltCube built(test::SampleLedger());
  std::string times;
  for (const Dimension& dimension : built.cube().model.dimensions) {
    if (dimension.is_time) times += dimension.name;
  }
  EXPECT_EQ(times, "Date");
  EXPECT_EQ(built.cube().model.hierarchies[2].levels()[0].name, "Everything");
}

}  // namespace
}  // namespace vok::olap
