// Slices chosen by a seed, compared with plain loops over the facts.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

#include "tests/support/cubes/sample_cube.h"
#include "tests/support/reference_olap/random_cube.h"

namespace vok::olap {
namespace {

using plain::Cell;
using plain::Dice;

constexpr int kParts = 100;

uint32_t Below(Dice& dice, std::size_t limit) {
  return static_cast<uint32_t>(dice.Below(static_cast<int>(limit)));
}

/// Leaves as queries ask for them: mostly those of whole members, as stored aggregates have them.
std::vector<IdRange> RandomRanges(Dice& dice, const Hierarchy& hierarchy) {
  const uint32_t leaves = hierarchy.LeafCount();
  const uint32_t kind = Below(dice, 8);
  if (kind < 3) return {};
  if (kind < 5) {
    const MemberId first = Below(dice, hierarchy.MemberCount());
    const IdRange members = hierarchy.levels()[hierarchy.LevelOf(first)].members;
    const MemberId last = first + Below(dice, members.end - first);
    IdRange whole{hierarchy.Leaves(first).begin, hierarchy.Leaves(last).end};
    // A leaf more at an end is in no stored aggregate.
    if (whole.begin > 0 && Below(dice, 4) == 0) --whole.begin;
    if (whole.end < leaves && Below(dice, 4) == 0) ++whole.end;
    return {whole};
  }
  if (kind < 7) {
    const uint32_t one = Below(dice, leaves);
    return {{one, one + 1 + (kind == 5 ? 0 : Below(dice, leaves - one))}};
  }
  std::vector<IdRange> ranges;
  for (uint32_t at = Below(dice, 3); at < leaves; at += 2 + Below(dice, 7)) {
    const uint32_t end = std::min(leaves, at + 1 + Below(dice, 3));
    ranges.push_back({at, end});
    at = end;
  }
  return ranges;
}

/// Of all measures; `grouped`: by the members of a level.
FactQuery RandomQuery(Dice& dice, const CubeModel& model, bool grouped) {
  FactQuery query;
  for (uint32_t i = 0; i < model.measures.size(); ++i) query.measures.push_back(i);
  for (const Hierarchy& hierarchy : model.hierarchies) {
    query.leaves.push_back(RandomRanges(dice, hierarchy));
  }
  if (grouped) {
    const uint32_t hierarchy = Below(dice, model.hierarchies.size());
    query.group = {hierarchy, Below(dice, model.hierarchies[hierarchy].levels().size())};
  }
  return query;
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
                                                        {12, {40000, 40, 40, kParts}},
                                                        // Years are stored, months are not: the
                                                        // rest of a period comes from the facts.
                                                        {28, {20000, 2000, 12, kParts}}};
  for (const auto& [seed, size] : cases) {
    const plain::RandomCube made = plain::MakeRandomCube(seed, "C", size);
    const test::BuiltCube built({"<Schema name=\"S\">" + made.schema + "</Schema>", made.tables});
    const CubeModel& model = built.cube().model;
    EXPECT_EQ(model.fact_count, made.cube.facts.size());
    ASSERT_EQ(model.hierarchies.size() + 1, made.cube.hierarchies.size());
    Dice dice(20100401);
    for (int round = 0; round < 200 && !testing::Test::HasFailure(); ++round) {
      SCOPED_TRACE(std::to_string(seed) + ", round " + std::to_string(round));
      ExpectPlainSums(built.cube(), made.cube, RandomQuery(dice, model, round % 5 != 0));
    }
  }
}

}  // namespace
}  // namespace vok::olap
