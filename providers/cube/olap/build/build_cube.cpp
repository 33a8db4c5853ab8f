#include "providers/cube/olap/build/build_cube.h"

#include <optional>
#include <utility>

#include "platform/in_order.h"
#include "providers/cube/olap/build/aggregate_builder.h"
#include "providers/cube/olap/build/aggregate_choice.h"
#include "providers/cube/olap/build/fact_loader.h"
#include "providers/cube/olap/build/formula_check.h"
#include "providers/cube/olap/build/schema.h"
#include "providers/cube/olap/build/server_tables.h"
#include "providers/cube/olap/build/table_source.h"
#include "providers/cube/olap/storage/cube_writer.h"

namespace vok::olap {
namespace {

NewCube CubeOf(const CubeSchema& schema) {
  NewCube cube{schema.name, schema.caption, {}, {}, {}, {}, schema.default_measure, 0};
  for (const MeasureSchema& measure : schema.measures) {
    cube.measures.push_back(
        {measure.name, measure.caption, measure.aggregator, measure.format_string});
  }
  for (const CalculatedMemberSchema& member : schema.calculated) {
    cube.calculated.push_back(member.definition);
  }
  uint32_t next = 0;
  for (const DimensionSchema& dimension : schema.dimensions) {
    Dimension& added = cube.dimensions.emplace_back();
    added = {dimension.name, dimension.caption, dimension.is_time, {}};
    for (std::size_t count = dimension.hierarchies.size(); count > 0; --count) {
      added.hierarchies.push_back(next++);
    }
  }
  return cube;
}

/// Facts are in memory twice while they are put together, and what is being read comes on top.
constexpr uint64_t kShareOfRuns = 3;

/// The time hierarchy with the most leaves that facts are not sorted by last.
std::optional<uint32_t> TimeOf(const NewCube& cube, uint32_t inner) {
  std::optional<uint32_t> time;
  const auto leaves = [&](uint32_t index) { return cube.hierarchies[index].LeafCount(); };
  for (const Dimension& dimension : cube.dimensions) {
    if (!dimension.is_time) continue;
    for (const uint32_t index : dimension.hierarchies) {
      if (index != inner && (!time || leaves(index) > leaves(*time))) time = index;
    }
  }
  return time;
}

void AddAggregates(const NewCube& cube, const LoadedFacts& loaded, uint64_t value_bytes,
                   unsigned threads, CubeWriter& writer) {
  if (loaded.facts.rows == 0 || AggregatedColumns(cube, loaded.facts).empty()) return;
  std::vector<uint32_t> sort_order;
  for (const NewKeyColumn& key : loaded.facts.keys) sort_order.push_back(key.hierarchy);
  const double value_bits =
      8 * static_cast<double>(value_bytes) / static_cast<double>(loaded.facts.rows);
  const AggregateChoice choice = ChooseAggregates(
      cube.hierarchies, sort_order, TimeOf(cube, sort_order.back()), loaded.facts.rows, value_bits);
  if (choice.sets.empty()) return;
  writer.AddAggregates(BuildAggregates(choice, cube, loaded.facts, threads, writer));
}

void AddCube(const CubeSchema& schema, const Locale& locale, const TableSource& source,
             const LoadOptions& options, const Progress& progress, CubeWriter& writer,
             BuildReport& report) {
  std::vector<LoadedHierarchy> hierarchies;
  for (const DimensionSchema& dimension : schema.dimensions) {
    for (const HierarchySchema& hierarchy : dimension.hierarchies) {
      progress("reading dimension " + dimension.name, kDimensions, 0);
      hierarchies.push_back(LoadHierarchy(source, schema, dimension, hierarchy));
    }
  }
  if (!schema.calculated.empty()) {
    NewCube structure = CubeOf(schema);
    for (const LoadedHierarchy& hierarchy : hierarchies) {
      structure.hierarchies.push_back(hierarchy.members);
    }
    CheckFormulas(locale, schema, structure);
  }
  const LoadedFacts loaded = LoadFacts(source, schema, hierarchies, options, progress);
  NewCube cube = CubeOf(schema);
  cube.fact_count = loaded.fact_count;
  for (LoadedHierarchy& hierarchy : hierarchies) {
    cube.hierarchies.push_back(std::move(hierarchy.members));
  }
  progress("writing " + schema.name, kWriting, 0);
  const uint64_t value_bytes = writer.Begin(cube, loaded.facts);
  progress("adding up " + schema.name, kAddingUp, 0);
  AddAggregates(cube, loaded, value_bytes, options.threads, writer);
  writer.End();
  report.cubes.push_back({schema.name, loaded.fact_count, loaded.facts.rows});
  report.bad_rows.insert(report.bad_rows.end(), loaded.bad_rows.begin(), loaded.bad_rows.end());
}

std::unique_ptr<TableSource> OpenSource(const Files& files, const BuildRequest& request,
                                        const CsvOptions& csv) {
  static const QueryStop never;
  if (!NamesTableServer(request.data_path)) return OpenTableSource(files, request.data_path, csv);
  if (csv.facts != nullptr)
    throw BadInput(request.data_path, "is a database, whose facts are in it");
  return OpenServerTables(
      request.open_server(request.data_path, request.stop == nullptr ? never : *request.stop));
}

}  // namespace

BuildReport BuildCubeFile(Files& files, const Locale& locale, const BuildRequest& request,
                          const std::function<void(const BuildStep&)>& progress) {
  const auto cubes = ReadSchema(files, locale, request.schema_path);
  if (request.facts != nullptr && cubes.size() > 1) {
    throw BadInput(request.schema_path, "has several cubes; facts of one alone can be given apart");
  }
  CsvOptions csv{cubes[0].csv, cubes[0].fact_table.name, request.facts_name, request.facts};
  SetForm(csv.form, request.separator, request.decimal, request.dates);
  const auto source = OpenSource(files, request, csv);
  const unsigned threads = request.threads == 0 ? ProcessorCount() : request.threads;
  CubeWriter writer(files, request.output_path, threads);
  LoadOptions options{threads, request.leave_out_bad_rows, request.memory / kShareOfRuns, {}};
  options.open_scratch = [&] {
    const std::string& folder = request.temporary_folder;
    return files.Scratch(folder.empty() ? request.output_path : folder + "/facts");
  };
  BuildReport report;
  for (const CubeSchema& cube : cubes) {
    const double before = static_cast<double>(report.cubes.size());
    const auto of_cube = [&](const std::string& what, Share share, double done) {
      if (request.stop != nullptr) request.stop->Check();
      const auto count = static_cast<double>(cubes.size());
      if (progress)
        progress({what, (before + share.begin) / count, (before + share.end) / count, done});
    };
    AddCube(cube, locale, *source, options, of_cube, writer, report);
  }
  source->CheckUnchanged();
  report.remarks = source->Remarks();
  if (request.check) request.check(report);
  report.file_bytes = writer.Finish();
  return report;
}

}  // namespace vok::olap
