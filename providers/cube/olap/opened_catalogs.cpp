#include "providers/cube/olap/opened_catalogs.h"

#include "platform/failure.h"

namespace vok::olap {

std::string OpenedCatalogs::NameList() const {
  std::string names;
  for (const auto& cube : cubes) {
    names += (names.empty() ? "\"" : ", \"") + cube->model().name + "\"";
  }
  return names.empty() ? "none" : names;
}

std::size_t OpenedCatalogs::Find(const std::string& catalog) const {
  for (std::size_t i = 0; i < cubes.size(); ++i) {
    if (cubes[i]->SameName(cubes[i]->model().name, catalog)) return i;
  }
  throw Failure(failure_number::kUnspecified, "The cube file " + path + " has no catalog \"" +
                                                  catalog + "\". It has: " + NameList() + ".");
}

std::shared_ptr<const OpenedCatalogs> OpenCatalogs(const Files& files, const Locale& locale,
                                                   const std::string& path) {
  const std::shared_ptr<const CubeFile> file = CubeFile::Open(files, path);
  auto opened = std::make_shared<OpenedCatalogs>();
  opened->path = path;
  for (const StoredCube& cube : file->cubes()) {
    opened->cubes.push_back(
        std::make_shared<const CubeView>(std::shared_ptr<const StoredCube>(file, &cube), locale));
  }
  return opened;
}

}  // namespace vok::olap
