// A query on a cube file and its answer, which stays readable after the connection is gone.
#pragma once

#include <atomic>
#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "platform/cube.h"
#include "providers/cube/olap/mdx/query_limits.h"
#include "providers/cube/olap/mdx/result.h"
#include "providers/cube/olap/opened_catalogs.h"

namespace vok::olap {

/// Failures: 3704 before `Open` or without a connection, 3265 for an axis that is not there, 9 for
/// a cell or position that is not there, and those of `RunMdx`.
class OlapCellset : public Cellset {
 public:
  void SetActiveConnection(CubeConnection& connection) override;
  void SetSource(const std::string& mdx) override { source_ = mdx; }
  void Open() override;
  void Close() override;
  std::size_t AxisCount() const override { return Result().axes().size(); }
  const CellsetAxis& AxisAt(std::size_t index) const override;
  Value Cell(std::size_t ordinal) const override { return Result().Cell(ordinal); }
  std::string FormattedCell(std::size_t ordinal) const override {
    return Result().FormattedCell(ordinal);
  }

 private:
  class Axis : public CellsetAxis {
   public:
    Axis(const MdxResult& result, std::size_t index) : result_(result), index_(index) {}
    std::size_t PositionCount() const override { return result_.axes()[index_].PositionCount(); }
    std::size_t MembersPerPosition() const override {
      return result_.axes()[index_].tuples.arity();
    }
    AxisMember MemberAt(std::size_t position, std::size_t index) const override {
      return result_.Member(index_, position, index);
    }

   private:
    const MdxResult& result_;
    std::size_t index_;
  };

  const MdxResult& Result() const;

  std::shared_ptr<const OpenedCatalogs> opened_;
  std::optional<std::size_t> catalog_;
  QueryLimits limits_;
  std::shared_ptr<const std::atomic<bool>> cancelled_;
  std::string source_;
  std::unique_ptr<MdxResult> result_;
  std::deque<Axis> axes_;
};

}  // namespace vok::olap
