// Answers: of the written queries, as a server gave them; of random ones, as plain loops do.
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
      ASSERT_EQ(Shown(ours_.Ask("Plain", query.mdx), false), query.answer)
          << "seed " << seed << ": " << query.mdx << "\n"
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
