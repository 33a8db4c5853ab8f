// The members of hierarchies and levels, and those below a member.
#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "providers/cube/olap/mdx/cell_evaluator.h"
#include "providers/cube/olap/mdx/distinct_tuples.h"
#include "providers/cube/olap/mdx/expression.h"
#include "providers/cube/olap/mdx/functions/registry.h"
#include "providers/cube/olap/mdx/member_moves.h"
#include "providers/cube/olap/mdx/whole_number.h"

namespace vok::olap {
namespace {

/// All members of a hierarchy, each directly before its children.
MemberIds InHierarchyOrder(const CubeView& cube, HierarchyId hierarchy) {
  MemberIds order;
  order.reserve(hierarchy == kMeasures ? 0 : cube.Stored(hierarchy).MemberCount());
  std::vector<IdRange> open = {cube.LevelMembers(hierarchy, 0)};  // one per level on the way down
  while (!open.empty()) {
    IdRange& rest = open.back();
    if (rest.size() == 0) {
      open.pop_back();
      continue;
    }
    const MemberId member = rest.begin++;
    order.push_back(member);
    const IdRange children = cube.Children(hierarchy, member);
    if (children.size() > 0) open.push_back(children);
  }
  return order;
}

class MembersSet : public SetExpression {
 public:
  MembersSet(HierarchyId hierarchy, MemberIds ids)
      : SetExpression({hierarchy}), ids_(std::move(ids)) {}
  bool DependsOn(HierarchyId) const override { return false; }
  TupleSet Compute(CellEvaluator&, const Context&) const override { return {hierarchies(), ids_}; }

 private:
  MemberIds ids_;
};

/// Stored members with the calculated ones, each after the stored children of its parent.
class AllMembersSet : public SetExpression {
 public:
  AllMembersSet(HierarchyId hierarchy, std::optional<uint32_t> level, MemberIds ids)
      : SetExpression({hierarchy}), level_(level), ids_(std::move(ids)) {}
  bool DependsOn(HierarchyId) const override { return false; }
  TupleSet Compute(CellEvaluator& evaluator, const Context&) const override {
    TupleSet set{hierarchies(), ids_};
    for (const bool declared : {true, false}) {
      const auto& members = evaluator.query().members;
      for (std::size_t i = 0; i < members.size(); ++i) {
        if (members[i].is_declared != declared || members[i].hierarchy != hierarchies()[0])
          continue;
        evaluator.guard().Check();
        Insert(evaluator, static_cast<MemberId>(i) | kCalculatedBit, set.ids);
      }
    }
    return set;
  }

 private:
  void Insert(const CellEvaluator& evaluator, MemberId calculated, MemberIds& ids) const {
    const CubeView& cube = evaluator.cube();
    const HierarchyId hierarchy = hierarchies()[0];
    const MemberId parent = evaluator.query().Member(calculated).parent;
    const uint32_t level = parent != kNoMember      ? cube.LevelOf(hierarchy, parent) + 1
                           : cube.HasAll(hierarchy) ? 1
                                                    : 0;
    if (level_ && (parent == kNoMember ? 0 : level) != *level_) return;
    auto behind = ids.end();
    if (parent != kNoMember) {
      while (behind != ids.begin() && !IsBelow(evaluator, *(behind - 1), parent)) --behind;
    }
    ids.insert(behind, calculated);
  }

  bool IsBelow(const CellEvaluator& evaluator, MemberId member, MemberId ancestor) const {
    while (member != kNoMember && member != ancestor) {
      member = evaluator.Parent(hierarchies()[0], member);
    }
    return member == ancestor;
  }

