#include "cube/discovery.h"

#include <gmock/gmock.h>

#include "tests/support/fake_cube.h"
#include "tests/support/memory_host.h"

namespace vok::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Names = std::vector<std::string>;

struct DiscoveryTest : ::testing::Test {
  DiscoveryTest() {
    memory.files.files["s.cub"] = "";
    cube.dimensions = {
        {"Measures",
         {{"MeasuresLevel",
           {{"Amount"}, {"Quantity"}, {"Sum of Quantity"}, {"Quantity sold"}, {"quantity"}}}}},
        {"actx", {{"Ledger", {{"decoy"}}}}, "xlFile"},
        {"ActX", {{"Ledger", {{"decoy"}}}}, "Accounts"},
        {"ActX",
         {{"Everything", {{"All"}}, true}, {"Ledger", {{"L1"}, {"L2"}}}, {"File", {{"F"}}}},
         "xlFile"},
        {"ActX", {{"Ledger", {{"decoy"}}}}, "XLFILE"},
        {"ACTX", {{"Ledger", {{"decoy"}}}}, "xlFile"},
        {"MoneySet", {{"(All)", {{"All"}}, true}, {"Code", {{"NIS"}, {"EUR"}}}}},
        {"moneyset", {{"Code", {{"decoy"}}}}},
        {"measures", {{"MeasuresLevel", {{"decoy"}}}}},
    };
  }

  FakeCube cube;
  FakeCubeProvider provider{cube};
  MemoryHost memory;
  Host host{memory.host.component, memory.files, memory.registry,
            memory.locale,         memory.clock, memory.boxes,
            memory.no_database,    provider,     memory.no_spreadsheet};
};

TEST_F(DiscoveryTest, CatalogsEndInQelAndTheDefaultOneIsChosen) {
  struct {
    Names catalogs;
    const char* standard;
    Names listed;
    std::optional<std::size_t> chosen;
  } const cases[] = {
      {{"A QEL", "Sales", "QEL", "qel", "QEL2"}, "QEL", {"A QEL", "QEL"}, 1},
      {{"A QEL", "QEL"}, "Sales", {"A QEL", "QEL"}, 0},
      {{"Sales", "EL"}, "Sales", {}, std::nullopt},
      {{}, "", {}, std::nullopt},
  };
  for (const auto& [catalogs, standard, listed, chosen] : cases) {
    cube.catalogs = catalogs;
    cube.default_catalog = standard;
    const QelCatalogs found = ListQelCatalogs(*OpenForCatalogs(host, "s.cub"));
    EXPECT_EQ(found.names, listed);
    EXPECT_EQ(found.chosen, chosen);
  }
  EXPECT_EQ(
      cube.connection_calls[0],
      "connect Provider=MSOLAP;Data Source=s.cub;Client Cache Size=25;Auto Synch Period=10000");
}

TEST_F(DiscoveryTest, MeasuresMoneySetsAndMembersAreReadOverOneConnectionEach) {
  EXPECT_EQ(GetMeasFromCube(host, "s.cub", "A QEL"), (Value::Array{"Amount", "quantity"}));
  EXPECT_THAT(cube.connection_calls,
              ElementsAre("connect Provider=MSOLAP;Data Source=s.cub;Initial Catalog=A QEL;Client "
                          "Cache Size=25;Auto Synch Period=10000",
                          "close"));
  const MeasureChoices choices = ReadMeasureChoices(host, "s.cub", "QEL");
  EXPECT_THAT(choices.measures,
              ElementsAre("Amount", "Quantity", "Sum of Quantity", "Quantity sold", "quantity"));
  EXPECT_THAT(choices.money_sets, ElementsAre("NIS", "EUR"));
  EXPECT_THAT(ReadObsMembers(host, "s.cub", "QEL"), ElementsAre("L1", "L2"));
  cube.dimensions[3].hierarchy = "ActX.xlFile";
  cube.dimensions[3].levels[0] = {"(All)", {{"Any"}}};
  EXPECT_THAT(ReadObsMembers(host, "HTTP://server/xmla", "QEL"), ElementsAre("Any"))
      << "the level's name does not tell";
}

TEST_F(DiscoveryTest, NoCubeOffersNothingAndOneThatCannotBeOpenedSaysSo) {
  EXPECT_THAT(GetMeasFromCube(host, "", "QEL"), IsEmpty());
  EXPECT_THAT(GetMeasFromCube(host, "gone.cub", "QEL"), IsEmpty());
  EXPECT_THAT(ReadMeasureChoices(host, "", "QEL").measures, IsEmpty());
  EXPECT_THAT(ReadObsMembers(host, "", "QEL"), IsEmpty());
  EXPECT_THAT(cube.connection_calls, IsEmpty());
  cube.on_open = [] { throw Failure(failure_number::kUnspecified, "gone or damaged"); };
  EXPECT_THROW(GetMeasFromCube(host, "s.cub", "QEL"), Failure);
  EXPECT_THROW(ReadMeasureChoices(host, "gone.cub", "QEL"), Failure);
  EXPECT_THROW(ReadObsMembers(host, "gone.cub", "QEL"), Failure);
}

}  // namespace
}  // namespace vok::test
