// Computes the values of a query's cells, block by block.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/failure.h"
#include "providers/cube/olap/mdx/cell_memo.h"
#include "providers/cube/olap/mdx/fact_cache.h"
#include "providers/cube/olap/mdx/query.h"
#include "providers/cube/olap/mdx/query_limits.h"

namespace vok::olap {

/// A failure that the depth of the formulas alone decides, with any facts.
class TooDeep : public Failure {
 public:
  using Failure::Failure;
  explicit TooDeep(const Failure& failure) : Failure(failure) {}
};

/// One query's evaluation. Failure -2147217900, with line and column: a calculated member that
/// needs itself, a text where a number is needed; and those of `QueryGuard`.
class CellEvaluator {
 public:
  /// `guard` outlives the evaluation.
  CellEvaluator(const CubeView& cube, const Query& query, const QueryGuard& guard);

  const CubeView& cube() const { return cube_; }
  const QueryGuard& guard() const { return guard_; }
  const Query& query() const { return query_; }
  /// Default members everywhere, or the slicer's once it was set.
  const Context& base() const { return base_; }
  void SetBase(Context context) { base_ = std::move(context); }

  /// Finds out what the cells of the block need of the facts, for those of one slice to be read
  /// together. All blocks of a batch are announced before the first is computed.
  void AnnounceCells(const Block& block);
  void EndAnnouncing() { announced_.Clear(); }
  void Trim() { fact_cache_.Trim(); }

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

  /// Evaluates with failures about depth that name what is computed.
  TupleSet SetOf(const SetExpression& set, const std::string& name, Place place);
  const TupleSet& Named(std::size_t set);
  MemberId Parent(HierarchyId hierarchy, MemberId member) const;
  /// Ranges that live as long as the evaluation, the same place for the same ranges.
  const LeafRanges* Keep(LeafRanges ranges) {
    return &*kept_ranges_.insert(std::move(ranges)).first;
  }
  /// Failure -2147217900 that names the cell: numbers gave `what` beyond the largest one.
  [[noreturn]] void FailTooLarge(const std::string& what, Place place, const Block& block,
                                 std::size_t row) const;

 private:
  friend class RecursionGuard;

  /// What failures about depth name.
  struct Work {
    std::string_view name;
    Place place;
  };
  struct RangesBefore {
    bool operator()(const LeafRanges& a, const LeafRanges& b) const;
  };

  Column MemberCells(const Block& block, const CalculatedMember& member, HierarchyId hierarchy);
  Column Computed(const Block& block, const CalculatedMember& member);
  Column StoredCells(const Block& block);
  Column Spread(const Column& one, const Block& block) const;
  std::string CellName(const Block& block, std::size_t row, HierarchyId first) const;
  [[noreturn]] void FailTooDeep() const;

  const CubeView& cube_;
  const Query& query_;
  const QueryGuard& guard_;
  Context base_;
  FactCache fact_cache_;
  CellMemo computed_;
  CellMemo announced_;
  std::set<LeafRanges, RangesBefore> kept_ranges_;
  std::vector<std::optional<TupleSet>> named_sets_;
  Work work_;
  uint32_t formulas_ = 0;  ///< being computed within one another
  uint32_t depth_ = 0;
  uint32_t deepest_ = 0;  ///< that was reached since the formula being computed was begun
  bool announcing_ = false;
};

/// Steps that may be taken within one another: some hundred bytes of stack each, of the megabyte
/// that a host program's thread has.
inline constexpr uint32_t kMaxDepth = 1000;

/// One step further down while it lives. Failure `TooDeep` past the limit.
class RecursionGuard {
 public:
  explicit RecursionGuard(CellEvaluator& evaluator) : depth_(evaluator.depth_) {
    if (depth_ >= kMaxDepth) evaluator.FailTooDeep();
    if (++depth_ > evaluator.deepest_) evaluator.deepest_ = depth_;
  }
  ~RecursionGuard() { --depth_; }
  RecursionGuard(const RecursionGuard&) = delete;
  RecursionGuard& operator=(const RecursionGuard&) = delete;

 private:
  uint32_t& depth_;
};

}  // namespace vok::olap
