// What tuples are ordered by: values, places in the hierarchy, or values among siblings.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "providers/cube/olap/mdx/cell_evaluator.h"

namespace vok::olap {

/// -1, 0 or 1. An empty value is before every other, a number before a text.
int CompareCells(const Column& column, std::size_t a, std::size_t b);
/// Orders `rows`, equal ones as they are, unless the query ends before.
template <typename Before>
void SortRows(const QueryGuard& guard, Rows& rows, Before before) {
  std::size_t comparisons = 0;
  std::stable_sort(rows.begin(), rows.end(), [&](uint32_t a, uint32_t b) {
    guard.CheckAt(++comparisons);
    return before(a, b);
  });
}
/// Orders `rows` by their values; equal ones stay as they are.
void SortByValue(const QueryGuard& guard, const Column& values, bool descending, Rows& rows);

/// Each tuple's members with all members above them, from the top.
class PathKeys {
 public:
  PathKeys(const CellEvaluator& evaluator, const TupleSet& set);
  /// Parents stand before their children, or after them.
  bool IsBefore(uint32_t a, uint32_t b, bool children_first) const;

 private:
  using Path = MemberIds;
  std::size_t arity_;
  LongList<Path> paths_;  ///< of the members of all tuples, one after another
};

/// Siblings by their values, each with the members below it; equal ones in the cube's order. A
/// tuple's value counts from its first member up to the one compared.
class SiblingKeys {
 public:
  SiblingKeys(CellEvaluator& evaluator, const TupleSet& set, const ValueExpression& value,
              const Context& context);
  bool IsBefore(uint32_t a, uint32_t b, bool descending) const;

 private:
  struct Step {
    MemberId member;
    uint32_t row;  ///< of its value in the column of its place
  };
  using Path = LongList<Step>;

  void AddColumn(CellEvaluator& evaluator, const TupleSet& set, std::size_t column,
                 const ValueExpression& value, const Context& context);

  std::size_t arity_;
  LongList<Path> paths_;
  std::vector<Column> values_;  ///< one per member of a tuple
};

}  // namespace vok::olap
