// How members, levels and hierarchies are called.
#include <array>
#include <string>
#include <utility>

#include "providers/cube/olap/mdx/cell_evaluator.h"
#include "providers/cube/olap/mdx/constants.h"
#include "providers/cube/olap/mdx/functions/registry.h"

namespace vok::olap {
namespace {

enum class Form { kName, kCaption, kUniqueName };

/// What a cube server calls a member that is not there.
constexpr char kNoName[] = "#null";

std::string TextOf(const CellEvaluator& evaluator, HierarchyId hierarchy, MemberId member,
                   Form form) {
  if (member == kNoMember) return kNoName;
  if (IsCalculated(member)) {
    const CalculatedMember& calculated = evaluator.query().Member(member);
    return form == Form::kName      ? calculated.name
           : form == Form::kCaption ? calculated.caption
                                    : calculated.unique_name;
  }
  const CubeView& cube = evaluator.cube();
  if (form == Form::kUniqueName) return cube.UniqueName(hierarchy, member);
  return form == Form::kName ? cube.MemberName(hierarchy, member) : cube.Caption(hierarchy, member);
}

class MemberText : public ValueExpression {
 public:
  MemberText(MemberPtr member, Form form)
      : ValueExpression(ValueKind::kText), member_(std::move(member)), form_(form) {}
  bool DependsOn(HierarchyId hierarchy) const override { return member_->DependsOn(hierarchy); }
  Column Compute(CellEvaluator& evaluator, const Block& block) const override {
    Column texts = evaluator.NewColumn(block);
    Context context = block.context;
    for (std::size_t row = 0; row < texts.size(); ++row) {
      evaluator.guard().CheckAt(row);
      if (block.positions != nullptr) context.Set(block.Varying(), block.positions->ids[row]);
      const MemberId member = member_->Evaluate(evaluator, context);
      texts.SetText(row, TextOf(evaluator, member_->hierarchy(), member, form_));
    }
    return texts;
  }

 private:
  MemberPtr member_;
  Form form_;
};

template <Form kForm>
Operand OfMember(Call& call) {
  return std::make_unique<MemberText>(call.Member(0), kForm);
}

template <Form kForm>
Operand OfLevel(Call& call) {
  const LevelOperand level = call.Level(0);
  return NewText(kForm == Form::kUniqueName
                     ? call.cube.LevelUniqueName(level.hierarchy, level.level)
                     : call.cube.LevelName(level.hierarchy, level.level));
}

template <Form kForm>
Operand OfHierarchy(Call& call) {
  const HierarchyId hierarchy = call.Hierarchy(0);
  return NewText(kForm == Form::kUniqueName ? call.cube.HierarchyUniqueName(hierarchy)
                                            : call.cube.HierarchyName(hierarchy));
}

constexpr std::array<Function, 9> kNameFunctions = {{
    {"Name", true, "h", OfHierarchy<Form::kName>},
    {"Name", true, "l", OfLevel<Form::kName>},
    {"Name", true, "m", OfMember<Form::kName>},
    {"Caption", true, "h", OfHierarchy<Form::kCaption>},
    {"Caption", true, "l", OfLevel<Form::kCaption>},
    {"Caption", true, "m", OfMember<Form::kCaption>},
    {"UniqueName", true, "h", OfHierarchy<Form::kUniqueName>},
    {"UniqueName", true, "l", OfLevel<Form::kUniqueName>},
    {"UniqueName", true, "m", OfMember<Form::kUniqueName>},
}};

}  // namespace

std::span<const Function> NameFunctions() { return kNameFunctions; }

}  // namespace vok::olap
