#include "providers/cube/olap/mdx/engine.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "providers/cube/olap/mdx/axis_blocks.h"
#include "providers/cube/olap/mdx/cell_evaluator.h"
#include "providers/cube/olap/mdx/cell_grid.h"
#include "providers/cube/olap/mdx/distinct_tuples.h"
#include "providers/cube/olap/mdx/merged_cells.h"
#include "providers/cube/olap/mdx/parser.h"
#include "providers/cube/olap/mdx/resolver.h"

namespace vok::olap {
namespace {

LeafRanges LeavesOf(const Hierarchy& hierarchy, const MemberIds& members) {
  LeafRanges leaves;
  for (const MemberId member : members) leaves.push_back(hierarchy.Leaves(member));
  return Merged(std::move(leaves));
}

/// So many blocks are announced, then computed.
constexpr std::size_t kBatch = 256;

/// The base context of the query: default members, and the slicer's. A slicer of several tuples
/// stands on all their leaves at once.
Context SlicerContext(CellEvaluator& evaluator, const SourceText& source) {
  Context context = evaluator.base();
  const auto& slicer = evaluator.query().slicer;
  if (!slicer) return context;
  const TupleSet tuples =
      evaluator.SetOf(*slicer->set, "the slicer", Place{&source, slicer->offset});
  evaluator.guard().Check();
  if (tuples.arity() == 0) source.Fail(slicer->offset, "the slicer has no members");
  const auto factors = FactorsOf(evaluator.guard(), tuples);
  if (!factors) {
    source.Fail(slicer->offset,
                "not supported: a set in WHERE that is not every combination of its members");
  }
  for (std::size_t i = 0; i < tuples.arity(); ++i) {
    const HierarchyId hierarchy = tuples.hierarchies[i];
    const MemberIds& members = (*factors)[i];
    if (members.size() < 2) {
      context.Set(hierarchy, members.empty() ? kNoMember : members[0]);
    } else if (hierarchy == kMeasures || !std::all_of(members.begin(), members.end(), IsStored)) {
      source.Fail(slicer->offset,
                  "not supported: several measures or calculated members of one "
                  "hierarchy in WHERE");
    } else {
      context.regions[hierarchy] =
          evaluator.Keep(LeavesOf(evaluator.cube().Stored(hierarchy), members));
    }
  }
  return context;
}

class Evaluation {
 public:
  Evaluation(const CubeView& cube, const Query& query, std::vector<QueryAxis> asked,
             const SourceText& source, const QueryGuard& guard)
      : cube_(cube),
        asked_(std::move(asked)),
        source_(source),
        guard_(guard),
        evaluator_(cube, query, guard_) {}

  void Run(MdxResult& result) {
    evaluator_.SetBase(SlicerContext(evaluator_, source_));
    for (std::size_t i = 0; i < asked_.size(); ++i) {
      QueryAxis& axis = asked_[i];
      axes_.push_back(
          evaluator_.SetOf(*axis.set, "axis " + std::to_string(i), Place{&source_, axis.offset}));
      axis.set.reset();  // it may hold as many members as the axis
    }
    const std::vector<std::size_t> lengths = CheckedLengths();
    block_axis_ = ChooseBlockAxis();
    CellGrid grid(lengths, block_axis_);
    if (grid.size() > 0) Compute(grid);
    guard_.Check();
    DropEmpty(grid);
    result.SetAxes(std::move(axes_), evaluator_.base());
    result.SetCells(std::move(grid));
  }

 private:
  std::vector<std::size_t> CheckedLengths() const {
    std::vector<std::size_t> lengths;
    std::size_t total = 1;
    for (std::size_t i = 0; i < axes_.size(); ++i) {
      lengths.push_back(axes_[i].size());
      if (lengths.back() > 0 && total > guard_.max_cells() / lengths.back()) {
        source_.Fail(asked_[i].offset, "the answer has more than " +
                                           std::to_string(guard_.max_cells()) +
                                           " cells: ask for fewer members");
      }
      total *= lengths.back();
    }
    return lengths;
  }

