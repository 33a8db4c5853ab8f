// Periods before and after a member.
#include <algorithm>
#include <array>
#include <utility>

#include "providers/olap/mdx/evaluator.h"
#include "providers/olap/mdx/functions/registry.h"
#include "providers/olap/mdx/whole_number.h"

namespace vok::olap {
namespace {

/// The n members of a level that end with one; for n below 0, those that begin with it. Cut short
/// at the level's ends.
class LastPeriodsSet : public SetExpression {
 public:
  LastPeriodsSet(ValuePtr count, MemberPtr last)
      : SetExpression({last->hierarchy()}), count_(std::move(count)), last_(std::move(last)) {}

  bool DependsOn(HierarchyId hierarchy) const override {
    return count_->DependsOn(hierarchy) || last_->DependsOn(hierarchy);
  }

  TupleSet Evaluate(Evaluator& evaluator, const Context& context) const override {
    TupleSet set{hierarchies(), {}};
    const MemberId last = last_->Evaluate(evaluator, context);
    if (!IsStored(last)) return set;
    const CubeView& cube = evaluator.cube();
    const HierarchyId hierarchy = hierarchies()[0];
    const IdRange level = cube.LevelMembers(hierarchy, cube.LevelOf(hierarchy, last));
    const int64_t count = WholeNumber(evaluator, *count_, context);
    const int64_t anchor = last;
    const int64_t begin = count < 0 ? anchor : std::max<int64_t>(level.begin, anchor - count + 1);
    const int64_t end = count < 0 ? std::min<int64_t>(level.end, anchor - count) : anchor + 1;
    for (int64_t id = begin; id < end; ++id) set.ids.push_back(static_cast<MemberId>(id));
    return set;
  }

 private:
  ValuePtr count_;
  MemberPtr last_;
};

Operand LastPeriods(Call& call) {
  return std::make_unique<LastPeriodsSet>(call.Value(0), call.Member(1));
}

constexpr std::array<Function, 1> kFunctions = {{
    {"LastPeriods", false, "nm", LastPeriods},
}};

}  // namespace

std::span<const Function> TimeFunctions() { return kFunctions; }

}  // namespace vok::olap
