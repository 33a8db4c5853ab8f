// A cube small enough to compute by head, for MDX cases.
#pragma once

#include <memory>

#include "native.h"
#include "providers/cube/olap/mdx/cube_view.h"
#include "tests/support/cubes/sample_cube.h"

namespace vok::test {

/// The only cube of the file, as queries see it; it keeps the file open.
inline std::shared_ptr<const olap::CubeView> ViewOf(const BuiltCube& built) {
  static const NativeLocale locale("en_US");
  return std::make_shared<const olap::CubeView>(
      std::shared_ptr<const olap::StoredCube>(built.shared_file(), &built.cube()), locale);
}

/// Cube "QEL": Date (All, Year, Month; November 2009 to April 2010), QeL (All and the lines A, B,
/// C, D, "E]"), ActX with hierarchy xlFile (All, Ledger, File), Opening_Balance (All; 0 and 1),
/// Area (no All; Section, Item). Measures Amount (default) and Units. The facts are in its folder.
inline std::shared_ptr<const olap::CubeView> SmallCube() {
  static const BuiltCube built(SampleTexts("small"));
  return ViewOf(built);
}

}  // namespace vok::test
