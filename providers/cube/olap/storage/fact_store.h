// Stored facts of one cube: aggregates of its measures for any slice.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "platform/cube.h"
#include "providers/cube/olap/storage/column_memory.h"
#include "providers/cube/olap/storage/format.h"
#include "providers/cube/olap/storage/model.h"

namespace vok::olap {

/// Which facts to aggregate and how to list the result.
struct FactQuery {
  std::vector<uint32_t> measures;  ///< indexes into `CubeModel::measures`
  /// One entry per hierarchy of the model: the leaves that take part, as ascending ranges that
  /// neither touch nor overlap. No entry for a hierarchy, or no ranges: all leaves.
  std::vector<std::vector<IdRange>> leaves;
  struct Group {
    uint32_t hierarchy = 0;
    uint32_t level = 0;
  };
  /// One result per member of this level, in the cube's order; without it one result in all.
  std::optional<Group> group;
  /// Called now and then while the facts are read; what it throws ends the read. May be empty.
  std::function<void()> check = {};
};

/// One measure's results, numbers and empty cells alone. A sum of nothing, or of NULLs only, is
/// empty; that is not 0.
struct FactColumn {
  explicit FactColumn(std::size_t size = 0) : numbers(size), states(size, CellState::kEmpty) {}

  std::vector<double, ColumnAllocator<double>> numbers;       ///< 0 where empty
  std::vector<CellState, ColumnAllocator<CellState>> states;  ///< same length
  bool overflows = false;  ///< a number is infinite: what it stands for is too large for any
};

/// Facts one by one, as a file holds them: in ascending order of their leaves. Safe to read from
/// several threads. Each call fills its span from row `first` on.
class FactRows {
 public:
  virtual ~FactRows() = default;
  virtual uint64_t rows() const = 0;
  virtual void ReadLeaves(uint32_t hierarchy, uint64_t first, std::span<int64_t> leaves) const = 0;
  /// Of the columns of values, which several measures may share.
  virtual std::vector<ValueFormat> Formats() const = 0;
  /// Scaled integers, or the bits of doubles; 0 for NULL.
  virtual void ReadValues(std::size_t column, uint64_t first, std::span<int64_t> values) const = 0;
  /// 1 or 0; of a column with NULLs.
  virtual void ReadValidity(std::size_t column, uint64_t first,
                            std::span<int64_t> validity) const = 0;
};

/// Reads are safe from several threads. Sums of decimal values are exact: they are added as scaled
/// integers and rounded once, to the nearest double. Failure -2147467259 when the file is damaged
/// at a place that the query touches.
class FactStore {
 public:
  virtual ~FactStore() = default;
  /// One column per measure of the query, in its order. Stored aggregates answer where they can,
  /// with the same results; else the cost follows the facts inside `leaves`, not those outside.
  virtual std::vector<FactColumn> Read(const FactQuery& query) const = 0;
  /// Several at once.
  virtual std::vector<std::vector<FactColumn>> ReadAll(
      std::span<const FactQuery* const> queries) const;
  /// Whether those that are read at once cost less, as where the facts are far away.
  virtual bool AnswersTogether() const { return false; }
  /// Null where the facts are not in a file.
  virtual const FactRows* Rows() const = 0;
};

}  // namespace vok::olap
