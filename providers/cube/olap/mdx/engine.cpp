#include "providers/cube/olap/mdx/engine.h"

#include <utility>

#include "providers/cube/olap/mdx/evaluate_query.h"
#include "providers/cube/olap/mdx/parser.h"
#include "providers/cube/olap/mdx/resolver.h"

namespace vok::olap {

std::unique_ptr<MdxResult> RunMdx(const std::vector<std::shared_ptr<const CubeView>>& cubes,
                                  const std::string& mdx, const QueryLimits& limits) {
  const QueryGuard guard(limits);
  const MemoryLimit memory(limits.max_memory);
  const SourceText source(mdx);
  const Statement statement = Parse(source);
  std::string names;
  for (const auto& cube : cubes) {
    if (cube->SameName(cube->model().name, statement.cube.text)) {
      return Evaluate(cube, Resolve(*cube, source, statement, guard), source, guard);
    }
    names += (names.empty() ? "" : ", ") + Bracketed(cube->model().name);
  }
  source.Fail(statement.cube.offset,
              "there is no cube " + Bracketed(statement.cube.text) + "; there is " + names);
}

std::unique_ptr<MdxResult> RunMdx(std::shared_ptr<const CubeView> cube, const std::string& mdx,
                                  const QueryLimits& limits) {
  return RunMdx(std::vector{std::move(cube)}, mdx, limits);
}

}  // namespace vok::olap
