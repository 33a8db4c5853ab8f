#include "providers/cube/olap/build/live_build.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <tuple>
#include <utility>

#include "platform/row_text.h"
#include "providers/cube/olap/build/member_tree.h"
#include "providers/cube/olap/build/server_tables.h"
#include "providers/cube/olap/live/key_conditions.h"
#include "providers/cube/olap/storage/leaf_levels.h"

namespace vok::olap {
namespace {

LiveKeys KeysOf(const LoadedHierarchy& hierarchy, const std::vector<ServerColumn>& columns) {
  LiveKeys keys{hierarchy.fact_columns, true, !hierarchy.has_table, {}};
  for (const std::string& name : keys.columns) {
    const ServerColumn* const column = FindColumn(columns, name);
    keys.are_numbers = keys.are_numbers && column != nullptr && column->is_number;
  }
  hierarchy.leaves.ForEach([&keys](const std::string& text, uint32_t leaf) {
    keys.keys.push_back({leaf, text});
  });
  std::sort(keys.keys.begin(), keys.keys.end(), [](const LiveKey& a, const LiveKey& b) {
    return std::tie(a.leaf, a.text) < std::tie(b.leaf, b.text);
  });
  return keys;
}

/// Tables of members; that of two hierarchies once, where they read the same columns of it.
std::vector<LiveTable> TablesOf(TableServer& server, const CubeSchema& cube) {
  std::vector<LiveTable> tables;
  for (const DimensionSchema& dimension : cube.dimensions) {
    for (const HierarchySchema& hierarchy : dimension.hierarchies) {
      if (hierarchy.table.name.empty()) continue;
      LiveTable table{hierarchy.table, MemberTree(hierarchy).Columns(), {}};
      table.columns.push_back(hierarchy.primary_key);
      const bool is_known = std::any_of(tables.begin(), tables.end(), [&](const LiveTable& other) {
        return other.name == table.name && other.columns == table.columns;
      });
      if (is_known) continue;
      table.fingerprint = server.Fingerprint(table.name, table.columns);
      tables.push_back(std::move(table));
    }
  }
  return tables;
}

LiveMeasure MeasureOf(const TableServer& server, const CubeSchema& cube,
                      const MeasureSchema& measure, const std::vector<ServerColumn>& columns) {
  const std::string where = "measure " + Quoted(measure.name) + " of cube " + Quoted(cube.name);
  if (measure.aggregator == Aggregator::kDistinctCount) {
    throw BadInput(
        where,
        "counts of different values cannot be added up from a server's answers. Leave it "
        "out of the live cube, or build a file with the facts");
  }
  LiveMeasure live{measure.column, false};
  if (measure.column.empty()) return live;
  const ServerColumn* const column = FindColumn(columns, measure.column);
  const std::string table = server.address() + ", table " + ShownName(cube.fact_table);
  if (column == nullptr) {
    std::vector<std::string> names;
    names.reserve(columns.size());
    for (const ServerColumn& each : columns) names.push_back(each.name);
    PlacesOf({measure.column}, names, table);
  }
  if (measure.aggregator == Aggregator::kCount) return live;
  if (!column->is_number) {
    throw BadInput(where, "the column " + Quoted(measure.column) + " of " + table +
                              " does not hold numbers: the server cannot add it up");
  }
  live.is_binary_fraction = column->is_binary_fraction;
  if (live.is_binary_fraction && !measure.may_vary) {
    throw BadInput(where,
                   "the column " + Quoted(measure.column) + " of " + table +
                       " holds binary fractions (double precision), whose sums may differ "
                       "from run to run. Make it numeric, or let the measure have <Annotation "
                       "name=\"live.may-vary\">true</Annotation>");
  }
  return live;
}

/// Counts the facts; each must have a member in every hierarchy that has a table.
uint64_t CountFacts(TableServer& server, const CubeSchema& cube,
                    const std::vector<LoadedHierarchy>& hierarchies, const LiveSource& source) {
  TableQuestion question{cube.fact_table, {{"", Gathering::kCount}}};
  std::vector<const LoadedHierarchy*> expected;
  for (std::size_t index = 0; index < hierarchies.size(); ++index) {
    if (!hierarchies[index].has_table) continue;
    const IdRange all{0, hierarchies[index].members.LeafCount()};
    question.expected.push_back(ConditionOf(source.hierarchies[index], {&all, 1}));
    expected.push_back(&hierarchies[index]);
  }
  const std::string place = server.address() + ", table " + ShownName(cube.fact_table);
  const auto rows = server.Read(question);
  std::string text;
  uint64_t count = 0;
  while (rows->Next(text)) {
    RowText row(std::exchange(text, {}), WidthOf(question), place, 1);
    while (row.Next()) {
      for (std::size_t index = 0; index < expected.size(); ++index) {
        const Field& stranger = row.Fields()[index + 1];
        if (stranger.is_null) continue;
        throw BadInput(place + ", column " + expected[index]->fact_columns.front(),
                       "the key " + Quoted(stranger.text) + " is not in the table of dimension " +
                           Quoted(expected[index]->members.dimension_name));
      }
      const std::string_view number = row.Fields().front().text;
      std::from_chars(number.data(), number.data() + number.size(), count);
    }
  }
  return count;
}

}  // namespace

std::unique_ptr<TableSource> OpenLiveTables(std::shared_ptr<TableServer> server,
                                            const std::vector<CubeSchema>& cubes) {
  std::vector<TableName> facts;
  facts.reserve(cubes.size());
  for (const CubeSchema& cube : cubes) facts.push_back(cube.fact_table);
  return OpenServerTables(std::move(server), std::move(facts));
}

LiveCube PrepareLive(TableServer& server, const CubeSchema& cube,
                     const std::vector<LoadedHierarchy>& hierarchies) {
  const auto columns = server.Columns(cube.fact_table);
  LiveCube live;
  live.source.address = server.AddressToKeep();
  live.source.fact_table = cube.fact_table;
  for (const MeasureSchema& measure : cube.measures) {
    live.source.measures.push_back(MeasureOf(server, cube, measure, columns));
  }
  for (const LoadedHierarchy& hierarchy : hierarchies) {
    live.source.hierarchies.push_back(KeysOf(hierarchy, columns));
  }
  live.source.tables = TablesOf(server, cube);
  live.fact_count = CountFacts(server, cube, hierarchies, live.source);
  return live;
}

}  // namespace vok::olap
