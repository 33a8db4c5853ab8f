// Periods before and after a member.
#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "providers/cube/olap/mdx/basic_expressions.h"
#include "providers/cube/olap/mdx/cell_evaluator.h"
#include "providers/cube/olap/mdx/functions/registry.h"
#include "providers/cube/olap/mdx/member_moves.h"
#include "providers/cube/olap/mdx/whole_number.h"

namespace vok::olap {
namespace {

/// The n members of a level that end with one; for n below 0, those that begin with it. Cut short
/// at the level's ends.
class LastPeriodsSet : public SetExpression {
 public:
  LastPeriodsSet(ValuePtr count, MemberPtr last, Place place)
      : SetExpression({last->hierarchy()}),
        count_(std::move(count)),
        last_(std::move(last)),
        place_(place) {}

  bool DependsOn(HierarchyId hierarchy) const override {
    return count_->DependsOn(hierarchy) || last_->DependsOn(hierarchy);
  }

  TupleSet Compute(CellEvaluator& evaluator, const Context& context) const override {
    TupleSet set{hierarchies(), {}};
    const MemberId last = last_->Evaluate(evaluator, context);
    if (!IsStored(last)) return set;
    const CubeView& cube = evaluator.cube();
    const HierarchyId hierarchy = hierarchies()[0];
    const IdRange level = cube.LevelMembers(hierarchy, cube.LevelOf(hierarchy, last));
    const int64_t count = WholeNumber(evaluator, *count_, context, place_);
    const int64_t anchor = last;
    const int64_t begin = count < 0 ? anchor : std::max<int64_t>(level.begin, anchor - count + 1);
    const int64_t end = count < 0 ? std::min<int64_t>(level.end, anchor - count) : anchor + 1;
    for (int64_t id = begin; id < end; ++id) set.ids.push_back(static_cast<MemberId>(id));
    return set;
  }

 private:
  ValuePtr count_;
  MemberPtr last_;
  Place place_;
};

/// The level that `LevelKind` names; nothing when the hierarchy has none.
std::optional<uint32_t> LevelOfKind(const CubeView& cube, HierarchyId hierarchy, LevelKind kind) {
  for (uint32_t level = 0; level < cube.LevelCount(hierarchy); ++level) {
    if (cube.KindOf(hierarchy, level) == kind) return level;
  }
  return std::nullopt;
}

/// The level above the member's own; nothing at the top.
std::optional<uint32_t> LevelAbove(const CubeView& cube, HierarchyId hierarchy, MemberId member) {
  const uint32_t level = cube.LevelOf(hierarchy, member);
  if (level == 0) return std::nullopt;
  return level - 1;
}

/// Where a period begins and ends.
struct Span {
  enum class By { kLevel, kAbove, kNone };
  By by = By::kAbove;
  uint32_t level = 0;

  static Span Of(std::optional<uint32_t> level) {
    return level ? Span{By::kLevel, *level} : Span{By::kNone, 0};
  }
  std::optional<uint32_t> LevelFor(const CubeView& cube, HierarchyId hierarchy,
                                   MemberId member) const {
    if (by == By::kNone) return std::nullopt;
    return by == By::kLevel ? std::optional(level) : LevelAbove(cube, hierarchy, member);
  }
};

/// The member and those of its level before it, within one member of the span's level.
class PeriodsToDateSet : public SetExpression {
 public:
  PeriodsToDateSet(Span span, MemberPtr last)
      : SetExpression({last->hierarchy()}), span_(span), last_(std::move(last)) {}
  bool DependsOn(HierarchyId hierarchy) const override { return last_->DependsOn(hierarchy); }
  TupleSet Compute(CellEvaluator& evaluator, const Context& context) const override {
    TupleSet set{hierarchies(), {}};
    const MemberId last = last_->Evaluate(evaluator, context);
    if (!IsStored(last)) return set;
    const CubeView& cube = evaluator.cube();
    const HierarchyId hierarchy = hierarchies()[0];
    const auto level = span_.LevelFor(cube, hierarchy, last);
    if (!level) return set;
    const MemberId whole = AncestorAt(evaluator, hierarchy, last, *level);
    if (whole == kNoMember) return set;
    const uint32_t own = cube.LevelOf(hierarchy, last);
    const IdRange range = DescendantsAt(cube, hierarchy, whole, own);
    for (MemberId id = range.begin; id <= last; ++id) set.ids.push_back(id);
    return set;
  }

