// A cube file as its clients see it: every cube is a catalog of its own, of the cube's name.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/locale.h"
#include "providers/cube/olap/mdx/cube_view.h"

namespace vok::olap {

/// Immutable and shared by a connection and all that was asked of it: each keeps it alive.
struct OpenedCatalogs {
  std::string path;
  std::vector<std::shared_ptr<const CubeView>> cubes;

  /// Names of the catalogs, for messages: "A", "B".
  std::string NameList() const;
  /// Failure -2147467259 naming the file, the catalog, and those there are.
  std::size_t Find(const std::string& catalog) const;
};

/// Failures: those of `CubeFile::Open`. `locale` must outlive the result.
std::shared_ptr<const OpenedCatalogs> OpenCatalogs(const Files& files, const Locale& locale,
                                                   const std::string& path);

}  // namespace vok::olap
