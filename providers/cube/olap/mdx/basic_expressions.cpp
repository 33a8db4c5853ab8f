#include "providers/cube/olap/mdx/basic_expressions.h"

#include <algorithm>
#include <utility>

#include "providers/cube/olap/mdx/cell_evaluator.h"

namespace vok::olap {
namespace {

template <typename Pointers>
bool AnyDependsOn(const Pointers& expressions, HierarchyId hierarchy) {
  return std::any_of(expressions.begin(), expressions.end(), [hierarchy](const auto& expression) {
    return expression->DependsOn(hierarchy);
  });
}

std::vector<HierarchyId> HierarchiesOf(const std::vector<MemberPtr>& members) {
  std::vector<HierarchyId> hierarchies;
  hierarchies.reserve(members.size());
  for (const MemberPtr& member : members) hierarchies.push_back(member->hierarchy());
  return hierarchies;
}

class ConstantMember : public MemberExpression {
 public:
  ConstantMember(HierarchyId hierarchy, MemberId member)
      : MemberExpression(hierarchy), member_(member) {}
  bool DependsOn(HierarchyId) const override { return false; }
  MemberId Compute(CellEvaluator&, const Context&) const override { return member_; }
  MemberId member() const { return member_; }

 private:
  MemberId member_;
};

class CurrentMember : public MemberExpression {
 public:
  CurrentMember(HierarchyId hierarchy, Place place) : MemberExpression(hierarchy), place_(place) {}
  bool DependsOn(HierarchyId other) const override { return other == hierarchy(); }
  MemberId Compute(CellEvaluator& evaluator, const Context& context) const override {
    if (context.regions[hierarchy()] == nullptr) return context.members[hierarchy()];
    place_.Fail("the current member of " + evaluator.cube().HierarchyUniqueName(hierarchy()) +
                " is not known here: WHERE names several of its members; name one, or put them " +
                "on an axis");
  }

 private:
  Place place_;
};

class TupleAsSet : public SetExpression {
 public:
  explicit TupleAsSet(std::vector<MemberPtr> members)
      : SetExpression(HierarchiesOf(members)), members_(std::move(members)) {}
  bool DependsOn(HierarchyId hierarchy) const override { return AnyDependsOn(members_, hierarchy); }
  TupleSet Compute(CellEvaluator& evaluator, const Context& context) const override {
    TupleSet set{hierarchies(), {}};
    for (const MemberPtr& member : members_) {
      set.ids.push_back(member->Evaluate(evaluator, context));
    }
    const bool missing = std::find(set.ids.begin(), set.ids.end(), kNoMember) != set.ids.end();
    return missing ? TupleSet{hierarchies(), {}} : set;
  }

 private:
  std::vector<MemberPtr> members_;
};

class JoinedSets : public SetExpression {
 public:
  JoinedSets(std::vector<HierarchyId> hierarchies, std::vector<SetPtr> sets, Place place)
      : SetExpression(std::move(hierarchies)), sets_(std::move(sets)), place_(place) {}
  bool DependsOn(HierarchyId hierarchy) const override { return AnyDependsOn(sets_, hierarchy); }
  TupleSet Compute(CellEvaluator& evaluator, const Context& context) const override {
    TupleSet all{hierarchies(), {}};
    for (const SetPtr& set : sets_) {
      const TupleSet next = set->Evaluate(evaluator, context);
      evaluator.guard().CheckTuples(all.size() + next.size(), place_);
      all.ids.insert(all.ids.end(), next.ids.begin(), next.ids.end());
    }
    return all;
  }

 private:
  std::vector<SetPtr> sets_;
  Place place_;
};

class EmptySet : public SetExpression {
 public:
  EmptySet() : SetExpression({}) {}
  bool DependsOn(HierarchyId) const override { return false; }
  TupleSet Compute(CellEvaluator&, const Context&) const override { return {}; }
};

class NamedSetReference : public SetExpression {
 public:
  NamedSetReference(std::size_t index, const SetExpression& set)
      : SetExpression(set.hierarchies()), index_(index) {}
  bool DependsOn(HierarchyId) const override { return false; }
  TupleSet Compute(CellEvaluator& evaluator, const Context&) const override {
    return evaluator.Named(index_);
  }

 private:
  std::size_t index_;
};

class Range : public SetExpression {
 public:
  Range(MemberPtr first, MemberPtr last, Place place)
      : SetExpression({first->hierarchy()}),
        first_(std::move(first)),
        last_(std::move(last)),
        place_(place) {}
  bool DependsOn(HierarchyId hierarchy) const override {
    return first_->DependsOn(hierarchy) || last_->DependsOn(hierarchy);
  }
  TupleSet Compute(CellEvaluator& evaluator, const Context& context) const override {
    TupleSet set{hierarchies(), {}};
    MemberId from = first_->Evaluate(evaluator, context);
    MemberId to = last_->Evaluate(evaluator, context);
    if (!IsStored(from) || !IsStored(to)) return set;
    const CubeView& cube = evaluator.cube();
    const HierarchyId hierarchy = hierarchies()[0];
    if (cube.LevelOf(hierarchy, from) != cube.LevelOf(hierarchy, to)) {
      place_.Fail("both ends of a range must be of the same level; these are " +
                  cube.UniqueName(hierarchy, from) + " and " + cube.UniqueName(hierarchy, to));
    }
    if (from > to) std::swap(from, to);
    for (MemberId id = from; id <= to; ++id) set.ids.push_back(id);
    return set;
  }

 private:
  MemberPtr first_;
  MemberPtr last_;
  Place place_;
};

class CellValue : public ValueExpression {
 public:
  explicit CellValue(std::vector<MemberPtr> members) : members_(std::move(members)) {}

