#include "providers/cube/olap/build/formula_check.h"

#include <memory>
#include <optional>
#include <vector>

#include "platform/failure.h"
#include "providers/cube/olap/mdx/cell_evaluator.h"
#include "providers/cube/olap/mdx/declared_members.h"
#include "providers/cube/olap/storage/cube_file.h"

namespace vok::olap {
namespace {

/// A file in memory.
class MemoryFile : public FileReplacement {
 public:
  explicit MemoryFile(std::vector<std::byte>& bytes) : bytes_(bytes) {}
  void Write(std::span<const std::byte> bytes) override {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
  }
  void Commit() override {}

 private:
  std::vector<std::byte>& bytes_;
};

/// The cube without any facts.
std::vector<std::byte> EmptyCube(const NewCube& cube) {
  NewFacts facts;
  for (uint32_t hierarchy = 0; hierarchy < cube.hierarchies.size(); ++hierarchy) {
    facts.keys.push_back({hierarchy, {}});
  }
  facts.values.emplace_back();
  facts.value_of_measure.resize(cube.measures.size());
  std::vector<std::byte> bytes;
  CubeWriter writer(std::make_unique<MemoryFile>(bytes));
  writer.Begin(cube, facts);
  writer.End();
  writer.Finish();
  return bytes;
}

/// How far members are computed to see whether they can be: what takes longer is not too deep.
constexpr QueryLimits kTrial{.max_cells = 100'000, .timeout_seconds = 1};

/// Computes each member once, without facts. Only what no query could change is a failure here.
void CheckDepth(const CubeView& view, const Query& query) {
  const QueryGuard guard(kTrial);
  std::optional<CellEvaluator> evaluator;
  for (std::size_t i = 0; i < query.members.size(); ++i) {
    if (!evaluator) evaluator.emplace(view, query, guard);
    Block cell{evaluator->base(), nullptr};
    cell.context.Set(query.members[i].hierarchy, static_cast<MemberId>(i) | kCalculatedBit);
    try {
      evaluator->Cells(cell);
    } catch (const TooDeep&) {
      throw;
    } catch (const Failure&) {
      evaluator.reset();  // what it was at work on is half done
    }
  }
}

}  // namespace

void CheckFormulas(const Locale& locale, const CubeSchema& schema, const NewCube& cube) {
  const std::vector<std::byte> bytes = EmptyCube(cube);
  const auto file = CubeFile::Open(bytes, schema.name);
  const CubeView view(std::shared_ptr<const StoredCube>(file, &file->cubes()[0]), locale);
  std::vector<std::string> places;
  for (const CalculatedMemberSchema& member : schema.calculated) places.push_back(member.place);
  try {
    Query query;
    AddDeclaredMembers(view, query, QueryGuard(QueryLimits()), places);
    CheckDepth(view, query);
  } catch (const Failure& failure) {
    throw Failure(failure_number::kUnspecified, failure.description());
  }
}

}  // namespace vok::olap