  /// The axis that is computed block by block: the longest one that is not of measures alone.
  std::size_t ChooseBlockAxis() const {
    std::size_t chosen = axes_.size();
    for (std::size_t i = 0; i < axes_.size(); ++i) {
      if (VaryingHierarchy(guard_, axes_[i]) == kNoHierarchy) continue;
      if (chosen == axes_.size() || axes_[i].size() > axes_[chosen].size()) {
        chosen = i;
      }
    }
    return chosen;
  }

  void Compute(CellGrid& grid) {
    if (block_axis_ < axes_.size()) {
      blocks_ = CutIntoBlocks(cube_, guard_, axes_[block_axis_]);
    } else {
      blocks_.push_back({0, {}, nullptr});
    }
    const std::size_t count = grid.column_count() * blocks_.size();
    for (std::size_t begin = 0; begin < count; begin += kBatch) {
      const std::size_t end = std::min(count, begin + kBatch);
      for (std::size_t i = begin; i < end; ++i) evaluator_.AnnounceCells(BlockAt(i));
      evaluator_.EndAnnouncing();
      for (std::size_t i = begin; i < end; ++i) Store(i, grid);
      evaluator_.Trim();
    }
  }

  /// Blocks are counted with those of one column together.
  Block BlockAt(std::size_t index) const {
    const AxisBlock& part = blocks_[index % blocks_.size()];
    std::size_t column = index / blocks_.size();
    Block block{evaluator_.base(), part.varying.get()};
    for (std::size_t axis = 0; axis < axes_.size(); ++axis) {
      const TupleSet& tuples = axes_[axis];
      if (axis == block_axis_) {
        tuples.Apply(part.tuple, block.context);
      } else {
        tuples.Apply(column % tuples.size(), block.context);
        column /= tuples.size();
      }
    }
    return block;
  }

  /// The blocks of a column come one after the other; the last one completes it.
  void Store(std::size_t index, CellGrid& grid) {
    const AxisBlock& part = blocks_[index % blocks_.size()];
    Column cells = evaluator_.Cells(BlockAt(index));
    if (part.IsWhole()) {
      grid.SetColumn(index, std::move(cells));
      return;
    }
    if (column_.size() == 0) column_ = Column(grid.column_length());
    for (std::size_t i = 0; i < part.rows.size(); ++i) column_.Copy(part.rows[i], cells, i);
    if (&part == &blocks_.back()) {
      grid.SetColumn(index / blocks_.size(), std::exchange(column_, Column()));
    }
  }

  void DropEmpty(CellGrid& grid) {
    std::vector<bool> wanted;
    for (const QueryAxis& axis : asked_) wanted.push_back(axis.non_empty);
    if (std::find(wanted.begin(), wanted.end(), true) == wanted.end()) return;
    grid.DropEmpty(wanted);
    for (std::size_t i = 0; i < axes_.size(); ++i) {
      if (grid.KeepsAll(i)) continue;
      TupleSet& tuples = axes_[i];
      TupleSet kept{tuples.hierarchies, {}};
      kept.ids.reserve(grid.Kept(i).size() * tuples.arity());
      for (const uint32_t position : grid.Kept(i)) kept.Add(tuples.tuple(position));
      tuples = std::move(kept);
    }
  }

  const CubeView& cube_;
  std::vector<QueryAxis> asked_;
  const SourceText& source_;
  const QueryGuard& guard_;
  CellEvaluator evaluator_;
  MdxResult::Axes axes_;
  LongList<AxisBlock> blocks_;
  std::size_t block_axis_ = 0;
  Column column_;  ///< in the making
};

std::unique_ptr<MdxResult> Evaluate(const std::shared_ptr<const CubeView>& cube, Query query,
                                    const SourceText& source, const QueryGuard& guard) {
  std::vector<QueryAxis> axes = std::move(query.axes);
  auto result = std::make_unique<MdxResult>(cube, std::move(query));
  Evaluation(*cube, result->query(), std::move(axes), source, guard).Run(*result);
  return result;
}

}  // namespace

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
