#include "providers/cube/olap/build/build_cube.h"

#include <utility>

#include "providers/cube/olap/build/cube_maker.h"
#include "providers/cube/olap/build/refresh_months.h"

namespace vok::olap {
namespace {

std::unique_ptr<TableSource> OpenSource(const Files& files, const BuildRequest& request,
                                        const CsvOptions& csv) {
  if (!NamesTableServer(request.data_path)) return OpenTableSource(files, request.data_path, csv);
  if (csv.facts != nullptr)
    throw BadInput(request.data_path, "is a database, whose facts are in it");
  return OpenServerSource(request, request.data_path);
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

}  // namespace

BuildReport BuildCubeFile(Files& files, const Locale& locale, const BuildRequest& request,
                          const std::function<void(const BuildStep&)>& progress) {
  const std::string text = ReadWholeFile(files, request.schema_path);
  const auto cubes = ReadSchema(locale, request.schema_path, text);
  if (request.facts != nullptr && cubes.size() > 1) {
    throw BadInput(request.schema_path, "has several cubes; facts of one alone can be given apart");
  }
  CsvOptions csv{cubes[0].csv, cubes[0].fact_table.name, request.facts_name, request.facts};
  SetForm(csv.form, request.separator, request.decimal, request.dates);
  const auto source = OpenSource(files, request, csv);
  const std::string address = request.record_source ? source->AddressToKeep() : "";
  CubeMaker maker(files, locale, request, progress);
  for (const CubeSchema& cube : cubes) {
    const Progress of_cube = maker.ProgressOf(cubes.size());
    std::optional<NewOrigin> origin;
    LoadOptions options = maker.Options();
    if (!address.empty()) {
      origin.emplace(NewOrigin{{address}, {text}});
      options.totals_of = HierarchyOfMonths(cube).value_or(kNoTime);
    }
    auto hierarchies = LoadHierarchies(*source, cube, origin.has_value(), of_cube);
    maker.Add(cube, *source, std::move(hierarchies), options, of_cube, std::move(origin));
  }
  return maker.Finish(*source);
}

}  // namespace vok::olap
