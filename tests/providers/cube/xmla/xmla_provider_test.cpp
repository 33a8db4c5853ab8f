// A cube server through the platform's objects, as the query run uses it.
#include "providers/cube/xmla/xmla_provider.h"

#include <gmock/gmock.h>

#include <fstream>
#include <map>

#include "native.h"
#include "tests/providers/cube/xmla/answers.h"
#include "tests/providers/cube/xmla/scripted_server.h"
#include "tests/support/failures.h"

namespace vok::xmla {
namespace {

using Texts = std::vector<std::string>;

/// Answers with the first recorded rows of which the request has both texts after "asked".
class XmlaProviderTest : public testing::Test {
 protected:
  XmlaProviderTest() {
    std::ifstream file(VOK_XMLA_ANSWERS + std::string("/catalogs.answers"));
    for (std::string line; std::getline(file, line);) {
      if (line.starts_with("asked ")) {
        answers_.emplace_back(line.substr(6), "");
      } else {
        answers_.back().second += line;
      }
    }
    answers_.emplace_back("<Execute <Statement>x &lt; \"y\"&#13;\n\xD7\x90</Statement>",
                          test::TwoByTwoContent("<Cell CellOrdinal=\"1\"><Value>7</Value></Cell>"));
  }
  test::Reply Answer(const std::string& request) {
    for (const auto& [asked, rows] : answers_) {
      const std::size_t blank = asked.find(' ');
      const bool fits = request.find(asked.substr(0, blank)) != std::string::npos &&
                        (blank == std::string::npos ||
                         request.find(asked.substr(blank + 1)) != std::string::npos);
      if (!fits) continue;
      ++counts_[asked];
      return test::Http("200 OK", "text/xml", test::Result(rows));
    }
    return test::Http("200 OK", "text/xml", test::Fault("Not expected", ""));
  }
  std::unique_ptr<CubeConnection> Connected(const std::string& catalog) {
    return provider_.Connect(
        "DATA SOURCE=" + http_.address() + ";PROVIDER=MSOLAP;Initial Catalog=[" + catalog + "];",
        nullptr);
  }
  std::unique_ptr<CubeDef> Cube(const std::string& name) {
    return Connected(name)->Structure()->CubeAt(0);
  }

  std::vector<std::pair<std::string, std::string>> answers_;  // by what is asked
  std::map<std::string, int> counts_;
  vok::test::NativeLocale locale_{"en_US"};
  test::ScriptedServer http_{[this](const std::string& request) { return Answer(request); }};
  XmlaCubeProvider provider_{locale_, {[] { return ServerSettings(); }, test::SystemTransport()}};
};

TEST_F(XmlaProviderTest, ShowsTheStructureAskingOnceForWhatIsLookedAt) {
  const auto cube = Cube("salesqel");
  EXPECT_EQ(cube->Name() + cube->DimensionAt(0)->Name(), "SalesQELMeasures");
  EXPECT_EQ(cube->FindDimension("Nothing"), nullptr);
  EXPECT_THROW(cube->DimensionAt(3), Failure);
  const auto date = cube->FindDimension("DATE");
  EXPECT_EQ(cube->DimensionAt(1)->Name(), date->Name());
  ASSERT_EQ(date->HierarchyCount(), 2u);
  EXPECT_EQ(date->HierarchyAt(1)->Name(), "Fiscal");
  const auto dates = date->HierarchyAt(0);
  EXPECT_EQ(dates->Name(), "Date");
  ASSERT_EQ(dates->LevelCount(), 3u);
  EXPECT_EQ(dates->LevelAt(0)->Name(), "Ever");
  EXPECT_TRUE(dates->LevelAt(0)->IsAll());
  EXPECT_FALSE(dates->LevelAt(1)->IsAll()) << "the name does not tell";
  const auto months = dates->LevelAt(2);
  EXPECT_EQ(dates->LevelAt(0)->Time(), LevelTime::kUntold);
  EXPECT_EQ(months->Time(), LevelTime::kMonths);
  EXPECT_EQ(counts_["MDSCHEMA_MEMBERS [Date].[Month]"], 0);
  Texts members;
  for (std::size_t i = 0; i < months->MemberCount(); ++i) {
    const auto member = months->MemberAt(i);
    members.push_back(member->Caption() + " " + member->UniqueName());
    for (auto up = member->Parent(); up; up = up->Parent()) members.back() += " < " + up->Name();
  }
  EXPECT_EQ(members, (Texts{"12. [Date].[2010].[12] < 2010 < All",
                            "2. [Date].[2010].[2] < 2010 < All", "None. [Date].[None] < All"}))
      << "in the server's order, by its names";
  EXPECT_THROW(months->MemberAt(3), Failure);
  for (const char* asked :
       {"MEMBERS [Date].[Month]", "MEMBERS [Date].[(All)]", "DIMENSIONS <CUBE_NAME>SalesQEL<"}) {
    EXPECT_EQ(counts_[std::string("MDSCHEMA_") + asked], 1) << asked;
  }
}

TEST_F(XmlaProviderTest, FindsACatalogByItsNameOrItsCubes) {
  EXPECT_EQ(Connected("SALES & MORE")->DefaultDatabase(), "Sales & more");
  EXPECT_EQ(counts_["MDSCHEMA_CUBES <CATALOG_NAME>Sales &amp; more<"], 0);
  EXPECT_EQ(Cube("Sales & more")->Name(), "Both");  // a catalog's first cube
  const auto by_cube = Connected("SalesQEL");
  EXPECT_EQ(by_cube->DefaultDatabase(), "Sales & more");
  EXPECT_EQ(by_cube->CatalogNames(), (Texts{"Sales & more", "Other"}));
  const struct {
    std::string text;
    const char* says;
    int32_t number = failure_number::kUnspecified;
  } kCases[] = {
      {http_.address() + ";Initial Catalog=[None]",
       "has no catalog \"None\", and none with a cube of that name. Its catalogs: \"Sales & "
       "more\", "},
      {http_.address() + ";Initial Catalog=Both",
       "a cube \"Both\" in several catalogs: \"Sales & more\", \"Other\""},
      {"x.cub", "is not the address of a cube server"},
      {http_.address() + ";Provider=Other", "\"Other\"", failure_number::kProviderNotFound},
  };
  for (const auto& [text, says, number] : kCases) {
    const Failure failure = vok::test::FailureOf(
        [&, &rest = text] { provider_.Connect("Data Source=" + rest, nullptr); });
    EXPECT_EQ(failure.number(), number) << text;
    EXPECT_THAT(failure.description(), testing::HasSubstr(says));
  }
}

TEST_F(XmlaProviderTest, AnswersStayWhenTheConnectionIsGone) {
  const auto cellset = Connected("Sales & more")->Execute("x < \"y\"\r\n\xD7\x90");
  EXPECT_EQ(cellset->Member(0, 1, 0).name, "m0");
  EXPECT_EQ(cellset->Cell(1), Value(7.0));
  EXPECT_THROW(cellset->PositionCount(2), Failure);
  EXPECT_EQ(http_.connections(), 1);

  const auto limited =
      provider_.Connect("Data Source=" + http_.address() + ";Max Cells=3", nullptr);
  EXPECT_THAT(vok::test::DescriptionOf([&] { limited->Execute("x < \"y\"\r\n\xD7\x90"); }),
              testing::HasSubstr("it has more than 3 cells"));
}

}  // namespace
}  // namespace vok::xmla
