#include "tests/support/plain_olap/random_cube.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace vok::plain {
namespace {

using Words = std::vector<std::string>;

constexpr std::array<std::string_view, 3> kTimeKinds = {"Years", "Quarters", "Months"};
constexpr std::array<std::string_view, 6> kNames = {"a", "b", "c]", "d e", "10", "9"};

/// A level's column: its value on each row of the dimension's table, and the values' order.
struct Column {
  bool is_number = false;
  bool has_order = false;
  Words by_row;
  Words order;
};

class CubeMaker {
 public:
  CubeMaker(uint64_t seed, std::string name, RandomCube& made)
      : dice_(seed), name_(std::move(name)), made_(made) {}

  void Make() {
    made_.schema = "  <Cube name=\"" + name_ + "\" defaultMeasure=\"Amount\">\n    <Table name=\"" +
                   name_ + "_facts\"/>\n";
    AddMeasures();
    const int dimensions = 2 + dice_.Below(3);
    for (int d = 0; d < dimensions; ++d) AddDimension(d);
    AddFacts(dimensions);
    for (const MeasureWords& each : kMeasures) {
      made_.schema += "    <Measure name=\"" + std::string(each.name) + "\" " +
                      std::string(each.attributes) + " formatString=\"0.00\"/>\n";
    }
    made_.schema += "  </Cube>\n";
  }

 private:
  void AddMeasures() {
    Level level{"[Measures].[MeasuresLevel]", "", {}};
    for (const MeasureWords& each : kMeasures) {
      const std::string name(each.name);
      Member& member = made_.cube.members.emplace_back();
      member = {name, "[Measures].[" + name + "]", 0, 0, nullptr, {}, each.measure, nullptr, 0};
      level.members.push_back(&member);
    }
    made_.cube.hierarchies.push_back({"[Measures]", {level}});
  }

  void AddDimension(int number) {
    const bool is_time = number == 0;
    const std::string dimension = is_time ? "Time" : "D" + std::to_string(number);
    const std::string table = name_ + "_" + std::to_string(number);
    const int rows = 1 + dice_.Below(is_time ? 16 : 10);
    std::string& schema = made_.schema;
    schema += "    <Dimension name=\"" + dimension + "\" foreignKey=\"k" + std::to_string(number) +
              (is_time ? "\" type=\"TimeDimension\">\n" : "\">\n");
    std::vector<Words> csv(static_cast<std::size_t>(rows) + 1);
    for (int row = 0; row <= rows; ++row) {
      csv[static_cast<std::size_t>(row)] = {row == 0 ? "id" : std::to_string(row)};
    }
    leaves_.emplace_back(rows);
    const int hierarchies = dice_.OneIn(3) ? 2 : 1;
    for (int h = 0; h < hierarchies; ++h) {
      AddHierarchy({dimension, hierarchies == 1 ? "" : "H" + std::to_string(h), table}, h, is_time,
                   csv);
    }
    schema += "    </Dimension>\n";
    std::string& text = made_.tables[table];
    for (const Words& row : csv) {
      for (const std::string& field : row) text += (&field == row.data() ? "" : ",") + field;
      text += "\n";
    }
  }

  struct Names {
    std::string dimension;
    std::string hierarchy;  ///< empty: that of the dimension
    std::string table;
  };

