#include "cube/structure.h"

#include "platform/failure.h"

namespace vok {
namespace {

/// Index of the first level with members of its own.
std::size_t TopLevel(const CubeHierarchy& hierarchy) {
  return hierarchy.LevelCount() > 0 && hierarchy.LevelAt(0)->IsAll() ? 1 : 0;
}

void AppendNames(const CubeLevel& level, std::vector<std::string>& names) {
  const std::size_t count = level.MemberCount();
  for (std::size_t member = 0; member < count; ++member) {
    names.push_back(level.MemberAt(member)->Name());
  }
}

}  // namespace

std::unique_ptr<CubeDef> FirstCube(const CubeCatalog& catalog, const std::string& cube_name) {
  if (catalog.CubeCount() == 0) {
    throw Failure(failure_number::kItemNotFound, "The catalog \"" + cube_name + "\" has no cube");
  }
  return catalog.CubeAt(0);
}

std::vector<std::string> MemberNames(const CubeHierarchy& hierarchy) {
  std::vector<std::string> names;
  for (std::size_t level = TopLevel(hierarchy); level < hierarchy.LevelCount(); ++level) {
    AppendNames(*hierarchy.LevelAt(level), names);
  }
  return names;
}

std::vector<std::string> TopMemberNames(const CubeHierarchy& hierarchy) {
  std::vector<std::string> names;
  const std::size_t top = TopLevel(hierarchy);
  if (top < hierarchy.LevelCount()) AppendNames(*hierarchy.LevelAt(top), names);
  return names;
}

}  // namespace vok
