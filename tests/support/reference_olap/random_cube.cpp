#include "tests/support/reference_olap/random_cube.h"

#include <vector>

namespace vok::plain {
namespace {

using Words = std::vector<std::string>;

/// A level's column: its values in their order, and the place of each row's among them.
struct Column {
  Words values;
  std::vector<std::size_t> rows;
};

/// The text with each "$" replaced by the next word.
std::string Filled(std::string_view text, const Words& words) {
  std::string filled;
  auto word = words.begin();
  for (const char letter : text) filled += letter == '$' ? *word++ : std::string(1, letter);
  return filled;
}

std::string Bracketed(const std::string& name) {
  std::string bracketed = ".[";
  for (const char letter : name) bracketed += letter == ']' ? "]]" : std::string(1, letter);
  return bracketed + "]";
}

std::string Field(const Cell& cell) { return cell ? Shown(*cell) : ""; }

class CubeMaker {
 public:
  CubeMaker(uint64_t seed, std::string name, RandomCube& made, const CubeSize& size)
      : dice_(seed), name_(std::move(name)), made_(made), size_(size) {}

  void Make() {
    Write("  <Cube name=\"$\" defaultMeasure=\"Amount\">\n    <Table name=\"$_facts\"/>\n",
          {name_, name_});
    made_.cube.hierarchies.push_back({"[Measures]", {{"[Measures].[MeasuresLevel]", "", {}}}});
    for (const Measure& each : kMeasures) {
      NewMember(made_.cube.hierarchies[0], 0, std::string(each.name), nullptr).measure = &each;
    }
    for (int d = 2 + dice_.Below(3); d > 0; --d) AddDimension();
    AddFacts();
    for (const Measure& each : kMeasures) {
      Write("    <Measure name=\"$\" column=\"$\" aggregator=\"$\" formatString=\"0.00\"/>\n",
            {std::string(each.name), std::string(each.column), std::string(each.aggregator)});
    }
    Write("  </Cube>\n", {});
  }

 private:
  void Write(std::string_view text, const Words& words) { made_.schema += Filled(text, words); }

  void AddDimension() {
    const bool is_time = leaves_.empty();
    const std::string number = std::to_string(leaves_.size());
    const std::string dimension = is_time ? "Time" : "D" + number;
    const int rows = 1 + dice_.Below(size_.rows);
    leaves_.emplace_back(rows);
    table_ = {"id"};
    for (int row = 1; row <= rows; ++row) table_.push_back(std::to_string(row));
    Write("    <Dimension name=\"$\" foreignKey=\"k$\"$>\n",
          {dimension, number, is_time ? " type=\"TimeDimension\"" : ""});
    if (dice_.OneIn(3)) {
      AddHierarchy("[" + dimension + "].[H0]", "name=\"H0\" ", is_time);
      AddHierarchy("[" + dimension + "].[H1]", "name=\"H1\" ", is_time);
    } else {
      AddHierarchy("[" + dimension + "]", "", is_time);
    }
    Write("    </Dimension>\n", {});
    for (const std::string& line : table_) made_.tables[name_ + "_" + number] += line + "\n";
  }

  void AddHierarchy(const std::string& name, const std::string& attribute, bool is_time) {
    const bool has_all = !dice_.OneIn(3);
    Write(
        "      <Hierarchy $hasAll=\"$\" allMemberName=\"All\" primaryKey=\"id\">\n"
        "        <Table name=\"$_$\"/>\n",
        {attribute, has_all ? "true" : "false", name_, std::to_string(leaves_.size() - 1)});
    Hierarchy& hierarchy = made_.cube.hierarchies.emplace_back(Hierarchy{name, {}});
    if (has_all) hierarchy.levels.push_back({name + ".[(All)]", "Regular", {}});
    Words kinds = {"TimeYears", "TimeQuarters", "TimeMonths"};
    if (is_time && dice_.OneIn(2)) kinds.erase(kinds.begin() + 1);
    if (!is_time) kinds = Words(static_cast<std::size_t>(1 + dice_.Below(3)), "Regular");
    std::vector<Column> columns;
    for (const std::string& kind : kinds) {
      columns.push_back(AddLevel(hierarchy, kind, columns.empty()));
    }
    Write("      </Hierarchy>\n", {});
    AddMembers(hierarchy, columns);
  }

