// Slices chosen by a seed, compared with plain loops over the facts.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <thread>
#include <utility>
#include <vector>

#include "tests/providers/cube/olap/storage/random_query.h"
#include "tests/support/cubes/sample_cube.h"

namespace vok::olap {
namespace {

using plain::Cell;
using plain::Dice;

constexpr int kParts = 100;

test::CubeTexts TextsOf(const plain::RandomCube& cube) {
  return {"<Schema name=\"S\">" + cube.schema + "</Schema>", cube.tables};
}

/// Members have their places by their names from the top.
void ExpectSameMembers(const Hierarchy& found, const plain::Hierarchy& expected) {
  ASSERT_EQ(found.levels().size(), expected.levels.size());
  for (std::size_t level = 0; level < expected.levels.size(); ++level) {
    const IdRange members = found.levels()[level].members;
    ASSERT_EQ(members.size(), expected.levels[level].members.size());
    for (uint32_t i = 0; i < members.size(); ++i) {
      EXPECT_EQ(found.UniqueName(members.begin + i),
                expected.levels[level].members[i]->unique_name);
    }
  }
}

bool Takes(const FactQuery& query, const plain::Fact& fact) {
  for (std::size_t h = 0; h < query.leaves.size(); ++h) {
    const auto leaf = static_cast<uint32_t>(fact.leaves[h + 1]->place);
    const auto takes = [leaf](IdRange range) { return leaf >= range.begin && leaf < range.end; };
    const std::vector<IdRange>& ranges = query.leaves[h];
    if (!ranges.empty() && std::none_of(ranges.begin(), ranges.end(), takes)) return false;
  }
  return true;
}

int GroupOf(const FactQuery& query, const plain::Fact& fact) {
  if (!query.group) return 0;
  const plain::Member* member = fact.leaves[query.group->hierarchy + 1];
  while (member->level > query.group->level) member = member->parent;
  return member->place;
}

/// Folded without the errors of doubles: the parts are whole numbers.
Cell Exactly(std::string_view aggregator, std::vector<Cell> values) {
  for (Cell& value : values) {
    if (value) value = std::round(*value * kParts);
  }
  const Cell folded = plain::Folded(aggregator, values);
  return folded && !aggregator.ends_with("count") ? Cell(*folded / kParts) : folded;
}

void ExpectPlainSums(const StoredCube& stored, const plain::Cube& cube, const FactQuery& query) {
  std::map<int, std::vector<const plain::Fact*>> groups;
  for (const plain::Fact& fact : cube.facts) {
    if (Takes(query, fact)) groups[GroupOf(query, fact)].push_back(&fact);
  }
  const auto columns = stored.facts->Read(query);
  ASSERT_EQ(columns.size(), plain::kMeasures.size());
  const std::size_t count =
      query.group
          ? cube.hierarchies[query.group->hierarchy + 1].levels[query.group->level].members.size()
          : 1;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    ASSERT_EQ(columns[i].numbers.size(), count);
    for (std::size_t group = 0; group < count; ++group) {
      std::vector<Cell> values;
      for (const plain::Fact* fact : groups[static_cast<int>(group)]) {
        values.push_back(fact->*plain::kMeasures[i].cell);
      }
      const Cell cell = Exactly(plain::kMeasures[i].aggregator, values);
      ASSERT_EQ(columns[i].states[group] == CellState::kNumber, cell.has_value()) << i;
      ASSERT_EQ(columns[i].numbers[group], cell.value_or(0)) << i;
    }
  }
}

TEST(RandomSlices, AgreeWithPlainLoops) {
  const std::pair<uint64_t, plain::CubeSize> cases[] = {{1, {2, 1, 1, kParts}},
                                                        {2, {300, 13, 7, kParts}},
                                                        {3, {5000, 400, 400, kParts}},
                                                        {12, {40000, 40, 40, kParts}}};
  for (const auto& [seed, size] : cases) {
    const plain::RandomCube made = plain::MakeRandomCube(seed, "C", size);
    const test::BuiltCube built(TextsOf(made));
    const CubeModel& model = built.cube().model;
    EXPECT_EQ(model.fact_count, made.cube.facts.size());
    ASSERT_EQ(model.hierarchies.size() + 1, made.cube.hierarchies.size());
    for (std::size_t h = 0; h < model.hierarchies.size(); ++h) {
      ExpectSameMembers(model.hierarchies[h], made.cube.hierarchies[h + 1]);
    }
    Dice dice(20100401);
    for (int round = 0; round < 200 && !testing::Test::HasFailure(); ++round) {
      SCOPED_TRACE(std::to_string(seed) + ", round " + std::to_string(round));
      ExpectPlainSums(built.cube(), made.cube, RandomQuery(dice, model, round % 5 != 0));
    }
  }
}

TEST(RandomSlices, AreTheSameForEveryThread) {
  const test::CubeTexts texts = TextsOf(plain::MakeRandomCube(17, "C", {20000, 60, 60}));
  const test::BuiltCube alone(texts);
  const test::BuiltCube shared(texts);
  using Values = std::vector<std::pair<CellState, double>>;
  const auto read_all = [](const StoredCube& cube) {
    Dice same(1);
    Values all;
    for (int round = 0; round < 60; ++round) {
      for (const auto& column : cube.facts->Read(RandomQuery(same, cube.model, round % 3 != 0))) {
        for (std::size_t i = 0; i < column.numbers.size(); ++i) {
          all.emplace_back(column.states[i], column.numbers[i]);
        }
      }
    }
    return all;
  };
  const Values expected = read_all(alone.cube());
  std::array<Values, 4> results;
  std::vector<std::thread> threads;
  for (Values& result : results) {
    threads.emplace_back([&] { result = read_all(shared.cube()); });
  }
  for (std::thread& thread : threads) thread.join();
  for (const Values& result : results) EXPECT_TRUE(result == expected);
}

}  // namespace
}  // namespace vok::olap
