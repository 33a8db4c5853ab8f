#include "providers/cube/olap/build/build_cube.h"

#include <string>
#include <utility>

#include "platform/locale.h"
#include "providers/cube/olap/build/cube_maker.h"
#include "providers/cube/olap/build/live_build.h"
#include "providers/cube/olap/build/refresh_months.h"
#include "providers/cube/olap/build/server_tables.h"

namespace vok::olap {
namespace {

/// The database server of the request; null where the tables are in files.
std::shared_ptr<TableServer> OpenServer(const BuildRequest& request) {
  if (NamesTableServer(request.data_path)) {
    if (request.facts == nullptr) return OpenServerOf(request, request.data_path);
    throw BadInput(request.data_path, "is a database, whose facts are in it");
  }
  if (!request.live) return nullptr;
  throw BadInput(request.data_path,
                 "is not a database server; the facts of a live cube stay in one");
}

std::unique_ptr<TableSource> OpenSource(const Files& files, const BuildRequest& request,
                                        const CsvOptions& csv,
                                        const std::shared_ptr<TableServer>& server,
                                        const std::vector<CubeSchema>& cubes) {
  if (server == nullptr) return OpenTableSource(files, request.data_path, csv);
  return request.live ? OpenLiveTables(server, cubes) : OpenServerTables(server);
}

/// The column of the facts that leads to a table of the dimension, and that table's key, where one
/// of them has dates: the other is written like it.
void AddKeys(const std::string& facts, const DimensionSchema& dimension, CsvOptions& csv) {
  const std::pair fact(facts, dimension.foreign_key);
  for (const HierarchySchema& hierarchy : dimension.hierarchies) {
    const std::pair key(hierarchy.table.name, hierarchy.primary_key);
    if (key.first.empty()) continue;  // it stands in the facts
    if (csv.date_columns.contains(fact) || csv.date_columns.contains(key)) {
      csv.date_columns.insert({fact, key});
    }
  }
}

/// Those of the date dimensions' tables, and those of facts that lead there; with them what else
/// these lead to. Amounts, names and captions are not among them.
void AddDateColumns(const Locale& locale, const CubeSchema& cube, CsvOptions& csv) {
  const std::string& facts = cube.fact_table.name;
  for (const DimensionSchema& dimension : cube.dimensions) {
    if (!dimension.is_time && !EqualNoCase(locale, dimension.name, "Date")) continue;
    csv.date_columns.emplace(facts, dimension.foreign_key);
    for (const HierarchySchema& hierarchy : dimension.hierarchies) {
      const std::string& table = hierarchy.table.name.empty() ? facts : hierarchy.table.name;
      for (const LevelSchema& level : hierarchy.levels) {
        csv.date_columns.emplace(table, level.column);
        csv.date_columns.emplace(table, level.name_column);
        csv.date_columns.emplace(table, level.ordinal_column);
      }
    }
  }
  for (std::size_t before = 0; before != csv.date_columns.size();) {
    before = csv.date_columns.size();
    for (const DimensionSchema& dimension : cube.dimensions) AddKeys(facts, dimension, csv);
  }
}

}  // namespace

BuildReport BuildCubeFile(Files& files, const Locale& locale, const BuildRequest& request,
                          const std::function<void(const BuildStep&)>& progress) {
  const std::string text = ReadWholeFile(files, request.schema_path);
  const auto cubes = ReadSchema(locale, request.schema_path, text);
  if (request.facts != nullptr && cubes.size() > 1) {
    throw BadInput(request.schema_path, "has several cubes; facts of one alone can be given apart");
  }
  CsvOptions csv{cubes[0].csv, cubes[0].fact_table.name, request.facts_name, request.facts, {}};
  for (const CubeSchema& cube : cubes) AddDateColumns(locale, cube, csv);
  SetForm(csv.form, request.separator, request.decimal, request.dates);
  const auto server = OpenServer(request);
  const auto source = OpenSource(files, request, csv, server, cubes);
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
    auto hierarchies = LoadHierarchies(*source, cube, origin && !request.live, of_cube);
    if (request.live) {
      maker.AddLive(cube, *server, std::move(hierarchies), of_cube, std::move(origin));
    } else {
      maker.Add(cube, *source, std::move(hierarchies), options, of_cube, std::move(origin));
    }
  }
  return maker.Finish(*source);
}

}  // namespace vok::olap