  /// A cell's value depends on its place, except in the hierarchies that it names.
  bool DependsOn(HierarchyId hierarchy) const override {
    bool named = false;
    for (const MemberPtr& member : members_) {
      if (member->DependsOn(hierarchy)) return true;
      named = named || member->hierarchy() == hierarchy;
    }
    return !named;
  }

  Column Compute(CellEvaluator& evaluator, const Block& block) const override {
    if (IsOnePlace(block.Varying())) {
      Block inner = block;
      Move(evaluator, inner.context);
      return CellsUnlessMissing(evaluator, inner);
    }
    const bool one_moves = std::all_of(members_.begin(), members_.end(), [&](const MemberPtr& m) {
      return m->hierarchy() == block.Varying() || !m->DependsOn(block.Varying());
    });
    return one_moves ? Moved(evaluator, block) : evaluator.ByPosition(*this, block);
  }

  bool MoveTo(CellEvaluator& evaluator, const Block& block, HierarchyId any,
              Context& context) const override {
    if (!IsOnePlace(block.Varying()) || !IsOnePlace(any)) return false;
    for (HierarchyId h = 0; h < context.regions.size(); ++h) {
      if (context.regions[h] != nullptr && AnyDependsOn(members_, h)) return false;
    }
    Move(evaluator, context);
    return true;
  }

 private:
  /// Whether it is the same for all members of the hierarchy.
  bool IsOnePlace(HierarchyId open) const {
    return open == kNoHierarchy ||
           std::none_of(members_.begin(), members_.end(), [open](const MemberPtr& member) {
             return member->hierarchy() == open || member->DependsOn(open);
           });
  }

  void Move(CellEvaluator& evaluator, Context& context) const {
    const Context before = context;
    for (const MemberPtr& member : members_) {
      context.Set(member->hierarchy(), member->Evaluate(evaluator, before));
    }
  }

  static Column CellsUnlessMissing(CellEvaluator& evaluator, const Block& block) {
    const auto& members = block.context.members;
    const bool missing = std::find(members.begin(), members.end(), kNoMember) != members.end();
    return missing ? evaluator.NewColumn(block) : evaluator.Cells(block);
  }

  /// The block's own hierarchy is moved, position by position; the others stand still.
  Column Moved(CellEvaluator& evaluator, const Block& block) const {
    const HierarchyId varying = block.Varying();
    Block inner = block;
    MemberIds ids;
    for (const MemberPtr& member : members_) {
      if (member->hierarchy() != varying) {
        inner.context.Set(member->hierarchy(), member->Evaluate(evaluator, block.context));
      } else if (!member->DependsOn(varying)) {
        ids.push_back(member->Evaluate(evaluator, block.context));
      } else {
        ids = MovedMembers(evaluator, block, *member);
      }
    }
    if (ids.size() == 1) return OneForAll(evaluator, block, inner.context, ids[0]);
    if (!std::all_of(ids.begin(), ids.end(),
                     [](MemberId id) { return id == kNoMember || IsStored(id); })) {
      return evaluator.ByPosition(*this, block);
    }
    const Positions positions(evaluator.cube(), varying, std::move(ids));
    inner.positions = &positions;
    Column cells = CellsUnlessMissing(evaluator, inner);
    for (std::size_t row = 0; row < cells.size(); ++row) {
      if (positions.ids[row] == kNoMember) cells.Copy(row, Column(1), 0);
    }
    return cells;
  }

  Column OneForAll(CellEvaluator& evaluator, const Block& block, Context context,
                   MemberId id) const {
    context.Set(block.Varying(), id);
    const Column one = CellsUnlessMissing(evaluator, Block{std::move(context), nullptr});
    Column all = evaluator.NewColumn(block);
    for (std::size_t row = 0; row < all.size(); ++row) all.Copy(row, one, 0);
    return all;
  }

  static MemberIds MovedMembers(CellEvaluator& evaluator, const Block& block,
                                const MemberExpression& member) {
    MemberIds ids;
    Context context = block.context;
    for (const MemberId id : block.positions->ids) {
      evaluator.guard().CheckAt(ids.size());
      context.Set(block.Varying(), id);
      ids.push_back(id == kNoMember ? kNoMember : member.Evaluate(evaluator, context));
    }
    return ids;
  }

  std::vector<MemberPtr> members_;
};

}  // namespace

MemberPtr NewConstantMember(HierarchyId hierarchy, MemberId member) {
  return std::make_unique<ConstantMember>(hierarchy, member);
}

MemberId ConstantMemberOf(const MemberExpression& expression) {
  const auto* constant = dynamic_cast<const ConstantMember*>(&expression);
  return constant == nullptr ? kNoMember : constant->member();
}

MemberPtr NewCurrentMember(HierarchyId hierarchy, Place place) {
  return std::make_unique<CurrentMember>(hierarchy, place);
}

SetPtr NewTupleSet(std::vector<MemberPtr> members) {
  return std::make_unique<TupleAsSet>(std::move(members));
}

SetPtr NewEmptySet() { return std::make_unique<EmptySet>(); }

SetPtr NewJoinedSets(std::vector<HierarchyId> hierarchies, std::vector<SetPtr> sets, Place place) {
  return std::make_unique<JoinedSets>(std::move(hierarchies), std::move(sets), place);
}

SetPtr NewNamedSet(std::size_t index, const SetExpression& set) {
  return std::make_unique<NamedSetReference>(index, set);
}

SetPtr NewRange(MemberPtr first, MemberPtr last, Place place) {
  return std::make_unique<Range>(std::move(first), std::move(last), place);
}

ValuePtr NewCellValue(std::vector<MemberPtr> members) {
  return std::make_unique<CellValue>(std::move(members));
}

}  // namespace vok::olap
