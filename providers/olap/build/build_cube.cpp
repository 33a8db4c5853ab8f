#include "providers/olap/build/build_cube.h"

#include <utility>

#include "providers/olap/build/fact_loader.h"
#include "providers/olap/build/schema.h"
#include "providers/olap/build/table_source.h"
#include "providers/olap/storage/cube_writer.h"

namespace vok::olap {
namespace {

NewCube CubeOf(const CubeSchema& schema) {
  NewCube cube{schema.name, schema.caption, {}, {}, {}, schema.default_measure, 0};
  for (const MeasureSchema& measure : schema.measures) {
    cube.measures.push_back(
        {measure.name, measure.caption, measure.aggregator, measure.format_string});
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

BuildReport::Cube AddCube(const CubeSchema& schema, const TableSource& source,
                          const Progress& progress, CubeWriter& writer) {
  std::vector<LoadedHierarchy> hierarchies;
  for (const DimensionSchema& dimension : schema.dimensions) {
    for (const HierarchySchema& hierarchy : dimension.hierarchies) {
      progress("reading dimension " + dimension.name, 0);
      hierarchies.push_back(LoadHierarchy(source, schema, dimension, hierarchy));
    }
  }
  const LoadedFacts loaded = LoadFacts(source, schema, hierarchies, progress);
  NewCube cube = CubeOf(schema);
  cube.fact_count = loaded.fact_count;
  for (LoadedHierarchy& hierarchy : hierarchies) {
    cube.hierarchies.push_back(std::move(hierarchy.members));
  }
  progress("writing " + schema.name, 0);
  writer.Add(cube, loaded.facts);
  return {schema.name, loaded.fact_count, loaded.facts.rows};
}

}  // namespace

BuildReport BuildCubeFile(Files& files, const Locale& locale, const BuildRequest& request,
                          const std::function<void(const std::string&, double)>& progress) {
  const Progress report_progress = progress ? progress : [](const std::string&, double) {};
  const auto cubes = ReadSchema(files, locale, request.schema_path);
  const auto source = OpenTableSource(files, request.data_path);
  CubeWriter writer(files, request.output_path);
  BuildReport report;
  for (const CubeSchema& cube : cubes) {
    report.cubes.push_back(AddCube(cube, *source, report_progress, writer));
  }
  report.file_bytes = writer.Finish();
  return report;
}

}  // namespace vok::olap
