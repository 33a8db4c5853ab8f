#include "providers/cube/olap/build/cube_maker.h"

#include <optional>
#include <utility>

#include "platform/in_order.h"
#include "providers/cube/olap/build/aggregate_builder.h"
#include "providers/cube/olap/build/aggregate_choice.h"
#include "providers/cube/olap/build/formula_check.h"
#include "providers/cube/olap/build/live_build.h"

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

NewCube CubeOf(const CubeSchema& schema, uint64_t fact_count,
               std::vector<LoadedHierarchy> hierarchies, std::optional<NewOrigin>& origin) {
  NewCube cube = CubeOf(schema);
  cube.fact_count = fact_count;
  for (LoadedHierarchy& hierarchy : hierarchies) {
    cube.hierarchies.push_back(std::move(hierarchy.members));
    if (origin) origin->record.hierarchies.push_back(std::move(hierarchy.rows));
  }
  return cube;
}

}  // namespace

CubeMaker::CubeMaker(Files& files, const Locale& locale, const BuildRequest& request,
                     const TellStep& tell)
    : locale_(locale),
      request_(request),
      tell_(tell),
      options_{request.threads == 0 ? ProcessorCount() : request.threads,
               request.leave_out_bad_rows, request.memory / kShareOfRuns},
      writer_(files, request.output_path, options_.threads,
              request.live ? kLiveVersion : kFormatVersion) {
  options_.gathered = request.gathered;
  options_.open_scratch = [&files, &request] {
    const std::string& folder = request.temporary_folder;
    return files.Scratch(folder.empty() ? request.output_path : folder + "/facts");
  };
}

Progress CubeMaker::ProgressOf(std::size_t count) const {
  const auto before = static_cast<double>(report_.cubes.size());
  return [this, before, count](const std::string& what, Share share, double done) {
    if (request_.stop != nullptr) request_.stop->Check();
    const auto all = static_cast<double>(count);
    if (tell_) tell_({what, (before + share.begin) / all, (before + share.end) / all, done});
  };
}

void CubeMaker::TryFormulas(const CubeSchema& schema,
                            const std::vector<LoadedHierarchy>& hierarchies) const {
  if (schema.calculated.empty()) return;
  NewCube structure = CubeOf(schema);
  for (const LoadedHierarchy& hierarchy : hierarchies) {
    structure.hierarchies.push_back(hierarchy.members);
  }
  CheckFormulas(locale_, schema, structure);
}

void CubeMaker::Add(const CubeSchema& schema, const TableSource& source,
                    std::vector<LoadedHierarchy> hierarchies, const LoadOptions& options,
                    const Progress& progress, std::optional<NewOrigin> origin) {
  TryFormulas(schema, hierarchies);
  LoadedFacts loaded = LoadFacts(source, schema, hierarchies, options, progress);
  const NewCube cube = CubeOf(schema, loaded.fact_count, std::move(hierarchies), origin);
  progress("writing " + schema.name, kWriting, 0);
  const uint64_t value_bytes = writer_.Begin(cube, loaded.facts);
  progress("adding up " + schema.name, kAddingUp, 0);
  AddAggregates(cube, loaded, value_bytes, options.threads, writer_);
  if (origin) {
    origin->record.time = options.totals_of;
    origin->record.totals = std::move(loaded.totals);
  }
  AddOrigin(std::move(origin));
  writer_.End();
  report_.cubes.push_back({schema.name, loaded.fact_count, loaded.facts.rows});
  report_.bad_rows.insert(report_.bad_rows.end(), loaded.bad_rows.begin(), loaded.bad_rows.end());
}

void CubeMaker::AddLive(const CubeSchema& schema, TableServer& server,
                        std::vector<LoadedHierarchy> hierarchies, const Progress& progress,
                        std::optional<NewOrigin> origin) {
  TryFormulas(schema, hierarchies);
  progress("looking through " + ShownName(schema.fact_table), kReading, 0);
  const LiveCube live = PrepareLive(server, schema, hierarchies);
  writer_.Begin(CubeOf(schema, live.fact_count, std::move(hierarchies), origin), live.source);
  AddOrigin(std::move(origin));
  writer_.End();
  report_.cubes.push_back({schema.name, live.fact_count, 0, true});
}

void CubeMaker::AddOrigin(std::optional<NewOrigin> origin) {
  if (!origin) return;
  origin->origin.record = writer_.AddBlock(BytesOf(origin->record));
  writer_.AddOrigin(origin->origin);
}

BuildReport CubeMaker::Finish(const TableSource& source) {
  source.CheckUnchanged();
  report_.remarks = source.Remarks();
  if (request_.check) request_.check(report_);
  report_.file_bytes = writer_.Finish();
  return std::move(report_);
}

std::vector<LoadedHierarchy> LoadHierarchies(const TableSource& source, const CubeSchema& schema,
                                             bool record, const Progress& progress) {
  std::vector<LoadedHierarchy> hierarchies;
  for (const DimensionSchema& dimension : schema.dimensions) {
    for (const HierarchySchema& hierarchy : dimension.hierarchies) {
      progress("reading dimension " + dimension.name, kDimensions, 0);
      hierarchies.push_back(LoadHierarchy(source, schema, dimension, hierarchy, {record}));
    }
  }
  return hierarchies;
}

std::unique_ptr<TableServer> OpenServerOf(const BuildRequest& request, const std::string& address) {
  static const QueryStop never;
  return request.open_server(address, request.stop == nullptr ? never : *request.stop);
}

}  // namespace vok::olap
