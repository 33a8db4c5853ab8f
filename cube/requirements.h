// What saved queries need of a cube, in one place.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/cube.h"
#include "platform/locale.h"

namespace vok {

/// Something that saved queries, or the window that edits them, need and a cube does not have.
struct CubeLack {
  std::string what;  ///< what is missing, and what needs it
  std::string mend;  ///< an example of the line of a cube's schema that gives it
};

/// All that the catalog's first cube lacks, in the order of the schema; nothing for a cube that
/// saved queries run on. Asks the structure and a few members, no facts. `catalog` is the name that
/// a data source would give. Failures are those of the connection.
std::vector<CubeLack> FindLacks(const Locale& locale, CubeConnection& connection,
                                const std::string& catalog);

/// Whether a run that fails so may have failed for what the cube lacks.
bool CubeMayLackSomething(int32_t failure);

/// For the report of a probe that failed: where all is listed.
inline constexpr char kAdviceOnCube[] =
    "\"vokcube cube check\" lists all that a cube lacks for saved queries.";

}  // namespace vok
