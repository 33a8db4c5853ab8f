// Walks through a cube's structure that several rooms of the system take.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/cube.h"

namespace vok {

/// The catalog's first cube. Failure 3265 when it has none; `cube_name` is for its text.
std::unique_ptr<CubeDef> FirstCube(const CubeCatalog& catalog, const std::string& cube_name);

/// Names of the members of all levels, from the top. The member of the all level, which stands
/// for no one in particular, is left out.
std::vector<std::string> MemberNames(const CubeHierarchy& hierarchy);

/// Names of the members at the level below the all level, or at the top where there is no such
/// level.
std::vector<std::string> TopMemberNames(const CubeHierarchy& hierarchy);

}  // namespace vok
