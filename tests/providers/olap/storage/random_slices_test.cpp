// Slices chosen by a seed, compared with plain loops over the facts.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/support/cubes/sample_cube.h"

namespace vok::olap {
namespace {

constexpr int kHierarchies = 5;

struct Fact {
  int month, account, line, kind;  // kind: a dimension that has no table
  int64_t cents;
  std::optional<int> units;
};

std::string Kind(int kind) { return kind == 3 ? "" : "k" + std::to_string(kind); }

/// The names from the top that lead to the fact's leaf in each hierarchy.
std::vector<std::string> Path(const Fact& fact, int hierarchy) {
  const auto text = [](int number) { return std::to_string(number); };
  switch (hierarchy) {
    case 0:
      return {text(2001 + fact.month / 12), text(fact.month % 12 + 1)};
    case 1:
      return {"L" + text(fact.account % 3), "F" + text(fact.account)};
    case 2:
      return {"group" + text(fact.account % 5)};
    case 3:
      return {"line" + text(fact.line)};
    default:
      return {Kind(fact.kind).empty() ? "#null" : Kind(fact.kind)};
  }
}

constexpr const char* kSchema = R"(<Schema name="S"><Cube name="C"><Table name="fact"/>
<Dimension name="Date" type="TimeDimension" foreignKey="month"><Hierarchy primaryKey="id"><Table name="month"/>
  <Level name="Year" column="y" type="Integer"/><Level name="Month" column="m" type="Integer"/></Hierarchy></Dimension>
<Dimension name="Account" foreignKey="account">
  <Hierarchy name="File" primaryKey="id"><Table name="account"/>
    <Level name="Ledger" column="ledger"/><Level name="File" column="file"/></Hierarchy>
  <Hierarchy name="Group" hasAll="false" primaryKey="id"><Table name="account"/>
    <Level name="Group" column="grp"/></Hierarchy></Dimension>
<Dimension name="Line" foreignKey="line"><Hierarchy hasAll="false" primaryKey="id"><Table name="line"/>
  <Level name="Line" column="name" ordinalColumn="id"/></Hierarchy></Dimension>
<Dimension name="Kind"><Hierarchy><Level name="Kind" column="kind"/></Hierarchy></Dimension>
<Measure name="Amount" column="amount" aggregator="sum"/><Measure name="Units" column="units" aggregator="sum"/>
<Measure name="Count" column="units" aggregator="count"/><Measure name="Rows" aggregator="count"/>
<Measure name="Least" column="units" aggregator="min"/><Measure name="Most" column="amount" aggregator="max"/>
</Cube></Schema>)";

struct Sizes {
  int facts, months, accounts, lines;
};

std::vector<Fact> RandomFacts(std::mt19937& random, const Sizes& sizes) {
  const auto below = [&](int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
  };
  std::vector<Fact> facts;
  for (int index = 0; index < sizes.facts; ++index) {
    Fact fact{below(sizes.months),      below(sizes.accounts),
              below(sizes.lines),       below(4),
              below(2000001) - 1000000, {}};
    if (below(4) != 0) fact.units = below(9) - 4;
    facts.push_back(fact);
    if (below(10) == 0)
      facts.push_back({fact.month, fact.account, fact.line, fact.kind, -fact.cents, {}});
  }
  return facts;
}

std::string Cents(int64_t cents) {
  const int64_t size = std::abs(cents);
  std::string text = cents < 0 ? "-" : "";
  text += std::to_string(size / 100) + "." + std::to_string(size % 100 / 10);
  return size % 10 == 0 ? text : text + std::to_string(size % 10);
}

test::CubeTexts TextsOf(const std::vector<Fact>& facts, const Sizes& sizes) {
  test::CubeTexts texts{kSchema, {}};
  std::string& months = texts.tables["month"] = "id,y,m\n";
  for (int i = 0; i < sizes.months; ++i) {
    months += std::to_string(i) + "," + std::to_string(2001 + i / 12) + "," +
              std::to_string(i % 12 + 1) + "\n";
  }
  std::string& accounts = texts.tables["account"] = "id,ledger,file,grp\n";
  for (int i = 0; i < sizes.accounts; ++i) {
    accounts += "a" + std::to_string(i) + ",L" + std::to_string(i % 3) + ",F" + std::to_string(i) +
                ",group" + std::to_string(i % 5) + "\n";
  }
  std::string& lines = texts.tables["line"] = "id,name\n";
  for (int i = 0; i < sizes.lines; ++i) {
    lines += std::to_string(i * 100000) + ",line" + std::to_string(i) + "\n";
  }
  std::string& rows = texts.tables["fact"] = "month,account,line,kind,amount,units\n";
  for (const Fact& fact : facts) {
    rows += std::to_string(fact.month) + ",a" + std::to_string(fact.account) + "," +
            std::to_string(fact.line * 100000) + "," + Kind(fact.kind) + "," + Cents(fact.cents) +
            "," + (fact.units ? std::to_string(*fact.units) : "") + "\n";
  }
  return texts;
}

/// The leaf's number by its names from the top.
std::map<std::vector<std::string>, uint32_t> LeavesByPath(const Hierarchy& hierarchy) {
  std::map<std::vector<std::string>, uint32_t> leaves;
  const IdRange members = hierarchy.levels().back().members;
  for (MemberId leaf = members.begin; leaf < members.end; ++leaf) {
    std::vector<std::string> path;
    for (MemberId at = leaf; at != kNoMember; at = hierarchy.Parent(at)) {
      if (!hierarchy.has_all() || at != 0) path.emplace(path.begin(), hierarchy.Name(at));
    }
    leaves[path] = leaf - members.begin;
  }
  return leaves;
}

using LeafIds = std::array<uint32_t, kHierarchies>;

struct Expected {
  int64_t cents = 0, units = 0, count = 0, rows = 0, least = 0, most = 0;

