#include "cli/old_cube.h"

#include "platform/failure.h"
#include "providers/cube/olap/storage/cube_file.h"
#include "providers/cube/olap/storage/format.h"

namespace vok::cli {
namespace {

[[noreturn]] void Refuse(const std::string& path, const std::string& why) {
  throw Failure(failure_number::kFileExists, "Cannot write \"" + path + "\": " + why);
}

}  // namespace

OldCube::OldCube(const Files& files, const std::string& path) : path_(path) {
  if (!files.Exists(path)) return;
  const std::string begin = ReadBeginning(files, path, olap::kFileMagic.size());
  if (begin.empty()) return;
  if (begin != std::string(olap::kFileMagic.begin(), olap::kFileMagic.end())) {
    Refuse(path, "the file there is not a cube. Give another name, or delete it first.");
  }
  try {
    const auto opened = olap::CubeFile::Open(files, path);
    for (const olap::StoredCube& cube : opened->cubes()) {
      facts_[cube.model.name] = cube.model.fact_count;
    }
  } catch (const Failure&) {  // a damaged one may be replaced by anything
    facts_.clear();
  }
}

void OldCube::RefuseEmptied(const olap::BuildReport& made) const {
  for (const auto& cube : made.cubes) {
    const auto before = facts_.find(cube.name);
    if (cube.facts > 0 || before == facts_.end() || before->second == 0) continue;
    Refuse(path_, "cube " + cube.name + " has " + std::to_string(before->second) +
                      " facts there and would have none. Nothing was changed. Look into the data, "
                      "or add --allow-empty.");
  }
}

}  // namespace vok::cli
