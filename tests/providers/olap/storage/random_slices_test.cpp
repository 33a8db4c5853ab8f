// Slices chosen by a seed, compared with plain loops over the facts.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <thread>
#include <vector>

#include "tests/support/cubes/sample_cube.h"
#include "tests/support/plain_olap/random_cube.h"

namespace vok::olap {
namespace {

using plain::Cell;
using plain::Dice;

constexpr int kParts = 100;

struct MadeCube {
  MadeCube(uint64_t seed, plain::CubeSize size) {
    size.parts = kParts;
    plain::MakeRandomCube(seed, "C", made, size);
  }
  test::CubeTexts Texts() const {
    return {"<Schema name=\"S\">" + made.schema + "</Schema>", made.tables};
  }

  plain::RandomCube made;
};

/// The members of a level; by their names from the top they are those of the file's.
std::map<const plain::Member*, uint32_t> NumbersOf(const plain::Level& level,
                                                   const Hierarchy& hierarchy, IdRange members) {
  EXPECT_EQ(members.size(), level.members.size());
  std::map<const plain::Member*, uint32_t> numbers;
  for (uint32_t i = 0; i < members.size(); ++i) {
    EXPECT_EQ(hierarchy.UniqueName(members.begin + i), level.members[i]->unique_name);
    numbers[level.members[i]] = i;
  }
  return numbers;
}

/// Leaves as queries ask for them: mostly those of whole members, as stored aggregates have them.
std::vector<IdRange> RandomRanges(Dice& dice, const Hierarchy& hierarchy) {
  const uint32_t leaves = hierarchy.LeafCount();
  const auto below = [&](uint32_t limit) {
    return static_cast<uint32_t>(dice.Below(static_cast<int>(limit)));
  };
  std::vector<IdRange> ranges;
  const uint32_t one = below(leaves);
  switch (below(8)) {
    case 0:
    case 1:
    case 2:
      return {};
    case 3:
    case 4: {
      const MemberId first = below(hierarchy.MemberCount());
      const IdRange members = hierarchy.levels()[hierarchy.LevelOf(first)].members;
      const MemberId last = first + below(members.end - first);
      return {{hierarchy.Leaves(first).begin, hierarchy.Leaves(last).end}};
    }
    case 5:
      return {{one, one + 1}};
    case 6:
      return {{one, one + 1 + below(leaves - one)}};
    default:
      for (uint32_t at = below(3); at < leaves; at += 2 + below(7)) {
        const uint32_t end = std::min(leaves, at + 1 + below(3));
        ranges.push_back({at, end});
        at = end;
      }
      return ranges;
  }
}

bool Takes(const std::vector<IdRange>& ranges, uint32_t leaf) {
  return ranges.empty() || std::any_of(ranges.begin(), ranges.end(), [leaf](IdRange range) {
           return leaf >= range.begin && leaf < range.end;
         });
}

FactQuery RandomQuery(Dice& dice, const CubeModel& model, bool grouped) {
  FactQuery query;
  for (uint32_t i = 0; i < model.measures.size(); ++i) query.measures.push_back(i);
  for (const Hierarchy& hierarchy : model.hierarchies) {
    query.leaves.push_back(RandomRanges(dice, hierarchy));
  }
  if (grouped) {
    const auto hierarchy =
        static_cast<uint32_t>(dice.Below(static_cast<int>(model.hierarchies.size())));
    const auto levels = model.hierarchies[hierarchy].levels().size();
    query.group = {hierarchy, static_cast<uint32_t>(dice.Below(static_cast<int>(levels)))};
  }
  return query;
}

/// Folded without the errors of doubles: the parts are whole numbers.
Cell Exactly(std::string_view aggregator, std::vector<Cell> values) {
  for (Cell& value : values) {
    if (value) value = std::round(*value * kParts);
  }
  const Cell folded = plain::Folded(aggregator, values);
  return folded && !aggregator.ends_with("count") ? Cell(*folded / kParts) : folded;
}

struct SliceCase {
  uint64_t seed;
  plain::CubeSize size;
};

class RandomSlices : public testing::TestWithParam<SliceCase> {};

TEST_P(RandomSlices, AgreeWithPlainLoops) {
  const MadeCube cube(GetParam().seed, GetParam().size);
  const auto& hierarchies = cube.made.cube.hierarchies;
  const test::BuiltCube built(cube.Texts());
  const CubeModel& model = built.cube().model;
  ASSERT_EQ(model.hierarchies.size() + 1, hierarchies.size());
  EXPECT_EQ(model.fact_count, cube.made.cube.facts.size());
  std::vector<std::vector<std::map<const plain::Member*, uint32_t>>> numbers;
  for (std::size_t h = 0; h < model.hierarchies.size(); ++h) {
    ASSERT_EQ(model.hierarchies[h].levels().size(), hierarchies[h + 1].levels.size());
    numbers.emplace_back();
    for (std::size_t level = 0; level < hierarchies[h + 1].levels.size(); ++level) {
      numbers[h].push_back(NumbersOf(hierarchies[h + 1].levels[level], model.hierarchies[h],
                                     model.hierarchies[h].levels()[level].members));
    }
  }
  Dice dice(20100401);
  for (int round = 0; round < 200; ++round) {
    const FactQuery query = RandomQuery(dice, model, round % 5 != 0);
    std::map<uint32_t, std::vector<const plain::Fact*>> groups;
    for (const plain::Fact& fact : cube.made.cube.facts) {
      bool taken = true;
      for (std::size_t h = 0; taken && h < numbers.size(); ++h) {
        taken = Takes(query.leaves[h], numbers[h].back().at(fact.leaves[h + 1]));
      }
      if (!taken) continue;
      uint32_t group = 0;
      if (query.group) {
        const plain::Member* member = fact.leaves[query.group->hierarchy + 1];
        while (member->level > query.group->level) member = member->parent;
        group = numbers[query.group->hierarchy][query.group->level].at(member);
      }
      groups[group].push_back(&fact);
    }
    const auto columns = built.cube().facts->Read(query);
    ASSERT_EQ(columns.size(), plain::kMeasures.size());
    const std::size_t count =
        query.group ? numbers[query.group->hierarchy][query.group->level].size() : 1;
    for (std::size_t measure = 0; measure < columns.size(); ++measure) {
      ASSERT_EQ(columns[measure].numbers.size(), count);
      for (uint32_t group = 0; group < count; ++group) {
        std::vector<Cell> values;
        for (const plain::Fact* fact : groups[group]) {
          values.push_back(fact->*plain::kMeasures[measure].cell);
        }
        const Cell cell = Exactly(plain::kMeasures[measure].aggregator, values);
        ASSERT_EQ(columns[measure].states[group] == CellState::kNumber, cell.has_value())
            << round << " " << measure;
        ASSERT_EQ(columns[measure].numbers[group], cell.value_or(0)) << round << " " << measure;
      }
    }
  }
}

TEST(RandomSlice, IsTheSameForEveryThread) {
  const test::CubeTexts texts = MadeCube(17, {20000, 60, 60}).Texts();
  const test::BuiltCube alone(texts);
  const test::BuiltCube shared(texts);
  const auto read_all = [](const StoredCube& cube) {
    Dice same(1);
    std::vector<FactColumn> all;
    for (int round = 0; round < 60; ++round) {
      for (auto& column : cube.facts->Read(RandomQuery(same, cube.model, round % 3 != 0))) {
        all.push_back(std::move(column));
      }
    }
    return all;
  };
  const auto expected = read_all(alone.cube());
  std::array<std::vector<FactColumn>, 4> results;
  std::vector<std::thread> threads;
  for (auto& result : results) {
    threads.emplace_back([&] { result = read_all(shared.cube()); });
  }
  for (std::thread& thread : threads) thread.join();
  for (const auto& result : results) {
    ASSERT_EQ(result.size(), expected.size());
    for (std::size_t column = 0; column < result.size(); ++column) {
      EXPECT_EQ(result[column].numbers, expected[column].numbers);
      EXPECT_EQ(result[column].states, expected[column].states);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Sizes, RandomSlices,
                         testing::Values(SliceCase{1, {2, 1, 1}}, SliceCase{2, {300, 13, 7}},
                                         SliceCase{3, {5000, 400, 400}},
                                         SliceCase{12, {40000, 40, 40}}));

}  // namespace
}  // namespace vok::olap
