// Which members a hierarchy gets from its table, and in which order.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/failure.h"
#include "tests/support/cubes/sample_cube.h"

namespace vok::olap {
namespace {

test::CubeTexts WithHierarchy(const std::string& hierarchy, const std::string& rows) {
  return {
      "<Schema name=\"S\"><Cube name=\"C\"><Table name=\"fact\"/><Dimension name=\"D\" "
      "foreignKey=\"id\">" +
          hierarchy + "</Dimension><Measure name=\"N\" aggregator=\"count\"/></Cube></Schema>",
      {{"d", rows}, {"fact", "id\n1\n"}}};
}

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
  const struct {
    const char* levels;
    const char* rows;
    Names members;
  } cases[] = {
      {R"(<Level name="L" column="k" type="Integer"/>)",
       "1,10\n2,9\n3,-1\n4,\n5,007\n",
       {"-1", "7", "9", "10", "#null"}},
      {R"(<Level name="L" column="k" type="Numeric"/>)",
       "1,1.50\n2,1.5\n3,1e1\n4,2\n",
       {"1.5", "2", "10"}},
      {R"(<Level name="L" column="k"/>)",
       "1,b\n2,10\n3,9\n4,ä\n5,B\n6,\"\"\n7,\n",
       {"", "10", "9", "B", "b", "ä", "#null"}},
      {R"(<Level name="L" column="k" ordinalColumn="o"/>)",
       "1,a,10\n2,b,9\n3,c,9\n4,d,\n",
       {"b", "c", "a", "d"}},
      {R"(<Level name="L" column="k" ordinalColumn="o"/>)",
       "1,a,10\n2,b,9\n3,c,x\n",
       {"a", "b", "c"}},
      {R"(<Level name="L" column="k" nameColumn="o" captionColumn="c"/>)",
       "1,2,two,zwei\n2,1,one,\n3,2,ignored,ignored\n",
       {"one", "two=zwei"}},
      {R"(<Level name="L" column="k"/><Level name="M" column="o" type="Integer"/>)",
       "1,b,2\n2,a,3\n3,b,1\n4,a,1\n5,b,2\n",
       {"a", "b", "1", "3", "1", "2"}},
  };
  for (const auto& each : cases) {
    std::string rows = "id,k,o,c\n";
    std::string line;
    for (const char* at = each.rows; *at != '\0'; ++at) {
      if (*at == '\n') {
        while (std::count(line.begin(), line.end(), ',') < 3) line += ',';
        rows += line + "\n";
        line.clear();
      } else {
        line += *at;
      }
    }
    const std::string hierarchy = std::string("<Hierarchy hasAll=\"false\" primaryKey=\"id\">") +
                                  "<Table name=\"d\"/>" + each.levels + "</Hierarchy>";
    EXPECT_EQ(MembersOf(WithHierarchy(hierarchy, rows)), each.members) << each.levels << rows;
  }
}

TEST(Members, TheAllMemberIsNamedAsServersNameIt) {
  const std::string level = "<Table name=\"d\"/><Level name=\"L\" column=\"id\"/></Hierarchy>";
  EXPECT_EQ(MembersOf(WithHierarchy("<Hierarchy primaryKey=\"id\">" + level, "id\n1\n"))[0],
            "All Ds");
  EXPECT_EQ(MembersOf(WithHierarchy("<Hierarchy primaryKey=\"id\" name=\"H\" "
                                    "allMemberCaption=\"Everything\">" +
                                        level,
                                    "id\n1\n"))[0],
            "All Hs=Everything");
}

TEST(Members, TwoKeysOfOneNameAreRefused) {
  const std::string hierarchy =
      "<Hierarchy primaryKey=\"id\"><Table name=\"d\"/><Level name=\"L\" column=\"id\" "
      "nameColumn=\"n\"/></Hierarchy>";
  EXPECT_THROW(MembersOf(WithHierarchy(hierarchy, "id,n\n1,same\n2,same\n")), Failure);
}

TEST(Members, SharedDimensionsServeSeveralCubes) {
  const std::string cube =
      "<Cube name=\"%\"><Table name=\"fact\"/><DimensionUsage name=\"When%\" source=\"D\" "
      "foreignKey=\"id\"/><Measure name=\"N\" aggregator=\"count\"/></Cube>";
  std::string schema =
      "<Schema name=\"S\"><Dimension name=\"D\"><Hierarchy primaryKey=\"id\"><Table name=\"d\"/>"
      "<Level name=\"L\" column=\"id\"/></Hierarchy></Dimension>";
  for (const char letter : {'A', 'B'}) {
    for (const char each : cube) schema += each == '%' ? letter : each;
  }
  const test::BuiltCube built({schema + "</Schema>", {{"d", "id\n1\n"}, {"fact", "id\n1\n1\n"}}});
  ASSERT_EQ(built.file().cubes().size(), 2u);
  EXPECT_EQ(built.file().cubes()[1].model.dimensions[0].name, "WhenB");
  EXPECT_EQ(built.file().cubes()[1].facts->Read({{0}, {}, {}})[0].numbers[0], 2);
}

}  // namespace
}  // namespace vok::olap
