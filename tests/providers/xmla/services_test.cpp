// A cube server through the platform's objects, as the query run uses it.
#include <gtest/gtest.h>

#include <map>

#include "platform/failure.h"
#include "providers/posix/icu_locale.h"
#include "providers/xmla/cube_services.h"
#include "tests/providers/xmla/answers.h"
#include "tests/providers/xmla/scripted_server.h"

namespace vok::xmla {
namespace {

std::string Element(const std::string& name, const std::string& text) {
  return "<" + name + ">" + text + "</" + name + ">";
}

std::string MemberRow(const std::string& unique_name, const std::string& name,
                      const std::string& parent) {
  return "<row>" + Element("MEMBER_NAME", name) + Element("MEMBER_CAPTION", name + ".") +
         Element("MEMBER_UNIQUE_NAME", unique_name) +
         (parent.empty() ? "" : Element("PARENT_UNIQUE_NAME", parent)) + "</row>";
}

std::string LevelRow(const std::string& name, int number) {
  return "<row>" + Element("LEVEL_NAME", name) +
         Element("LEVEL_UNIQUE_NAME", "[Date].[" + name + "]") +
         Element("LEVEL_NUMBER", std::to_string(number)) + "</row>";
}

std::string DimensionRow(const std::string& name, int ordinal, int type) {
  return "<row>" + Element("DIMENSION_NAME", name) +
         Element("DIMENSION_UNIQUE_NAME", "[" + name + "]") +
         Element("DIMENSION_ORDINAL", std::to_string(ordinal)) +
         Element("DIMENSION_TYPE", std::to_string(type)) + "</row>";
}

/// Answers by what a request asks for and is restricted to; a row of the table per question.
class ServicesTest : public testing::Test {
 protected:
  test::Reply Answer(const std::string& request) {
    for (const auto& [asked, rows] : answers_) {
      const std::size_t bar = asked.find('|');
      const bool fits =
          request.find(asked.substr(0, bar)) != std::string::npos &&
          (bar == std::string::npos || request.find(asked.substr(bar + 1)) != std::string::npos);
      if (!fits) continue;
      ++counts_[asked];
      return test::Http("200 OK", "text/xml", test::Result(rows));
    }
    return test::Http("200 OK", "text/xml", test::Fault("Not expected", ""));
  }
  std::unique_ptr<CubeConnection> Connected(const std::string& catalog) {
    auto connection = services_.NewConnection();
    connection->Open(
        "DATA SOURCE=" + http_.address() + ";PROVIDER=MSOLAP;Initial Catalog=[" + catalog + "];",
        "", "", -1);
    return connection;
  }
  std::unique_ptr<CubeDef> Cube(const std::string& name) {
    const auto connection = Connected(name);
    const auto catalog = services_.NewCatalog();
    catalog->SetActiveConnection(*connection);
    return catalog->CubeAt(0);
  }