  void Add(const Fact& fact) {
    most = rows == 0 ? fact.cents : std::max(most, fact.cents);
    ++rows;
    cents += fact.cents;
    if (!fact.units) return;
    least = count == 0 ? *fact.units : std::min<int64_t>(least, *fact.units);
    ++count;
    units += *fact.units;
  }

  std::vector<std::optional<double>> Cells() const {
    if (rows == 0) return std::vector<std::optional<double>>(6);
    const auto number = [](int64_t value) { return static_cast<double>(value); };
    std::vector<std::optional<double>> cells(6);
    cells[0] = number(cents) / 100;
    cells[2] = number(count);
    cells[3] = number(rows);
    cells[5] = number(most) / 100;
    if (count > 0) {
      cells[1] = number(units);
      cells[4] = number(least);
    }
    return cells;
  }
};

/// Leaves as queries ask for them: mostly those of whole members, as stored aggregates have them.
std::vector<IdRange> RandomRanges(std::mt19937& random, const Hierarchy& hierarchy) {
  const uint32_t leaves = hierarchy.LeafCount();
  const auto below = [&](uint32_t limit) { return static_cast<uint32_t>(random() % limit); };
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

FactQuery RandomQuery(std::mt19937& random, const CubeModel& model, bool grouped) {
  FactQuery query{{0, 1, 2, 3, 4, 5}, {}, {}};
  for (const Hierarchy& hierarchy : model.hierarchies) {
    query.leaves.push_back(RandomRanges(random, hierarchy));
  }
  if (grouped) {
    const uint32_t hierarchy = random() % kHierarchies;
    const auto levels = model.hierarchies[hierarchy].levels().size();
    query.group = {hierarchy, static_cast<uint32_t>(random() % levels)};
  }
  return query;
}

class RandomSlices : public testing::TestWithParam<Sizes> {};

TEST_P(RandomSlices, AgreeWithPlainLoops) {
  std::mt19937 random(20100401);
  const auto facts = RandomFacts(random, GetParam());
  const test::BuiltCube built(TextsOf(facts, GetParam()));
  const CubeModel& model = built.cube().model;
  ASSERT_EQ(model.hierarchies.size(), std::size_t{kHierarchies});
  EXPECT_EQ(model.fact_count, facts.size());
  std::vector<LeafIds> leaves(facts.size());
  for (int hierarchy = 0; hierarchy < kHierarchies; ++hierarchy) {
    const auto by_path = LeavesByPath(model.hierarchies[hierarchy]);
    for (std::size_t row = 0; row < facts.size(); ++row) {
      leaves[row][hierarchy] = by_path.at(Path(facts[row], hierarchy));
    }
  }
  for (int round = 0; round < 400; ++round) {
    const FactQuery query = RandomQuery(random, model, round % 5 != 0);
    std::map<uint32_t, Expected> expected;
    for (std::size_t row = 0; row < facts.size(); ++row) {
      bool taken = true;
      for (int index = 0; taken && index < kHierarchies; ++index) {
        taken = Takes(query.leaves[index], leaves[row][index]);
      }
      if (!taken) continue;
      uint32_t group = 0;
      if (query.group) {
        const Hierarchy& hierarchy = model.hierarchies[query.group->hierarchy];
        MemberId member =
            hierarchy.levels().back().members.begin + leaves[row][query.group->hierarchy];
        while (hierarchy.LevelOf(member) > query.group->level) member = hierarchy.Parent(member);
        group = member - hierarchy.levels()[query.group->level].members.begin;
      }
      expected[group].Add(facts[row]);
    }
    const auto columns = built.cube().facts->Read(query);
    ASSERT_EQ(columns.size(), 6u);
    const std::size_t groups =
        query.group
            ? model.hierarchies[query.group->hierarchy].levels()[query.group->level].members.size()
            : 1;
    for (std::size_t measure = 0; measure < columns.size(); ++measure) {
      ASSERT_EQ(columns[measure].numbers.size(), groups);
      for (uint32_t group = 0; group < groups; ++group) {
        const auto cell = expected[group].Cells()[measure];
        ASSERT_EQ(columns[measure].states[group] == CellState::kNumber, cell.has_value())
            << round << " " << measure;
        ASSERT_EQ(columns[measure].numbers[group], cell.value_or(0)) << round << " " << measure;
      }
    }
  }
}

TEST(RandomSlice, IsTheSameForEveryThread) {
  constexpr Sizes kSizes{20000, 30, 20, 60};
  std::mt19937 random(17);
  const test::CubeTexts texts = TextsOf(RandomFacts(random, kSizes), kSizes);
  const test::BuiltCube alone(texts);
  const test::BuiltCube shared(texts);
  const auto read_all = [](const StoredCube& cube) {
    std::mt19937 same(1);
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
                         testing::Values(Sizes{1, 1, 1, 1}, Sizes{300, 13, 7, 5},
                                         Sizes{5000, 24, 12, 400}, Sizes{40000, 30, 20, 60}));

}  // namespace
}  // namespace vok::olap
