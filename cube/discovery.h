// What a cube offers to those who edit a data source: its catalogs, measures, money sets and the
// members that a query can be limited to.
//
// Each call opens a connection of its own and closes it when it is done. An empty file name offers
// nothing and is not a failure; failures of the cube's provider pass to the caller, that of a file
// that is not there included. Names of dimensions are compared exactly, also in case.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/cube.h"
#include "platform/host.h"
#include "platform/value.h"

namespace vok {

/// The catalog's first cube. Failure 3265 when it has none; `cube_name` is for its text.
std::unique_ptr<CubeDef> FirstCube(const CubeCatalog& catalog, const std::string& cube_name);

/// Whether a measure of this name is offered for money columns.
bool IsMoneyMeasure(const std::string& name);

/// Calls `visit` with the members of all levels, from the top. The member of the all level, which
/// stands for no one in particular, is left out.
void VisitMembers(const CubeHierarchy& hierarchy,
                  const std::function<void(const CubeMember&)>& visit);

/// Their names.
std::vector<std::string> MemberNames(const CubeHierarchy& hierarchy);

/// Names of the members at the level below the all level, or at the top where there is no such
/// level.
std::vector<std::string> TopMemberNames(const CubeHierarchy& hierarchy);

/// True for what begins with "http://" or "https://".
bool IsServerAddress(const Locale& locale, const std::string& source);

/// True for an existing file and for the address of a cube server.
bool IsCubeThere(const Host& host, const std::string& cube_file);

/// An open connection to list the catalogs of a cube file with.
std::unique_ptr<CubeConnection> OpenForCatalogs(const Host& host, const std::string& cube_file);

/// The catalogs whose names end in "QEL", in the provider's order.
struct QelCatalogs {
  std::vector<std::string> names;
  std::optional<std::size_t> chosen;  ///< the connection's default one, else the first
};
QelCatalogs ListQelCatalogs(const CubeConnection& connection);

/// Names of the money measures: those without "Quantity" in their names, each a text. A file that
/// is not there has none.
Value::Array GetMeasFromCube(const Host& host, const std::string& cube_file,
                             const std::string& catalog);

/// All measures, and the members of the dimension "MoneySet", as far as the cube has it.
struct MeasureChoices {
  std::vector<std::string> measures;
  std::vector<std::string> money_sets;
};
MeasureChoices ReadMeasureChoices(const Host& host, const std::string& cube_file,
                                  const std::string& catalog);

/// The members that can serve as a setting's `OBS`: those right below [ActX].[xlFile].[All].
std::vector<std::string> ReadObsMembers(const Host& host, const std::string& cube_file,
                                        const std::string& catalog);

}  // namespace vok