  void AddHierarchy(const Names& names, int number, bool is_time, std::vector<Words>& csv) {
    const std::string& own = names.hierarchy;
    Hierarchy hierarchy{"[" + names.dimension + "]" + (own.empty() ? "" : ".[" + own + "]"), {}};
    const bool has_all = !dice_.OneIn(3);
    made_.schema += "      <Hierarchy " + (own.empty() ? "" : "name=\"" + own + "\" ") +
                    "hasAll=\"" + (has_all ? "true" : "false") +
                    "\" allMemberName=\"All\" primaryKey=\"id\">\n        <Table name=\"" +
                    names.table + "\"/>\n";
    if (has_all) hierarchy.levels.push_back({hierarchy.name + ".[(All)]", "", {}});
    const int levels = is_time ? 2 + dice_.Below(2) : 1 + dice_.Below(3);
    std::vector<Column> columns;
    for (int i = 0; i < levels; ++i) {
      const std::size_t kind = static_cast<std::size_t>(i == 1 && levels == 2 ? 2 : i);
      const std::string column = "h" + std::to_string(number) + "_" + std::to_string(i);
      columns.push_back(NewColumn(is_time && number == 0, csv.size() - 1));
      hierarchy.levels.push_back({hierarchy.name + ".[L" + std::to_string(i) + "]",
                                  is_time ? "Time" + std::string(kTimeKinds[kind]) : "",
                                  {}});
      AddToTable(columns.back(), column, csv);
      AddToSchema(columns.back(), column, i, hierarchy.levels.back().kind);
    }
    made_.schema += "      </Hierarchy>\n";
    AddMembers(std::move(hierarchy), has_all, columns);
  }

  Column NewColumn(bool is_time, std::size_t rows) {
    Column column;
    column.is_number = is_time || dice_.OneIn(3);
    column.has_order = !is_time && dice_.OneIn(3);
    const int values = 1 + dice_.Below(4);
    for (int i = 0; i < values; ++i) {
      column.order.push_back(column.is_number
                                 ? std::to_string(i * 7 + 1)
                                 : std::string(kNames[static_cast<std::size_t>(i) + 2]));
    }
    if (!column.is_number) std::sort(column.order.begin(), column.order.end());
    for (std::size_t i = column.order.size(); column.has_order && i > 1; --i) {
      std::swap(column.order[i - 1],
                column.order[static_cast<std::size_t>(dice_.Below(static_cast<int>(i)))]);
    }
    for (std::size_t row = 0; row < rows; ++row) column.by_row.push_back(dice_.OneOf(column.order));
    return column;
  }

  static int PlaceOf(const Column& column, const std::string& value) {
    return static_cast<int>(std::find(column.order.begin(), column.order.end(), value) -
                            column.order.begin());
  }

  static void AddToTable(const Column& column, const std::string& name, std::vector<Words>& csv) {
    csv[0].push_back(name + (column.is_number ? "_number" : "_text"));
    if (column.has_order) csv[0].push_back(name + "_order");
    for (std::size_t row = 1; row < csv.size(); ++row) {
      const std::string& value = column.by_row[row - 1];
      csv[row].push_back(value);
      if (column.has_order) csv[row].push_back(std::to_string(PlaceOf(column, value)));
    }
  }

  void AddToSchema(const Column& column, const std::string& name, int number,
                   const std::string& kind) {
    made_.schema += "        <Level name=\"L" + std::to_string(number) + "\" column=\"" + name +
                    (column.is_number ? "_number\" type=\"Integer\"" : "_text\"") +
                    (column.has_order ? " ordinalColumn=\"" + name + "_order\"" : "") +
                    (kind.empty() ? "" : " levelType=\"" + kind + "\"") + " uniqueMembers=\"" +
                    (number == 0 ? "true" : "false") + "\"/>\n";
  }

  /// The members that the rows name, children of one parent in the order of their column.
  void AddMembers(Hierarchy hierarchy, bool has_all, const std::vector<Column>& columns) {
    const std::size_t number = made_.cube.hierarchies.size();
    Member root;
    Member* top = &root;
    if (has_all) {
      top = &NewMember("All", hierarchy.name + ".[All]", number, nullptr, 0);
      hierarchy.levels[0].members.push_back(top);
    }
    const std::size_t first = has_all ? 1 : 0;
    AddBelow(*top, hierarchy, number, first, columns, AllRows(columns[0].by_row.size()));
    made_.cube.hierarchies.push_back(std::move(hierarchy));
  }

  static std::vector<std::size_t> AllRows(std::size_t count) {
    std::vector<std::size_t> rows(count);
    std::iota(rows.begin(), rows.end(), 0);
    return rows;
  }