 private:
  Span span_;
  MemberPtr last_;
};

/// The member at the same place within another member of the span's level.
class ParallelMember : public MemberExpression {
 public:
  ParallelMember(Span span, ValuePtr distance, MemberPtr member, Place place)
      : MemberExpression(member->hierarchy()),
        span_(span),
        distance_(std::move(distance)),
        member_(std::move(member)),
        place_(place) {}
  bool DependsOn(HierarchyId hierarchy) const override {
    return member_->DependsOn(hierarchy) ||
           (distance_ != nullptr && distance_->DependsOn(hierarchy));
  }
  MemberId Compute(CellEvaluator& evaluator, const Context& context) const override {
    const MemberId member = member_->Evaluate(evaluator, context);
    if (!IsStored(member)) return kNoMember;
    const CubeView& cube = evaluator.cube();
    const auto level = span_.LevelFor(cube, hierarchy(), member);
    if (!level) return kNoMember;
    const MemberId from = AncestorAt(evaluator, hierarchy(), member, *level);
    if (from == kNoMember) return kNoMember;
    const int64_t distance =
        distance_ == nullptr ? 1 : WholeNumber(evaluator, *distance_, context, place_);
    const MemberId to = Neighbour(cube, hierarchy(), from, -distance);
    return to == kNoMember ? kNoMember : Cousin(cube, hierarchy(), member, from, to);
  }

 private:
  Span span_;
  ValuePtr distance_;  ///< nullptr: 1
  MemberPtr member_;
  Place place_;
};

MemberPtr CurrentTime(Call& call) { return NewCurrentMember(call.TimeHierarchy(), call.place()); }

/// The member that the argument gives, else where the cell stands in `hierarchy`.
MemberPtr MemberOrCurrent(Call& call, std::size_t index, HierarchyId hierarchy) {
  if (!call.Has(index)) return NewCurrentMember(hierarchy, call.place());
  MemberPtr member = call.Member(index);
  if (member->hierarchy() != hierarchy) {
    call.place().Fail("the member is of another hierarchy than the level");
  }
  return member;
}

Operand LastPeriods(Call& call) {
  MemberPtr last = call.Has(1) ? call.Member(1) : CurrentTime(call);
  return std::make_unique<LastPeriodsSet>(call.Value(0), std::move(last), call.place());
}

Operand PeriodsToDateAbove(Call& call) {
  return std::make_unique<PeriodsToDateSet>(Span(), CurrentTime(call));
}

Operand PeriodsToDate(Call& call) {
  const LevelOperand level = call.Level(0);
  return std::make_unique<PeriodsToDateSet>(Span::Of(level.level),
                                            MemberOrCurrent(call, 1, level.hierarchy));
}

template <LevelKind kKind>
Operand ToDate(Call& call) {
  MemberPtr last = call.Has(0) ? call.Member(0) : CurrentTime(call);
  const auto level = LevelOfKind(call.cube, last->hierarchy(), kKind);
  return std::make_unique<PeriodsToDateSet>(Span::Of(level), std::move(last));
}

Operand ParallelAbove(Call& call) {
  return std::make_unique<ParallelMember>(Span(), nullptr, CurrentTime(call), call.place());
}

Operand ParallelPeriod(Call& call) {
  const LevelOperand level = call.Level(0);
  MemberPtr member = MemberOrCurrent(call, 2, level.hierarchy);
  return std::make_unique<ParallelMember>(Span::Of(level.level), call.ValueOrNone(1),
                                          std::move(member), call.place());
}

constexpr std::array<Function, 9> kTimeFunctions = {{
    {"LastPeriods", false, "n|m", LastPeriods},
    {"PeriodsToDate", false, "|", PeriodsToDateAbove},
    {"PeriodsToDate", false, "l|m", PeriodsToDate},
    {"Ytd", false, "|m", ToDate<LevelKind::kYears>},
    {"Qtd", false, "|m", ToDate<LevelKind::kQuarters>},
    {"Mtd", false, "|m", ToDate<LevelKind::kMonths>},
    {"Wtd", false, "|m", ToDate<LevelKind::kWeeks>},
    {"ParallelPeriod", false, "|", ParallelAbove},
    {"ParallelPeriod", false, "l|nm", ParallelPeriod},
}};

}  // namespace

std::span<const Function> TimeFunctions() { return kTimeFunctions; }

}  // namespace vok::olap
