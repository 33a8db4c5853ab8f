// Answers: of the written queries, as a server gave them; of random ones, as plain loops do.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "native.h"
#include "providers/cube/olap/mdx/functions/registry.h"
#include "providers/cube/olap/olap_provider.h"
#include "tests/support/answers/answer.h"
#include "tests/support/cubes/sample_cube.h"
#include "tests/support/reference_olap/random_cube.h"

namespace vok::test {
namespace {

class MdxAnswers : public testing::Test {
 protected:
  /// 30 queries on a random cube.
  void ExpectPlainAnswers(uint64_t seed) {
    const plain::RandomCube random = plain::MakeRandomCube(seed, "Plain");
    const BuiltCube built(
        CubeTexts{"<Schema name=\"Random\">" + random.schema + "</Schema>", random.tables});
    ours_.Open("Plain", "Data Source=" + built.path());
    for (const auto& query : plain::RandomQueries(random.cube, "Plain", seed, false, 30)) {
      std::string answer = Shown(ours_.Ask("Plain", query.mdx), false);
      if (answer.find(plain::kUnknownMember) != answer.npos) answer = plain::kUnknownMember;
      ASSERT_EQ(answer, query.answer) << "seed " << seed << ": " << query.mdx << "\n"
                                      << random.schema << random.tables.at("Plain_facts");
    }
  }

  NativeFiles files_;
  NativeLocale locale_{"en_US"};
  olap::OlapCubeProvider provider_{files_, locale_};
  Side ours_{provider_};
};

TEST_F(MdxAnswers, ToWrittenQueriesAreAsRecordedForThreadsThatShareTheCubes) {
  const std::string interop = VOK_INTEROP;
  const TemporaryFolder folder;
  for (const std::string catalog : {"sample", "shapes", "declared"}) {
    const std::string schema = interop + "/sample/schemas/" + catalog + ".xml";
    const std::string output = folder.File(catalog + ".cub");
    olap::BuildCubeFile(files_, locale_, {schema, interop + "/sample/tables", output}, {});
    ours_.Open(catalog, "Data Source=" + output);
  }
  const std::vector<Case> cases = ReadCases(interop + "/cases");
  const auto ask_all = [&] {
    for (const Case& each : cases) {
      EXPECT_EQ(Shown(ours_.Ask(each.catalog, each.query), true), each.answer) << each.name << "\n"
                                                                               << each.query;
    }
  };
  std::vector<std::thread> threads;
  for (int count = 0; count < 4; ++count) threads.emplace_back(ask_all);
  for (std::thread& thread : threads) thread.join();
}

/// Ledgers Shop (1), SHOP (10), Straße (100) and STRASSE (1000), all in quarter q1 of the year '24.
TEST_F(MdxAnswers, PreferTheExactNameAndLetApostrophesStandInBrackets) {
  const BuiltCube built(CubeTexts{
      R"(<Schema name="S"><Cube name="C"><Table name="fact"/><Dimension name="Date"><Hierarchy>
<Level name="Year" column="y"/><Level name="Quarter" column="q"/></Hierarchy></Dimension>
<Dimension name="L"><Hierarchy><Level name="Ledger" column="l"/></Hierarchy></Dimension>
<Measure name="Owner's" column="n" aggregator="sum"/></Cube></Schema>)",
      {{"fact",
        "y,q,l,n\n'24,q1,Shop,1\n'24,q1,SHOP,10\n'24,Q1,Straße,100\n'24,q1,STRASSE,1000\n"}}});
  ours_.Open("S", "Data Source=" + built.path());
  const struct {
    std::string formula;
    const char* answer;
  } cases[] = {
      {"'([L].[All Ls].[Shop], [Measures].[Owner's])'", "\n1\n"},
      {"'([L].[SHOP], [Measures].[Owner''s])'", "\n10\n"},
      {"'([L].[All Ls].[Straße], [Measures].[Owner's]) '", "\n100\n"},
      {"([L].[strassE], [Measures].[Owner's])", "give capitals as they are there"},
      {"([L].[All Ls].[shop], [Measures].[Owner's])", "give capitals as they are there"},
      {"'SUM(LastPeriods(1,[Date].['24].[q1]),[Measures].[owner's]) ', SOLVE_ORDER = 1",
       "\n1011\n"},
      {"'Aggregate({[Date].['24].[Q1]}) /* [ */ + [Date].['24].[q1] --[' ", "\n1111\n"},
      {"'IIf(\"[\" = \"[\", 3, [Measures].[Owner's])'", "\n3\n"},
      {"'[L].[Shop']", "expected the end of the formula"},
  };
  for (const auto& each : cases) {
    const std::string query =
        "WITH MEMBER [Date].[m0] AS " + each.formula + " SELECT {[Date].[m0]} ON 0 FROM [C]";
    EXPECT_THAT(Shown(ours_.Ask("S", query), false), testing::HasSubstr(each.answer)) << query;
  }
}

/// VOKCUBE_SEEDS="1000 9000" in the environment: from the first to the last of other seeds.
TEST_F(MdxAnswers, ToRandomQueriesAreThoseOfPlainLoops) {
  uint64_t first = 1;
  uint64_t last = 40;
  if (const char* seeds = std::getenv("VOKCUBE_SEEDS")) std::istringstream(seeds) >> first >> last;
  for (uint64_t seed = first; seed <= last; ++seed) ExpectPlainAnswers(seed);
}

/// The document lists the functions that there are, no more and no fewer.
TEST(MdxFunctions, AreThoseOfTheDocument) {
  std::set<std::string> registered;
  for (const olap::Function& function : olap::Functions()) {
    registered.insert((function.is_property ? "." : "") + std::string(function.name));
  }
  std::set<std::string> documented;
  std::ifstream document(VOK_MDX_DOCUMENT);
  for (std::string line; std::getline(document, line);) {
    if (!line.starts_with("| `")) continue;
    const std::size_t end = line.find('`', 3);
    documented.insert(line.substr(3, end - 3));
  }
  EXPECT_EQ(documented, registered);
}

}  // namespace
}  // namespace vok::test