  std::optional<uint32_t> level_;
  MemberIds ids_;
};

class ChildrenSet : public SetExpression {
 public:
  explicit ChildrenSet(MemberPtr of) : SetExpression({of->hierarchy()}), of_(std::move(of)) {}
  bool DependsOn(HierarchyId hierarchy) const override { return of_->DependsOn(hierarchy); }
  TupleSet Compute(CellEvaluator& evaluator, const Context& context) const override {
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

/// Which levels below a member are listed, seen from the one that is named.
enum class Reach { kSelf, kAfter, kBefore, kBoth, kSelfAfter, kSelfBefore, kAll, kLeaves };

bool Reaches(Reach reach, uint32_t level, uint32_t named) {
  const bool before = reach == Reach::kBefore || reach == Reach::kBoth ||
                      reach == Reach::kSelfBefore || reach == Reach::kAll;
  const bool after = reach == Reach::kAfter || reach == Reach::kBoth ||
                     reach == Reach::kSelfAfter || reach == Reach::kAll;
  const bool self = reach == Reach::kSelf || reach == Reach::kSelfAfter ||
                    reach == Reach::kSelfBefore || reach == Reach::kAll;
  return level < named ? before : level > named ? after : self;
}

class DescendantsSet : public SetExpression {
 public:
  struct Depth {
    std::optional<uint32_t> level;  ///< a level by name; else
    ValuePtr distance;              ///< so many below each member; nullptr: any
  };

  DescendantsSet(SetPtr of, Depth depth, Reach reach, Place place)
      : SetExpression(of->hierarchies()),
        of_(std::move(of)),
        depth_(std::move(depth)),
        reach_(reach),
        place_(place) {}

  bool DependsOn(HierarchyId hierarchy) const override {
    return of_->DependsOn(hierarchy) ||
           (depth_.distance != nullptr && depth_.distance->DependsOn(hierarchy));
  }

  TupleSet Compute(CellEvaluator& evaluator, const Context& context) const override {
    const TupleSet of = of_->Evaluate(evaluator, context);
    const int64_t distance =
        depth_.distance == nullptr ? 0 : WholeNumber(evaluator, *depth_.distance, context, place_);
    TupleSet set{hierarchies(), {}};
    for (const MemberId member : of.ids) {
      evaluator.guard().Check();
      evaluator.guard().CheckTuples(set.size(), place_);
      if (IsStored(member)) Add(evaluator, member, distance, set);
    }
    return of.size() > 1 ? Distinct(evaluator.guard(), set) : set;
  }

 private:
  void Add(const CellEvaluator& evaluator, MemberId member, int64_t distance, TupleSet& set) const {
    const CubeView& cube = evaluator.cube();
    const HierarchyId hierarchy = hierarchies()[0];
    const uint32_t own = cube.LevelOf(hierarchy, member);
    const uint32_t last = cube.LevelCount(hierarchy) - 1;
    int64_t named = depth_.level ? int64_t{*depth_.level} : own + distance;
    if (!depth_.level && depth_.distance == nullptr) named = last;
    named = std::min<int64_t>(named, int64_t{last} + 1);
    if (!depth_.level && named < int64_t{own}) return;
    if (reach_ == Reach::kLeaves) {
      if (named >= last) Append(DescendantsAt(cube, hierarchy, member, last), set);
      return;
    }
    Walk(cube, member, own, static_cast<uint32_t>(named), set);
  }

  /// The member, then what is below each of its children.
  void Walk(const CubeView& cube, MemberId member, uint32_t level, uint32_t named,
            TupleSet& set) const {
    if (Reaches(reach_, level, named)) set.ids.push_back(member);
    if (level >= named && !Reaches(reach_, named + 1, named)) return;
    const IdRange children = cube.Children(hierarchies()[0], member);
    for (MemberId child = children.begin; child < children.end; ++child) {
      Walk(cube, child, level + 1, named, set);
    }
  }

  static void Append(IdRange range, TupleSet& set) {
    for (MemberId id = range.begin; id < range.end; ++id) set.ids.push_back(id);
  }

  SetPtr of_;
  Depth depth_;
  Reach reach_;
  Place place_;
};

MemberIds IdsOf(const CubeView& cube, LevelOperand level) {
  const IdRange members = cube.LevelMembers(level.hierarchy, level.level);
  MemberIds ids;
  ids.reserve(members.size());
  for (MemberId id = members.begin; id < members.end; ++id) ids.push_back(id);
  return ids;
}

Operand MembersOfHierarchy(Call& call) {
  const HierarchyId hierarchy = call.Hierarchy(0);
  return std::make_unique<MembersSet>(hierarchy, InHierarchyOrder(call.cube, hierarchy));
}

Operand MembersOfLevel(Call& call) {
  const LevelOperand level = call.Level(0);
  return std::make_unique<MembersSet>(level.hierarchy, IdsOf(call.cube, level));
}

Operand AllMembersOfHierarchy(Call& call) {
  const HierarchyId hierarchy = call.Hierarchy(0);
  return std::make_unique<AllMembersSet>(hierarchy, std::nullopt,
                                         InHierarchyOrder(call.cube, hierarchy));
}

Operand AllMembersOfLevel(Call& call) {
  const LevelOperand level = call.Level(0);
  return std::make_unique<AllMembersSet>(level.hierarchy, level.level, IdsOf(call.cube, level));
}

Operand Children(Call& call) { return std::make_unique<ChildrenSet>(call.Member(0)); }

Operand MakeDescendants(Call& call, DescendantsSet::Depth depth, Reach otherwise) {
  const std::size_t reach =
      call.Flag(2,
                {"SELF", "AFTER", "BEFORE", "BEFORE_AND_AFTER", "SELF_AND_AFTER", "SELF_AND_BEFORE",
                 "SELF_BEFORE_AFTER", "LEAVES"},
                static_cast<std::size_t>(otherwise));
  SetPtr of = call.Set(0);
  if (of->hierarchies().size() != 1) call.place().Fail("Descendants takes members, not tuples");
  if (depth.level && call.Level(1).hierarchy != of->hierarchies()[0]) {
    call.place().Fail("the level is of another hierarchy than the members");
  }
  return std::make_unique<DescendantsSet>(std::move(of), std::move(depth),
                                          static_cast<Reach>(reach), call.place());
}

Operand DescendantsAll(Call& call) { return MakeDescendants(call, {}, Reach::kAll); }

Operand DescendantsOfLevel(Call& call) {
  return MakeDescendants(call, {call.Level(1).level, nullptr}, Reach::kSelf);
}

Operand DescendantsByDistance(Call& call) {
  return MakeDescendants(call, {std::nullopt, call.Value(1)}, Reach::kSelf);
}

constexpr std::array<Function, 9> kLevelFunctions = {{
    {"Members", true, "h", MembersOfHierarchy},
    {"Members", true, "l", MembersOfLevel},
    {"AllMembers", true, "h", AllMembersOfHierarchy},
    {"AllMembers", true, "l", AllMembersOfLevel},
    {"Children", true, "m", Children},
    {"Descendants", false, "s", DescendantsAll},
    {"Descendants", false, "sl|f", DescendantsOfLevel},
    {"Descendants", false, "s_f", DescendantsAll},
    {"Descendants", false, "sn|f", DescendantsByDistance},
}};

}  // namespace

std::span<const Function> LevelFunctions() { return kLevelFunctions; }

}  // namespace vok::olap
