// From one member to another.
#include <algorithm>
#include <array>
#include <utility>

#include "providers/cube/olap/mdx/basic_expressions.h"
#include "providers/cube/olap/mdx/cell_evaluator.h"
#include "providers/cube/olap/mdx/functions/registry.h"
#include "providers/cube/olap/mdx/member_moves.h"
#include "providers/cube/olap/mdx/whole_number.h"

namespace vok::olap {
namespace {

using Step = MemberId (*)(const CellEvaluator&, HierarchyId, MemberId);

class SteppedMember : public MemberExpression {
 public:
  SteppedMember(MemberPtr from, Step step)
      : MemberExpression(from->hierarchy()), from_(std::move(from)), step_(step) {}
  bool DependsOn(HierarchyId hierarchy) const override { return from_->DependsOn(hierarchy); }
  MemberId Compute(CellEvaluator& evaluator, const Context& context) const override {
    const MemberId from = from_->Evaluate(evaluator, context);
    return from == kNoMember ? kNoMember : step_(evaluator, hierarchy(), from);
  }

 private:
  MemberPtr from_;
  Step step_;
};

/// A member that a number leads to.
class CountedMember : public MemberExpression {
 public:
  using Move = MemberId (*)(const CellEvaluator&, HierarchyId, MemberId, int64_t);
  CountedMember(MemberPtr from, ValuePtr count, Move move, Place place)
      : MemberExpression(from->hierarchy()),
        from_(std::move(from)),
        count_(std::move(count)),
        move_(move),
        place_(place) {}
  bool DependsOn(HierarchyId hierarchy) const override {
    return from_->DependsOn(hierarchy) || count_->DependsOn(hierarchy);
  }
  MemberId Compute(CellEvaluator& evaluator, const Context& context) const override {
    const MemberId from = from_->Evaluate(evaluator, context);
    if (from == kNoMember) return kNoMember;
    return move_(evaluator, hierarchy(), from, WholeNumber(evaluator, *count_, context, place_));
  }

 private:
  MemberPtr from_;
  ValuePtr count_;
  Move move_;
  Place place_;
};

class AncestorAtLevel : public MemberExpression {
 public:
  AncestorAtLevel(MemberPtr from, uint32_t level)
      : MemberExpression(from->hierarchy()), from_(std::move(from)), level_(level) {}
  bool DependsOn(HierarchyId hierarchy) const override { return from_->DependsOn(hierarchy); }
  MemberId Compute(CellEvaluator& evaluator, const Context& context) const override {
    return AncestorAt(evaluator, hierarchy(), from_->Evaluate(evaluator, context), level_);
  }

 private:
  MemberPtr from_;
  uint32_t level_;
};

Operand CurrentMember(Call& call) { return NewCurrentMember(call.Hierarchy(0), call.place()); }

Operand DefaultMember(Call& call) {
  const HierarchyId hierarchy = call.Hierarchy(0);
  return NewConstantMember(hierarchy, call.cube.DefaultMember(hierarchy));
}

template <Step kStep>
Operand Stepped(Call& call) {
  return std::make_unique<SteppedMember>(call.Member(0), kStep);
}

MemberId ParentOf(const CellEvaluator& evaluator, HierarchyId hierarchy, MemberId member) {
  return evaluator.Parent(hierarchy, member);
}

template <bool kLast>
MemberId EndChild(const CellEvaluator& evaluator, HierarchyId hierarchy, MemberId member) {
  if (!IsStored(member)) return kNoMember;
  const IdRange children = evaluator.cube().Children(hierarchy, member);
  if (children.size() == 0) return kNoMember;
  return kLast ? children.end - 1 : children.begin;
}

template <int kDistance>
MemberId Beside(const CellEvaluator& evaluator, HierarchyId hierarchy, MemberId member) {
  return Neighbour(evaluator.cube(), hierarchy, member, kDistance);
}

template <int kDirection>
Operand Moved(Call& call) {
  return std::make_unique<CountedMember>(
      call.Member(0), call.Value(1),
      [](const CellEvaluator& evaluator, HierarchyId hierarchy, MemberId member, int64_t count) {
        return Neighbour(evaluator.cube(), hierarchy, member, kDirection * count);
      },
      call.place());
}

Operand AncestorByDistance(Call& call) {
  return std::make_unique<CountedMember>(
      call.Member(0), call.Value(1),
      [](const CellEvaluator& evaluator, HierarchyId hierarchy, MemberId member, int64_t count) {
        if (count < 0) return kNoMember;
        for (; count > 0 && member != kNoMember; --count) {
          member = evaluator.Parent(hierarchy, member);
        }
        return member;
      },
      call.place());
}

Operand AncestorByLevel(Call& call) {
  MemberPtr from = call.Member(0);
  const LevelOperand level = call.Level(1);
  if (level.hierarchy != from->hierarchy()) {
    call.place().Fail("the level is of another hierarchy than the member");
  }
  return std::make_unique<AncestorAtLevel>(std::move(from), level.level);
}

constexpr std::array<Function, 11> kMemberFunctions = {{
    {"CurrentMember", true, "h", CurrentMember},
    {"DefaultMember", true, "h", DefaultMember},
    {"Parent", true, "m", Stepped<ParentOf>},
    {"FirstChild", true, "m", Stepped<EndChild<false>>},
    {"LastChild", true, "m", Stepped<EndChild<true>>},
    {"PrevMember", true, "m", Stepped<Beside<-1>>},
    {"NextMember", true, "m", Stepped<Beside<1>>},
    {"Lag", true, "mn", Moved<-1>},
    {"Lead", true, "mn", Moved<1>},
    {"Ancestor", false, "ml", AncestorByLevel},
    {"Ancestor", false, "mn", AncestorByDistance},
}};

}  // namespace

std::span<const Function> MemberFunctions() { return kMemberFunctions; }

}  // namespace vok::olap
