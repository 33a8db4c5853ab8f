// From one member to another, or to members around it.
#include <array>
#include <utility>

#include "providers/olap/mdx/basic_expressions.h"
#include "providers/olap/mdx/evaluator.h"
#include "providers/olap/mdx/functions/registry.h"
#include "providers/olap/mdx/hierarchy_order.h"

namespace vok::olap {
namespace {

using Step = MemberId (*)(const Evaluator&, HierarchyId, MemberId);

class SteppedMember : public MemberExpression {
 public:
  SteppedMember(MemberPtr from, Step step)
      : MemberExpression(from->hierarchy()), from_(std::move(from)), step_(step) {}
  bool DependsOn(HierarchyId hierarchy) const override { return from_->DependsOn(hierarchy); }
  MemberId Evaluate(Evaluator& evaluator, const Context& context) const override {
    const MemberId from = from_->Evaluate(evaluator, context);
    return from == kNoMember ? kNoMember : step_(evaluator, hierarchy(), from);
  }

 private:
  MemberPtr from_;
  Step step_;
};

class ChildrenSet : public SetExpression {
 public:
  explicit ChildrenSet(MemberPtr of) : SetExpression({of->hierarchy()}), of_(std::move(of)) {}
  bool DependsOn(HierarchyId hierarchy) const override { return of_->DependsOn(hierarchy); }
  TupleSet Evaluate(Evaluator& evaluator, const Context& context) const override {
    TupleSet set{hierarchies(), {}};
    const MemberId of = of_->Evaluate(evaluator, context);
    if (!IsStored(of)) return set;
    const IdRange children = evaluator.cube().Children(hierarchies()[0], of);
    for (MemberId id = children.begin; id < children.end; ++id) set.ids.push_back(id);
    return set;
  }

 private:
  MemberPtr of_;
};

class MembersSet : public SetExpression {
 public:
  MembersSet(HierarchyId hierarchy, std::vector<MemberId> ids)
      : SetExpression({hierarchy}), ids_(std::move(ids)) {}
  bool DependsOn(HierarchyId) const override { return false; }
  TupleSet Evaluate(Evaluator&, const Context&) const override { return {hierarchies(), ids_}; }

 private:
  std::vector<MemberId> ids_;
};

Operand MembersOfHierarchy(Call& call) {
  const HierarchyId hierarchy = call.Hierarchy(0);
  return std::make_unique<MembersSet>(hierarchy, InHierarchyOrder(call.cube, hierarchy));
}

Operand MembersOfLevel(Call& call) {
  const LevelOperand level = call.Level(0);
  const IdRange members = call.cube.LevelMembers(level.hierarchy, level.level);
  std::vector<MemberId> ids;
  for (MemberId id = members.begin; id < members.end; ++id) ids.push_back(id);
  return std::make_unique<MembersSet>(level.hierarchy, std::move(ids));
}

Operand Children(Call& call) { return std::make_unique<ChildrenSet>(call.Member(0)); }

Operand CurrentMember(Call& call) { return NewCurrentMember(call.Hierarchy(0)); }

Operand DefaultMember(Call& call) {
  const HierarchyId hierarchy = call.Hierarchy(0);
  return NewConstantMember(hierarchy, call.cube.DefaultMember(hierarchy));
}

Operand Stepped(Call& call, Step step) {
  return std::make_unique<SteppedMember>(call.Member(0), step);
}

Operand Parent(Call& call) {
  return Stepped(call, [](const Evaluator& evaluator, HierarchyId hierarchy, MemberId member) {
    return evaluator.Parent(hierarchy, member);
  });
}

/// The member `distance` further in its level; none beyond the ends.
MemberId Neighbour(const Evaluator& evaluator, HierarchyId hierarchy, MemberId member,
                   int distance) {
  if (!IsStored(member)) return kNoMember;
  const CubeView& cube = evaluator.cube();
  const IdRange level = cube.LevelMembers(hierarchy, cube.LevelOf(hierarchy, member));
  const bool at_end = distance < 0 ? member == level.begin : member + 1 == level.end;
  return at_end ? kNoMember : member + static_cast<MemberId>(distance);
}

Operand PrevMember(Call& call) {
  return Stepped(call, [](const Evaluator& evaluator, HierarchyId hierarchy, MemberId member) {
    return Neighbour(evaluator, hierarchy, member, -1);
  });
}

Operand NextMember(Call& call) {
  return Stepped(call, [](const Evaluator& evaluator, HierarchyId hierarchy, MemberId member) {
    return Neighbour(evaluator, hierarchy, member, 1);
  });
}

constexpr std::array<Function, 8> kFunctions = {{
    {"Members", true, "h", MembersOfHierarchy},
    {"Members", true, "l", MembersOfLevel},
    {"Children", true, "m", Children},
    {"CurrentMember", true, "h", CurrentMember},
    {"DefaultMember", true, "h", DefaultMember},
    {"Parent", true, "m", Parent},
    {"PrevMember", true, "m", PrevMember},
    {"NextMember", true, "m", NextMember},
}};

}  // namespace

std::span<const Function> MemberFunctions() { return kFunctions; }

}  // namespace vok::olap
