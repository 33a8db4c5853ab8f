#include "cube/discovery.h"

#include <gmock/gmock.h>

#include "tests/support/cubes/watched_cube.h"
#include "tests/support/memory_host.h"

namespace vok::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Names = std::vector<std::string>;

struct DiscoveryTest : ::testing::Test {
  DiscoveryTest() { memory.files.files["s.cub"] = ""; }

  WatchedCube cube;
  MemoryHost memory;
  Host host = memory.On(memory.no_database, cube, memory.no_spreadsheet);
};

TEST_F(DiscoveryTest, CatalogsEndInQelAndTheDefaultOneIsChosen) {
  struct Catalogs : CubeConnection {
    std::string DefaultDatabase() const override { return standard; }
    Names CatalogNames() const override { return names; }
    std::unique_ptr<CubeCatalog> Structure() override { return nullptr; }
    std::unique_ptr<Cellset> Execute(const std::string&) override { return nullptr; }
    Names names;
    std::string standard;
  } connection;
  struct {
    Names catalogs;
    const char* standard;
    Names listed;
    std::optional<std::size_t> chosen;
  } const cases[] = {
      {{"A QEL", "Sales", "QEL", "qel", "QEL2"}, "QEL", {"A QEL", "QEL"}, 1},
      {{"A QEL", "QEL"}, "Sales", {"A QEL", "QEL"}, 0},
      {{"Sales", "EL"}, "Sales", {}, std::nullopt},
  };
  for (const auto& [catalogs, standard, listed, chosen] : cases) {
    connection.names = catalogs;
    connection.standard = standard;
    const QelCatalogs found = ListQelCatalogs(connection);
    EXPECT_EQ(found.names, listed);
    EXPECT_EQ(found.chosen, chosen);
  }
  OpenForCatalogs(host, "s.cub");
  EXPECT_THAT(cube.calls, ElementsAre("connect Provider=MSOLAP;Data Source=s.cub;"
                                      "Client Cache Size=25;Auto Synch Period=10000"));
}

TEST_F(DiscoveryTest, MeasuresMoneySetsAndMembersAreReadOverOneConnectionEach) {
  const auto decoy = [](const std::string& name) {
    return "<Hierarchy name='" + name +
           "' hasAll='true' primaryKey='act_id'><Table name='dim_act'/><Level name='File' "
           "column='file'/></Hierarchy>";
  };
  const std::string begin = "foreignKey=\"act_id\">", end = "column=\"file\"/>\n      </Hierarchy>";
  cube.Change("\"Units\"", "\"Sold Quantity, kg\"").Change("\"Facts\"", "\"quantity\"");
  cube.Change(begin, begin + decoy("xlFile2")).Change(end, end + decoy("Old.xlFile"));
  EXPECT_EQ(GetMeasFromCube(host, "s.cub", "A QEL"), (Value::Array{"Amount", "quantity"}));
  EXPECT_THAT(cube.calls,
              ElementsAre("connect Provider=MSOLAP;Data Source=s.cub;Initial Catalog=A QEL;Client "
                          "Cache Size=25;Auto Synch Period=10000",
                          "close"));
  const MeasureChoices choices = ReadMeasureChoices(host, "s.cub", "QEL");
  EXPECT_THAT(choices.measures, ElementsAre("Amount", "Sold Quantity, kg", "quantity"));
  EXPECT_THAT(choices.money_sets, ElementsAre("EUR", "NIS", "USD"));
  EXPECT_THAT(ReadObsMembers(host, "s.cub", "QEL"), ElementsAre("Ledger1", "Ledger2"));
  const struct {
    const char *from, *to;
    Names members;
  } cases[] = {
      {"\"xlFile\"", "\"ActX.xlFile\"", {"Ledger1", "Ledger2"}},
      {"\"xlFile\"", "\"XLFILE\"", {}},
      {"\"ActX\"", "\"ACTX\"", {}},
      {"hasAll=\"true\" allMemberName=\"All\" allLevelName=\"Everything\"",
       "hasAll=\"false\"",
       {"Ledger1", "Ledger2"}},
  };
  for (const auto& [from, to, members] : cases) {
    WatchedCube other;
    other.Change(from, to);
    const Host there = memory.On(memory.no_database, other, memory.no_spreadsheet);
    EXPECT_EQ(ReadObsMembers(there, "HTTP://server/xmla", "QEL"), members) << to;
  }
}

TEST_F(DiscoveryTest, NoCubeOffersNothingAndOneThatCannotBeOpenedSaysSo) {
  EXPECT_THAT(GetMeasFromCube(host, "", "QEL"), IsEmpty());
  EXPECT_THAT(GetMeasFromCube(host, "gone.cub", "QEL"), IsEmpty());
  EXPECT_THAT(ReadMeasureChoices(host, "", "QEL").measures, IsEmpty());
  EXPECT_THAT(ReadObsMembers(host, "", "QEL"), IsEmpty());
  EXPECT_THAT(cube.calls, IsEmpty());
  cube.on_open = [] { throw Failure(failure_number::kUnspecified, "gone or damaged"); };
  EXPECT_THROW(GetMeasFromCube(host, "s.cub", "QEL"), Failure);
  EXPECT_THROW(ReadMeasureChoices(host, "gone.cub", "QEL"), Failure);
  EXPECT_THROW(ReadObsMembers(host, "gone.cub", "QEL"), Failure);
}

}  // namespace
}  // namespace vok::test
