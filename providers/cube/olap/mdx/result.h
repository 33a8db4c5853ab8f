// The answer to a query: axes as lists of members, cells as numbers, in the columns that the facts
// came in. Names are made when they are asked for.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/cube.h"
#include "providers/cube/olap/mdx/cell_grid.h"
#include "providers/cube/olap/mdx/query.h"

namespace vok::olap {

class MdxResult : public Cellset {
 public:
  using Axes = std::vector<TupleSet>;

  /// Keeps the cube alive.
  MdxResult(std::shared_ptr<const CubeView> cube, Query query)
      : cube_(std::move(cube)), query_(std::move(query)) {}

  const Query& query() const { return query_; }
  const Axes& axes() const { return axes_; }
  std::size_t AxisCount() const override { return axes_.size(); }
  std::size_t PositionCount(std::size_t axis) const override { return At(axis).size(); }
  std::size_t MembersPerPosition(std::size_t axis) const override { return At(axis).arity(); }
  AxisMember Member(std::size_t axis, std::size_t position, std::size_t index) const override;

  std::size_t CellCount() const { return cells_.size(); }
  void ReadCaptions(std::size_t axis, std::size_t index, std::size_t first,
                    std::span<std::string_view> captions) const override;
  void ReadCells(std::size_t first, std::size_t step, std::span<double> numbers,
                 std::span<CellState> states) const override;
  std::string CellText(std::size_t ordinal) const override;
  std::string FormattedCell(std::size_t ordinal) const override;

  /// For the evaluation alone.
  void SetAxes(Axes axes, Context base);
  void SetCells(CellGrid cells) { cells_ = std::move(cells); }

 private:
  const TupleSet& At(std::size_t axis) const;
  AxisMember CalculatedAxisMember(HierarchyId hierarchy, MemberId id) const;
  void CheckMember(std::size_t axis, std::size_t position, std::size_t index) const;
  void CheckOrdinal(std::size_t ordinal) const;
  std::string FormatAt(std::size_t ordinal) const;

  std::shared_ptr<const CubeView> cube_;
  Query query_;
  Axes axes_;
  std::vector<MemberId> base_members_;  ///< where the axes do not say otherwise
  CellGrid cells_;
  mutable std::vector<std::string> captions_;  ///< that were read last
};

}  // namespace vok::olap
