#include "providers/cube/olap/mdx/evaluate_query.h"

#include <algorithm>
#include <utility>

#include "providers/cube/olap/mdx/axis_blocks.h"
#include "providers/cube/olap/mdx/cell_evaluator.h"
#include "providers/cube/olap/mdx/cell_grid.h"
#include "providers/cube/olap/mdx/slicer.h"

namespace vok::olap {
namespace {

/// So many blocks are announced, then read together.
constexpr std::size_t kBatch = 256;

class QueryRun {
 public:
  QueryRun(const CubeView& cube, const Query& query, const SourceText& source,
           const QueryGuard& guard)
      : cube_(cube),
        query_(query),
        source_(source),
        guard_(guard),
        evaluator_(cube, query, guard_) {}

  void Run(MdxResult& result) {
    evaluator_.SetBase(SlicerContext(evaluator_, source_));
    for (std::size_t i = 0; i < query_.axes.size(); ++i) {
      const QueryAxis& axis = query_.axes[i];
      axes_.push_back(
          evaluator_.SetOf(*axis.set, "axis " + std::to_string(i), Place{&source_, axis.offset}));
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
        source_.Fail(query_.axes[i].offset, "the answer has more than " +
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
      blocks_.push_back({0, {0}, nullptr});
    }
    const std::size_t count = grid.column_count() * blocks_.size();
    for (std::size_t begin = 0; begin < count; begin += kBatch) {
      const std::size_t end = std::min(count, begin + kBatch);
      for (std::size_t i = begin; i < end; ++i) evaluator_.AnnounceCells(BlockAt(i));
      evaluator_.ReadAnnounced();
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

  /// A block that fills its column is taken over as it is: it is in the order of the axis.
  void Store(std::size_t index, CellGrid& grid) {
    const AxisBlock& part = blocks_[index % blocks_.size()];
    Column cells = evaluator_.Cells(BlockAt(index));
    Column& column = grid.column(index / blocks_.size());
    if (part.rows.size() == grid.column_length()) {
      column = std::move(cells);
      return;
    }
    if (column.size() == 0) column = Column(grid.column_length());
    for (std::size_t i = 0; i < part.rows.size(); ++i) column.Copy(part.rows[i], cells, i);
  }

  void DropEmpty(CellGrid& grid) {
    std::vector<bool> wanted;
    for (const QueryAxis& axis : query_.axes) wanted.push_back(axis.non_empty);
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
  const Query& query_;
  const SourceText& source_;
  const QueryGuard& guard_;
  CellEvaluator evaluator_;
  MdxResult::Axes axes_;
  LongList<AxisBlock> blocks_;
  std::size_t block_axis_ = 0;
};

}  // namespace

std::unique_ptr<MdxResult> Evaluate(std::shared_ptr<const CubeView> cube, Query query,
                                    const SourceText& source, const QueryGuard& guard) {
  auto result = std::make_unique<MdxResult>(cube, std::move(query));
  QueryRun(*cube, result->query(), source, guard).Run(*result);
  return result;
}

}  // namespace vok::olap
