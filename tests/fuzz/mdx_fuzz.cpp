// Queries of any bytes: read or refused; what is read, written out and read again, is the same.
// What the sample ledger then answers, within a second, is a result or a failure.
#include <memory>

#include "providers/cube/olap/mdx/engine.h"
#include "providers/cube/olap/mdx/parser.h"
#include "system/posix/icu_locale.h"
#include "tests/fuzz/fuzz.h"
#include "tests/support/cubes/sample_cube.h"

namespace {

std::string Written(const std::string& mdx) {
  const vok::olap::SourceText source(mdx);
  return ToText(vok::olap::Parse(source));
}

void Run(const std::string& mdx) {
  static const vok::IcuLocale locale("en_GB");
  static const vok::test::BuiltCube built(vok::test::SampleLedger());
  static const auto cube = std::make_shared<const vok::olap::CubeView>(
      std::shared_ptr<const vok::olap::StoredCube>(built.shared_file(), &built.cube()), locale);
  vok::olap::QueryLimits limits;
  limits.max_cells = 5000;
  limits.timeout_seconds = 1;
  Refuses([&] {
    const auto result = RunMdx(cube, mdx, limits);
    for (std::size_t cell = 0; cell < result->CellCount(); ++cell) result->FormattedCell(cell);
  });
}

}  // namespace

void FuzzOne(std::string_view bytes) {
  const std::string mdx(bytes);
  std::string first;
  if (Refuses([&] { first = Written(mdx); })) return;
  Run(mdx);
  try {
    if (Written(first) != first) std::abort();
  } catch (const vok::Failure& failure) {
    // Written out, every operation stands in parentheses: that may nest too deep.
    if (failure.description().find("nest more than") == std::string::npos) std::abort();
  }
}