  const std::vector<std::pair<std::string, std::string>> answers_ = {
      {"DBSCHEMA_CATALOGS",
       "<row><CATALOG_NAME>Sales</CATALOG_NAME></row>"
       "<row><CATALOG_NAME>Other</CATALOG_NAME></row>"},
      {"MDSCHEMA_CUBES|<CATALOG_NAME>Sales",
       "<row><CUBE_NAME>$Line</CUBE_NAME></row>"
       "<row><CUBE_NAME>Both</CUBE_NAME></row>"
       "<row><CUBE_NAME>SalesQEL</CUBE_NAME></row>"},
      {"MDSCHEMA_CUBES|<CATALOG_NAME>Other", "<row><CUBE_NAME>Both</CUBE_NAME></row>"},
      {"MDSCHEMA_DIMENSIONS|<CUBE_NAME>SalesQEL",
       DimensionRow("ActX", 3, 3) + DimensionRow("Date", 1, 1) + DimensionRow("Measures", 2, 2)},
      {"MDSCHEMA_HIERARCHIES|[Date]",
       "<row><HIERARCHY_NAME>Date.Fiscal</HIERARCHY_NAME><HIERARCHY_UNIQUE_NAME>[Date].[Fiscal]"
       "</HIERARCHY_UNIQUE_NAME><HIERARCHY_ORDINAL>2</HIERARCHY_ORDINAL></row>"
       "<row><HIERARCHY_UNIQUE_NAME>[Date]</HIERARCHY_UNIQUE_NAME>"
       "<HIERARCHY_ORDINAL>1</HIERARCHY_ORDINAL></row>"},
      {"MDSCHEMA_LEVELS|<HIERARCHY_UNIQUE_NAME>[Date]<",
       LevelRow("Year", 1) + LevelRow("Month", 2) + LevelRow("(All)", 0)},
      {"MDSCHEMA_MEMBERS|[Date].[Month]", MemberRow("[Date].[2010].[12]", "12", "[Date].[2010]") +
                                              MemberRow("[Date].[2010].[2]", "2", "[Date].[2010]") +
                                              MemberRow("[Date].[None]", "None", "[Date].[All]")},
      {"MDSCHEMA_MEMBERS|[Date].[Year]", MemberRow("[Date].[2010]", "2010", "[Date].[All]")},
      {"MDSCHEMA_MEMBERS|[Date].[(All)]", MemberRow("[Date].[All]", "All", "")},
      {"<Execute", test::TwoByTwoContent("<Cell CellOrdinal=\"1\"><Value>7</Value></Cell>")},
  };
  std::map<std::string, int> counts_;
  IcuLocale locale_{"en_US"};
  test::ScriptedServer http_{[this](const std::string& request) { return Answer(request); }};
  XmlaCubeServices services_{locale_, [] { return XmlaSettings(); }};
};

TEST_F(ServicesTest, ShowsTheStructureAskingOnceForWhatIsLookedAt) {
  const auto cube = Cube("salesqel");
  EXPECT_EQ(cube->Name(), "SalesQEL");
  EXPECT_EQ(cube->DimensionAt(0)->Name(), "Measures");
  EXPECT_EQ(cube->DimensionAt(1)->Name(), "Date");
  EXPECT_EQ(cube->FindDimension("Nothing"), nullptr);
  EXPECT_THROW(cube->DimensionAt(3), Failure);
  const auto date = cube->FindDimension("DATE");
  ASSERT_EQ(date->HierarchyCount(), 2u);
  EXPECT_EQ(date->HierarchyAt(1)->Name(), "Fiscal");
  const auto dates = date->HierarchyAt(0);
  EXPECT_EQ(dates->Name(), "Date");
  ASSERT_EQ(dates->LevelCount(), 3u);
  EXPECT_EQ(dates->LevelAt(0)->Name(), "(All)");
  const auto months = dates->LevelAt(2);
  EXPECT_EQ(counts_["MDSCHEMA_MEMBERS|[Date].[Month]"], 0);
  ASSERT_EQ(months->MemberCount(), 3u);
  EXPECT_EQ(months->MemberAt(0)->Caption(), "12.");  // the server's order, its names
  EXPECT_EQ(months->MemberAt(1)->UniqueName(), "[Date].[2010].[2]");
  EXPECT_EQ(months->MemberAt(1)->Parent()->Name(), "2010");
  EXPECT_EQ(months->MemberAt(0)->Parent()->Parent()->Name(), "All");
  EXPECT_EQ(months->MemberAt(2)->Parent()->Name(), "All");
  EXPECT_EQ(months->MemberAt(2)->Parent()->Parent(), nullptr);
  EXPECT_THROW(months->MemberAt(3), Failure);
  EXPECT_EQ(counts_["MDSCHEMA_MEMBERS|[Date].[Month]"], 1);
  EXPECT_EQ(counts_["MDSCHEMA_MEMBERS|[Date].[Year]"], 1);
  EXPECT_EQ(counts_["MDSCHEMA_DIMENSIONS|<CUBE_NAME>SalesQEL"], 1);
}

TEST_F(ServicesTest, FindsACatalogByItsNameOrItsCubes) {
  EXPECT_EQ(Connected("SALES")->DefaultDatabase(), "Sales");
  EXPECT_EQ(counts_["MDSCHEMA_CUBES|<CATALOG_NAME>Sales"], 0);
  EXPECT_EQ(Cube("Sales")->Name(), "Both");  // a catalog's first cube
  const auto by_cube = Connected("SalesQEL");
  EXPECT_EQ(by_cube->DefaultDatabase(), "Sales");
  EXPECT_EQ(by_cube->CatalogNames(), (std::vector<std::string>{"Sales", "Other"}));
  const struct {
    std::string text;
    int32_t number;
    const char* says;
  } kCases[] = {
      {http_.address() + ";Initial Catalog=[None]", failure_number::kUnspecified,
       "has no catalog \"None\", and none with a cube of that name. Its catalogs: \"Sales\", "},
      {http_.address() + ";Initial Catalog=Both", failure_number::kUnspecified,
       "a cube \"Both\" in several catalogs: \"Sales\", \"Other\""},
      {"x.cub", failure_number::kUnspecified, "is no address of a cube server"},
      {http_.address() + ";Provider=Other", failure_number::kProviderNotFound, "\"Other\""},
  };
  for (const auto& test : kCases) {
    try {
      services_.NewConnection()->Open("Data Source=" + test.text, "", "", -1);
      ADD_FAILURE() << test.text;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.number(), test.number) << test.text;
      EXPECT_NE(failure.description().find(test.says), std::string::npos) << failure.description();
    }
  }
}

TEST_F(ServicesTest, AnswersStayWhenTheConnectionIsGone) {
  const auto cellset = services_.NewCellset();
  EXPECT_THROW(cellset->Open(), Failure);
  {
    const auto connection = Connected("Sales");
    cellset->SetActiveConnection(*connection);
    connection->Close();
    EXPECT_THROW(connection->CatalogNames(), Failure);
    EXPECT_THROW(cellset->SetActiveConnection(*connection), Failure);
  }
  EXPECT_THROW(cellset->AxisCount(), Failure);
  cellset->SetSource("SELECT");
  cellset->Open();
  ASSERT_EQ(cellset->AxisCount(), 2u);
  EXPECT_EQ(cellset->AxisAt(0).MemberAt(1, 0).name, "m0");
  EXPECT_EQ(cellset->Cell(1), Value(7.0));
  EXPECT_THROW(cellset->AxisAt(2), Failure);
  EXPECT_EQ(http_.connections(), 1);
}

}  // namespace
}  // namespace vok::xmla