  /// `columns` from the level `level` on, whose members `rows` name below `parent`.
  void AddBelow(Member& parent, Hierarchy& hierarchy, std::size_t number, std::size_t level,
                const std::vector<Column>& columns, const std::vector<std::size_t>& rows) {
    const std::size_t first = hierarchy.levels.size() - columns.size();
    if (level == hierarchy.levels.size()) {
      for (const std::size_t row : rows) leaves_.back()[row].push_back(&parent);
      return;
    }
    const Column& column = columns[level - first];
    const bool is_top = level == first;
    for (const std::string& value : column.order) {
      std::vector<std::size_t> own;
      for (const std::size_t row : rows) {
        if (column.by_row[row] == value) own.push_back(row);
      }
      if (own.empty()) continue;
      const std::string& path = is_top ? hierarchy.name : parent.unique_name;
      const bool has_parent = parent.hierarchy == number;
      Member& member = NewMember(value, path + ".[" + Doubled(value) + "]", number,
                                 has_parent ? &parent : nullptr, level);
      parent.children.push_back(&member);
      hierarchy.levels[level].members.push_back(&member);
      AddBelow(member, hierarchy, number, level + 1, columns, own);
    }
  }

  static std::string Doubled(const std::string& name) {
    std::string doubled;
    for (const char letter : name) doubled += letter == ']' ? "]]" : std::string(1, letter);
    return doubled;
  }

  Member& NewMember(const std::string& name, const std::string& unique_name, std::size_t hierarchy,
                    const Member* parent, std::size_t level) {
    Member& member = made_.cube.members.emplace_back();
    member.name = name;
    member.unique_name = unique_name;
    member.hierarchy = hierarchy;
    member.parent = parent;
    member.level = level;
    return member;
  }

  Cell Number(int blanks, int size, int parts) {
    if (dice_.OneIn(blanks)) return {};
    if (dice_.OneIn(10)) return 0;
    return static_cast<double>(dice_.Below(2 * size) - size) / parts;
  }

  void AddFacts(int dimensions) {
    std::string& text = made_.tables[name_ + "_facts"];
    text = "id";
    for (int d = 0; d < dimensions; ++d) text += ",k" + std::to_string(d);
    text += ",amount,units,who\n";
    const int count = dice_.OneIn(20) ? 0 : dice_.Below(60);
    std::vector<std::size_t> keys(leaves_.size());
    for (int id = 1; id <= count; ++id) {
      Fact fact{{nullptr}, Number(9, 4000, 4), Number(4, 20, 1), Number(6, 3, 1)};
      const bool takes_back = id > 1 && dice_.OneIn(8) && made_.cube.facts.back().amount;
      if (takes_back) fact.amount = -*made_.cube.facts.back().amount;
      text += std::to_string(id);
      for (std::size_t d = 0; d < leaves_.size(); ++d) {
        if (!takes_back) keys[d] = AnyPlace(leaves_[d].size());
        const Members& leaves = leaves_[d][keys[d]];
        fact.leaves.insert(fact.leaves.end(), leaves.begin(), leaves.end());
        text += "," + std::to_string(keys[d] + 1);
      }
      for (const Cell& cell : {fact.amount, fact.units, fact.who}) text += "," + Decimal(cell);
      text += "\n";
      made_.cube.facts.push_back(fact);
    }
  }

  std::size_t AnyPlace(std::size_t size) {
    return static_cast<std::size_t>(dice_.Below(static_cast<int>(size)));
  }

  static std::string Decimal(const Cell& cell) {
    if (!cell) return {};
    const int hundredths = static_cast<int>(*cell * 100);
    const int size = hundredths < 0 ? -hundredths : hundredths;
    std::string text = (hundredths < 0 ? "-" : "") + std::to_string(size / 100);
    if (size % 100 != 0) text += "." + std::to_string(size % 100);
    return text;
  }

  Dice dice_;
  std::string name_;
  RandomCube& made_;
  std::vector<std::vector<Members>> leaves_;  ///< by dimension and row, one per hierarchy
};

}  // namespace

void MakeRandomCube(uint64_t seed, const std::string& name, RandomCube& made) {
  CubeMaker(seed, name, made).Make();
}

}  // namespace vok::plain
