// The resolved tree of a query: expressions that know their type and the hierarchies they speak of,
// and what they are evaluated in.
//
// Evaluation goes by blocks: a value is computed for many cells at once, the members of one
// hierarchy (`Positions`) at one member of every other (`Context`), and comes as a `Column`.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "providers/cube/olap/mdx/cube_view.h"

namespace vok::olap {

/// Calculated members are numbered apart from the stored ones.
inline constexpr MemberId kCalculatedBit = 0x80000000;
inline bool IsCalculated(MemberId id) { return id != kNoMember && (id & kCalculatedBit) != 0; }
inline bool IsStored(MemberId id) { return (id & kCalculatedBit) == 0; }

using LeafRanges = std::vector<IdRange>;
/// Lists that grow with the answer; they count against the query's memory.
using MemberIds = LongList<MemberId>;
using Rows = LongList<uint32_t>;

/// One member of every hierarchy. A hierarchy may stand on several leaves at once instead: those of
/// a slicer of several members, or of a sum put together, which is a stored cell, so that formulas
/// meet the slicer's alone.
struct Context {
  std::vector<MemberId> members;
  std::vector<const LeafRanges*> regions;  ///< nullptr: the member's own leaves

  void Set(HierarchyId hierarchy, MemberId member) {
    members[hierarchy] = member;
    regions[hierarchy] = nullptr;
  }
};

/// Members of one hierarchy, the cells of a block. All are stored ones, or `kNoMember` for a cell
/// that is empty for every question.
struct Positions {
  /// Those of one level: what is read from the facts together.
  struct Part {
    uint32_t level = 0;
    Rows rows;              ///< indexes into `ids`; empty where `is_level`: all of them
    LeafRanges leaves;      ///< their leaves; empty: all of the hierarchy's
    bool is_level = false;  ///< `ids` are the members of the level, all and in its order
  };

  Positions(const CubeView& cube, HierarchyId hierarchy_id, MemberIds members);

  HierarchyId hierarchy;
  MemberIds ids;
  std::vector<Part> parts;

 private:
  void AddLevel(uint32_t level);
  void AddByLevel(const CubeView& cube);
};

struct Block {
  Context context;
  const Positions* positions = nullptr;  ///< nullptr: the one cell of `context`

  std::size_t size() const { return positions == nullptr ? 1 : positions->ids.size(); }
  HierarchyId Varying() const { return positions == nullptr ? kNoHierarchy : positions->hierarchy; }
  /// The one cell at `row`.
  Block At(std::size_t row) const;
};

/// Values of a block's cells. A number is 0 where the cell is empty or a text; a logical value is 1
/// or 0. What was read from the facts is taken over as it is.
struct Column : FactColumn {
  explicit Column(std::size_t size = 0) : FactColumn(size) {}
  explicit Column(FactColumn facts) : FactColumn(std::move(facts)) {}

  std::size_t size() const { return states.size(); }
  void SetNumber(std::size_t row, double number);
  void SetLogical(std::size_t row, bool value);
  void SetText(std::size_t row, std::string text);
  /// Takes over one cell of another column.
  void Copy(std::size_t row, const Column& from, std::size_t from_row);

  LongList<std::string> texts;  ///< empty when no cell is a text
};

/// Tuples over `hierarchies`, one after another. The empty set {} has no hierarchies.
struct TupleSet {
  std::vector<HierarchyId> hierarchies;
  MemberIds ids;

  std::size_t arity() const { return hierarchies.size(); }
  std::size_t size() const { return ids.empty() ? 0 : ids.size() / hierarchies.size(); }
  const MemberId* tuple(std::size_t index) const { return ids.data() + index * arity(); }
  void Apply(std::size_t index, Context& context) const {
    for (std::size_t i = 0; i < arity(); ++i) context.Set(hierarchies[i], tuple(index)[i]);
  }
  void Add(const MemberId* tuple) { ids.insert(ids.end(), tuple, tuple + arity()); }
};

class CellEvaluator;

/// Evaluating an expression counts as one step of depth, in every formula: failure
/// -2147217900 where the steps within one another become more than a stack can bear.
class Expression {
 public:
  virtual ~Expression() = default;
  /// Whether the result may change with the current member of the hierarchy.
  virtual bool DependsOn(HierarchyId hierarchy) const = 0;
};

class MemberExpression : public Expression {
 public:
  explicit MemberExpression(HierarchyId hierarchy) : hierarchy_(hierarchy) {}
  HierarchyId hierarchy() const { return hierarchy_; }
  /// `kNoMember` where there is none, such as above the top.
  MemberId Evaluate(CellEvaluator& evaluator, const Context& context) const;

 private:
  virtual MemberId Compute(CellEvaluator& evaluator, const Context& context) const = 0;

  HierarchyId hierarchy_;
};

class SetExpression : public Expression {
 public:
  explicit SetExpression(std::vector<HierarchyId> hierarchies)
      : hierarchies_(std::move(hierarchies)) {}
  const std::vector<HierarchyId>& hierarchies() const { return hierarchies_; }
  TupleSet Evaluate(CellEvaluator& evaluator, const Context& context) const;

 private:
  virtual TupleSet Compute(CellEvaluator& evaluator, const Context& context) const = 0;

  std::vector<HierarchyId> hierarchies_;
};

enum class ValueKind { kNumber, kText, kLogical };

class ValueExpression : public Expression {
 public:
  explicit ValueExpression(ValueKind kind = ValueKind::kNumber) : kind_(kind) {}
  ValueKind kind() const { return kind_; }
  Column Evaluate(CellEvaluator& evaluator, const Block& block) const;
  /// Moves `context` to the cell whose value this is. False when there is no such cell, or when it
  /// is not the same for all positions of the block, all members of `any`, and all that a hierarchy
  /// of `context` stands on.
  virtual bool MoveTo(CellEvaluator& /*evaluator*/, const Block& /*block*/, HierarchyId /*any*/,
                      Context& /*context*/) const {
    return false;
  }

 private:
  virtual Column Compute(CellEvaluator& evaluator, const Block& block) const = 0;

  ValueKind kind_;
};

using MemberPtr = std::unique_ptr<MemberExpression>;
using SetPtr = std::unique_ptr<SetExpression>;
using ValuePtr = std::unique_ptr<ValueExpression>;

}  // namespace vok::olap