  /// Writes a level and its column, and gives the column.
  Column AddLevel(Hierarchy& hierarchy, const std::string& kind, bool is_first) {
    const bool is_number = kind != "Regular" || dice_.OneIn(3);
    const bool has_order = kind == "Regular" && dice_.OneIn(3);
    const std::string number = std::to_string(hierarchy.levels.size());
    const std::string column = "c" + std::to_string(made_.cube.hierarchies.size()) + number +
                               (is_number ? "_number" : "_text");
    Write(
        "        <Level name=\"L$\" column=\"$\" type=\"$\"$ levelType=\"$\" "
        "uniqueMembers=\"$\"/>\n",
        {number, column, is_number ? "Integer" : "String",
         has_order ? " ordinalColumn=\"" + column + "_order\"" : "", kind,
         is_first ? "true" : "false"});
    hierarchy.levels.push_back({hierarchy.name + ".[L" + number + "]", kind, {}});
    Column made{is_number ? Words{"1", "8", "15", "22"} : Words{"10", "9", "c]", "d e"}, {}};
    for (int i = 23; i < 19 + size_.values; ++i) {
      made.values.push_back(is_number ? std::to_string(i) : "e" + std::to_string(1000 + i));
    }
    made.values.resize(static_cast<std::size_t>(1 + dice_.Below(size_.values)));
    if (has_order) dice_.Shuffle(made.values);
    table_[0] += "," + column + (has_order ? "," + column + "_order" : "");
    for (std::size_t row = 1; row < table_.size(); ++row) {
      const std::string& value = dice_.OneOf(made.values);
      made.rows.push_back(static_cast<std::size_t>(&value - made.values.data()));
      table_[row] += "," + value + (has_order ? "," + std::to_string(made.rows.back()) : "");
    }
    return made;
  }

  /// The members that the rows name, children of one parent in the order of their column.
  void AddMembers(Hierarchy& hierarchy, const std::vector<Column>& columns) {
    const std::size_t first = hierarchy.levels.size() - columns.size();
    Member* all = first == 0 ? nullptr : &NewMember(hierarchy, 0, "All", nullptr);
    std::map<std::vector<std::size_t>, Member*> by_path;
    std::vector<std::vector<std::size_t>> paths(columns[0].rows.size());
    for (std::size_t row = 0; row < paths.size(); ++row) {
      for (const Column& column : columns) {
        paths[row].push_back(column.rows[row]);
        by_path[paths[row]] = nullptr;
      }
    }
    for (auto& [path, member] : by_path) {  // each path after its beginning
      const std::size_t depth = path.size() - 1;
      Member* parent = depth == 0 ? all : by_path.at({path.begin(), path.end() - 1});
      member = &NewMember(hierarchy, first + depth, columns[depth].values[path.back()], parent);
    }
    for (std::size_t row = 0; row < paths.size(); ++row) {
      leaves_.back()[row].push_back(by_path.at(paths[row]));
    }
  }

  Member& NewMember(Hierarchy& hierarchy, std::size_t level, const std::string& name,
                    Member* parent) {
    Member& member = made_.cube.members.emplace_back();
    const bool is_top = parent == nullptr || parent->name == "All";
    member.name = name;
    member.unique_name = (is_top ? hierarchy.name : parent->unique_name) + Bracketed(name);
    member.hierarchy = made_.cube.hierarchies.size() - 1;
    member.level = level;
    member.place = static_cast<int>(hierarchy.levels[level].members.size());
    member.parent = parent;
    if (parent != nullptr) parent->children.push_back(&member);
    hierarchy.levels[level].members.push_back(&member);
    return member;
  }

  Cell Number(int blanks, int size, int parts) {
    if (dice_.OneIn(blanks)) return {};
    if (dice_.OneIn(10)) return 0;
    return static_cast<double>(dice_.Below(2 * size) - size) / parts;
  }

  void AddFacts() {
    std::string& table = made_.tables[name_ + "_facts"] = "id,amount,units,who";
    for (std::size_t d = 0; d < leaves_.size(); ++d) table += ",k" + std::to_string(d);
    const int count = dice_.OneIn(20) ? 0 : dice_.Below(size_.facts);
    std::vector<const Members*> rows(leaves_.size());
    for (int id = 1; id <= count; ++id) {
      Fact fact{{nullptr}, id, Number(9, 4000, size_.parts), Number(4, 20, 1), Number(6, 3, 1)};
      const bool takes_back = id > 1 && dice_.OneIn(8) && made_.cube.facts.back().amount;
      if (takes_back) fact.amount = -*made_.cube.facts.back().amount;
      table += Filled("\n$,$,$,$",
                      {Field(fact.id), Field(fact.amount), Field(fact.units), Field(fact.who)});
      for (std::size_t d = 0; d < leaves_.size(); ++d) {
        if (!takes_back) rows[d] = &dice_.OneOf(leaves_[d]);
        fact.leaves.insert(fact.leaves.end(), rows[d]->begin(), rows[d]->end());
        table += "," + std::to_string(rows[d] - leaves_[d].data() + 1);
      }
      made_.cube.facts.push_back(fact);
    }
    table += "\n";
  }

  Dice dice_;
  std::string name_;
  RandomCube& made_;
  CubeSize size_;
  Words table_;                               ///< of the dimension that is being made: its lines
  std::vector<std::vector<Members>> leaves_;  ///< by dimension and row, one per hierarchy
};

}  // namespace

RandomCube MakeRandomCube(uint64_t seed, const std::string& name, const CubeSize& size) {
  RandomCube made;  // its members point at one another; moving leaves them in place
  CubeMaker(seed, name, made, size).Make();
  return made;
}

}  // namespace vok::plain
