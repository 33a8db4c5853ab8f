// Random queries on random cubes: the engine's answers against plain loops over the facts.
#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "platform/failure.h"
#include "providers/cube/olap/mdx/engine.h"
#include "tests/providers/cube/olap/mdx/case_file.h"
#include "tests/providers/cube/olap/mdx/small_cube.h"
#include "tests/support/reference_olap/random_cube.h"
#include "tests/support/reference_olap/random_mdx.h"

namespace vok::test {
namespace {

constexpr int kQueries = 30;  // of each cube

std::string Answer(const std::shared_ptr<const olap::CubeView>& cube, const std::string& mdx) {
  try {
    return Shown(*olap::RunMdx(cube, mdx), false);
  } catch (const Failure& failure) {
    return failure.description();
  }
}

void ExpectPlainAnswers(uint64_t seed) {
  const plain::RandomCube random = plain::MakeRandomCube(seed, "Plain");
  const BuiltCube built(
      CubeTexts{"<Schema name=\"Random\">" + random.schema + "</Schema>", random.tables});
  const auto cube = ViewOf(built);
  for (const auto& query : plain::RandomQueries(random.cube, "Plain", seed, false, kQueries)) {
    ASSERT_EQ(Answer(cube, query.mdx), query.answer)
        << "seed " << seed << ": " << query.mdx << "\n"
        << random.schema << random.tables.at("Plain_facts");
  }
}

/// VOKCUBE_SEEDS="1000 9000" in the environment: from the first to the last of other seeds.
TEST(RandomQueries, AreAnsweredAsByPlainLoops) {
  uint64_t first = 1;
  uint64_t last = 40;
  if (const char* seeds = std::getenv("VOKCUBE_SEEDS")) std::istringstream(seeds) >> first >> last;
  for (uint64_t seed = first; seed <= last; ++seed) ExpectPlainAnswers(seed);
}

}  // namespace
}  // namespace vok::test
