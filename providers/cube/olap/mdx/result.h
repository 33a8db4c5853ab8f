// The answer to a query: axes as lists of members, cells as numbers. Names and texts are made when
// asked for.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/cube.h"
#include "providers/cube/olap/mdx/cell_grid.h"
#include "providers/cube/olap/mdx/query.h"

namespace vok::olap {

class MdxResult {
 public:
  struct Axis {
    TupleSet tuples;
    std::size_t PositionCount() const { return tuples.size(); }
  };

  /// Keeps the cube alive.
  MdxResult(std::shared_ptr<const CubeView> cube, Query query)
      : cube_(std::move(cube)), query_(std::move(query)) {}

  const Query& query() const { return query_; }
  const std::vector<Axis>& axes() const { return axes_; }
  AxisMember Member(std::size_t axis, std::size_t position, std::size_t index) const;

  std::size_t CellCount() const { return cells_.size(); }
  /// Axis 0 runs fastest. Failure 9: there is no such cell.
  Value Cell(std::size_t ordinal) const;
  std::string FormattedCell(std::size_t ordinal) const;

  /// For the evaluation alone.
  void SetAxes(std::vector<Axis> axes, Context base);
  void SetCells(CellGrid cells) { cells_ = std::move(cells); }

 private:
  AxisMember CalculatedAxisMember(HierarchyId hierarchy, MemberId id) const;
  void CheckOrdinal(std::size_t ordinal) const;
  std::string FormatAt(std::size_t ordinal) const;

  std::shared_ptr<const CubeView> cube_;
  Query query_;
  std::vector<Axis> axes_;
  std::vector<MemberId> base_members_;  ///< where the axes do not say otherwise
  CellGrid cells_;
};

}  // namespace vok::olap
