// Computes the values of a query's cells, block by block.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <vector>

#include "providers/olap/mdx/query.h"
#include "providers/olap/mdx/query_limits.h"
#include "providers/olap/mdx/reads.h"

namespace vok::olap {

/// One query's evaluation. Failure -2147217900, with line and column: a calculated member that
/// needs itself, a text where a number is needed; and those of `QueryGuard`.
class Evaluator {
 public:
  /// `guard` outlives the evaluation.
  Evaluator(const CubeView& cube, const Query& query, const QueryGuard& guard);

  const CubeView& cube() const { return cube_; }
  const QueryGuard& guard() const { return guard_; }
  const Query& query() const { return query_; }
  /// Default members everywhere, or the slicer's once it was set.
  const Context& base() const { return base_; }
  void SetBase(Context context) { base_ = std::move(context); }

  /// Finds out what `expression` reads at each of the blocks that follow until `ReadAnnounced`.
  void AnnounceCells(const Block& block);
  void ReadAnnounced() { reads_.ReadAnnounced(); }
  void Trim() { reads_.Trim(); }

  /// The cells of the block.
  Column Cells(const Block& block);
  /// `expression` with `members` of `hierarchies` in place of the block's own.
  Column ValuesAt(const ValueExpression& expression, const Block& block,
                  const std::vector<HierarchyId>& hierarchies, const MemberId* members);
  /// `expression` at each tuple of the set, the other hierarchies standing as in `context`.
  Column ValuesOver(const ValueExpression& expression, const TupleSet& set, const Context& context);
  /// `expression`, which is the same for all positions of the block.
  Column OnceForAll(const ValueExpression& expression, const Block& block);
  /// `expression` for each position by itself, where it cannot be computed at once.
  Column ByPosition(const ValueExpression& expression, const Block& block);
  /// The one value at a context.
  Column Single(const ValueExpression& expression, const Context& context);
  /// A column for the block. While reads are announced it has no rows.
  Column NewColumn(const Block& block) const { return Column(announcing_ ? 0 : block.size()); }
  bool announcing() const { return announcing_; }

  const TupleSet& Named(std::size_t set);
  MemberId Parent(HierarchyId hierarchy, MemberId member) const;
  /// Ranges that live as long as the evaluation.
  const LeafRanges* Keep(LeafRanges ranges) {
    return &kept_ranges_.emplace_back(std::move(ranges));
  }

 private:
  Column Spread(const Column& one, const Block& block) const;

  const CubeView& cube_;
  const Query& query_;
  const QueryGuard& guard_;
  Context base_;
  Reads reads_;
  std::deque<LeafRanges> kept_ranges_;
  std::vector<std::optional<TupleSet>> named_sets_;
  bool announcing_ = false;
  uint32_t depth_ = 0;
};

}  // namespace vok::olap
