#include "providers/olap/mdx/cells.h"

#include <algorithm>
#include <utility>

#include "providers/olap/mdx/axis_blocks.h"
#include "providers/olap/mdx/cell_grid.h"
#include "providers/olap/mdx/evaluator.h"
#include "providers/olap/mdx/slicer.h"

namespace vok::olap {
namespace {

/// So many blocks are announced, then read together.
constexpr std::size_t kBatch = 256;

class QueryRun {
 public:
  QueryRun(const CubeView& cube, const Query& query, const SourceText& source)
      : cube_(cube), query_(query), source_(source), evaluator_(cube, query) {}

  void Run(MdxResult& result) {
    evaluator_.SetBase(SlicerContext(evaluator_, source_));
    for (const QueryAxis& axis : query_.axes) {
      axes_.push_back({axis.set->Evaluate(evaluator_, evaluator_.base())});
    }
    CellGrid grid(CheckedLengths());
    if (grid.size() > 0) Compute(grid);
    DropEmpty(grid);
    result.SetAxes(std::move(axes_), evaluator_.base());
    result.SetCells(std::move(grid.numbers), std::move(grid.states), std::move(grid.texts));
  }

 private:
  std::vector<std::size_t> CheckedLengths() const {
    std::vector<std::size_t> lengths;
    std::size_t total = 1;
    for (const MdxResult::Axis& axis : axes_) {
      lengths.push_back(axis.PositionCount());
      if (lengths.back() > 0 && total > kMaxCells / lengths.back()) {
        source_.Fail(0, "the answer has more than " + std::to_string(kMaxCells) +
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
      if (VaryingHierarchy(axes_[i].tuples) == kNoHierarchy) continue;
      if (chosen == axes_.size() || axes_[i].PositionCount() > axes_[chosen].PositionCount()) {
        chosen = i;
      }
    }
    return chosen;
  }

  void Compute(CellGrid& grid) {
    block_axis_ = ChooseBlockAxis();
    if (block_axis_ < axes_.size()) {
      blocks_ = CutIntoBlocks(cube_, axes_[block_axis_].tuples);
    } else {
      blocks_.push_back({0, {0}, nullptr});
    }
    const std::size_t along = block_axis_ < axes_.size() ? grid.lengths[block_axis_] : 1;
    const std::size_t count = grid.size() / along * blocks_.size();
    for (std::size_t begin = 0; begin < count; begin += kBatch) {
      const std::size_t end = std::min(count, begin + kBatch);
      for (std::size_t i = begin; i < end; ++i) evaluator_.AnnounceCells(BlockAt(i).block);
      evaluator_.ReadAnnounced();
      for (std::size_t i = begin; i < end; ++i) Store(BlockAt(i), grid);
      evaluator_.Trim();
    }
  }

  struct PlacedBlock {
    Block block;
    const AxisBlock* rows;
    std::size_t first_ordinal;  ///< of the cell at position 0 of the block axis
  };

  /// Blocks are counted with those of one combination of the other axes' positions together.
  PlacedBlock BlockAt(std::size_t index) const {
    const AxisBlock& part = blocks_[index % blocks_.size()];
    std::size_t outer = index / blocks_.size();
    PlacedBlock placed{{evaluator_.base(), part.varying.get()}, &part, 0};
    std::size_t stride = 1;
    for (std::size_t axis = 0; axis < axes_.size(); ++axis) {
      const TupleSet& tuples = axes_[axis].tuples;
      std::size_t position = part.tuple;
      if (axis != block_axis_) {
        position = outer % tuples.size();
        outer /= tuples.size();
        placed.first_ordinal += position * stride;
      }
      tuples.Apply(position, placed.block.context);
      stride *= tuples.size();
    }
    return placed;
  }

  void Store(const PlacedBlock& placed, CellGrid& grid) {
    const Column cells = evaluator_.Cells(placed.block);
    const std::size_t stride = block_axis_ < axes_.size() ? grid.strides[block_axis_] : 0;
    for (std::size_t i = 0; i < placed.rows->rows.size(); ++i) {
      grid.Put(placed.first_ordinal + placed.rows->rows[i] * stride, cells, i);
    }
  }

  void DropEmpty(CellGrid& grid) {
    const auto wants = [](const QueryAxis& axis) { return axis.non_empty; };
    if (std::none_of(query_.axes.begin(), query_.axes.end(), wants)) return;
    std::vector<std::vector<uint32_t>> kept = grid.UsedPositions();
    for (std::size_t i = 0; i < axes_.size(); ++i) {
      if (!query_.axes[i].non_empty) {
        kept[i].resize(grid.lengths[i]);
        for (uint32_t p = 0; p < kept[i].size(); ++p) kept[i][p] = p;
      }
      TupleSet& tuples = axes_[i].tuples;
      std::vector<MemberId> ids;
      for (const uint32_t p : kept[i]) {
        ids.insert(ids.end(), tuples.tuple(p), tuples.tuple(p) + tuples.arity());
      }
      tuples.ids = std::move(ids);
    }
    grid = grid.Only(kept);
  }

  const CubeView& cube_;
  const Query& query_;
  const SourceText& source_;
  Evaluator evaluator_;
  std::vector<MdxResult::Axis> axes_;
  std::vector<AxisBlock> blocks_;
  std::size_t block_axis_ = 0;
};

}  // namespace

std::unique_ptr<MdxResult> Evaluate(std::shared_ptr<const CubeView> cube, Query query,
                                    const SourceText& source) {
  auto result = std::make_unique<MdxResult>(cube, std::move(query));
  QueryRun(*cube, result->query(), source).Run(*result);
  return result;
}

}  // namespace vok::olap
