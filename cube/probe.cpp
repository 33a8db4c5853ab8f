#include "cube/probe.h"

#include <string>

#include "cube/date_list.h"
#include "cube/discovery.h"
#include "cube/requirements.h"
#include "platform/failure.h"
#include "reports/error_report.h"

namespace vok {
namespace {

constexpr std::size_t kActXLevels = 3;

std::unique_ptr<CubeDimension> DimensionNamed(const CubeDef& cube, const std::string& name) {
  auto dimension = cube.FindDimension(name);
  if (!dimension) {
    throw Failure(failure_number::kItemNotFound,
                  "The cube \"" + cube.Name() + "\" has no dimension \"" + name + "\"");
  }
  return dimension;
}

bool FindActX(const CubeDef& cube) {
  const auto dimension = cube.FindDimension("actx");
  return dimension && dimension->HierarchyAt(0)->LevelCount() >= kActXLevels;
}

std::vector<std::string> ReadObsChildren(CubeConnection& connection,
                                         const DataSourceSetting& data_source) {
  constexpr std::size_t kRows = 1;
  const auto cellset = connection.Execute(
      "SELECT { [Measures]} ON COLUMNS,  NON Empty{[ActX].[xlFile].[All].[" + data_source.OBS +
      "].children} ON ROWS  FROM  [" + data_source.CubeName + "]");
  std::vector<std::string> names(cellset->PositionCount(kRows));
  for (std::size_t row = 0; row < names.size(); ++row) {
    names[row] = cellset->Member(kRows, row, 0).name;
  }
  return names;
}

void Probe(const Locale& locale, CubeConnection& connection, const DataSourceSetting& data_source,
           CubeState& state) {
  const auto catalog = connection.Structure();
  const auto cube = FirstCube(*catalog, data_source.CubeName);
  const auto date_dimension = DimensionNamed(*cube, "Date");
  const auto dates = date_dimension->HierarchyAt(0);
  ReadDateRange(locale, *dates, state);
  state.HasOpeningBalance = HasOpeningBalances(*cube);
  state.HasActX = FindActX(*cube);
  state.ObsChildren = ReadObsChildren(connection, data_source);
  ReadDateMembers(locale, *dates, state);
  state.MeasureFormats.clear();
  VisitMembers(*DimensionNamed(*cube, "Measures")->HierarchyAt(0), [&](const CubeMember& measure) {
    state.CubeMeasures.emplace_back(measure.Name());
    const std::string format = measure.FormatString();
    if (!format.empty()) state.MeasureFormats[locale.FoldCase(measure.Name())] = format;
  });
}

}  // namespace

bool HasOpeningBalances(const CubeDef& cube) {
  const auto dimension = cube.FindDimension("Opening_Balance");
  if (!dimension) return false;
  const auto hierarchy = dimension->HierarchyAt(0);
  const std::size_t levels = hierarchy->LevelCount();
  return levels > 0 && hierarchy->LevelAt(levels - 1)->MemberCount() > 1;
}

int32_t GetMaxDateAndOpBalance(const Host& host, CubeConnection& connection,
                               const DataSourceSetting& data_source, CubeState& cube) {
  try {
    Probe(host.locale, connection, data_source, cube);
    return 0;
  } catch (...) {
    const Failure failure = CurrentFailure();
    ShowErrorReport(host, failure,
                    {.Extra = kAdviceOnCube,
                     .FunctionName = "GetMaxDateAndOpBalance",
                     .ModuleName = "ModeConnectFunctions"});
    return failure.number();
  }
}

}  // namespace vok
