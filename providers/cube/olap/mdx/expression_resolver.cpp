#include "providers/cube/olap/mdx/expression_resolver.h"

#include <algorithm>
#include <utility>

#include "providers/cube/olap/mdx/basic_expressions.h"
#include "providers/cube/olap/mdx/conditions.h"
#include "providers/cube/olap/mdx/constants.h"
#include "providers/cube/olap/mdx/functions/registry.h"
#include "providers/cube/olap/mdx/operators.h"
#include "providers/cube/olap/mdx/set_operations.h"
#include "providers/cube/olap/mdx/token_reader.h"

namespace vok::olap {
namespace {

/// One part without brackets.
bool IsWord(const Syntax& syntax) {
  return syntax.kind == SyntaxKind::kName && syntax.name.size() == 1 && !syntax.name[0].bracketed;
}

bool IsNull(const Syntax& syntax) {
  return IsWord(syntax) && IsKeyword(syntax.name[0].text, "NULL");
}

}  // namespace

/// The first measure of a formula lends it its format.
void ExpressionResolver::NoteMeasure(const Operand& operand) const {
  const auto* member = std::get_if<MemberPtr>(&operand);
  if (first_measure_ != kNoMember || member == nullptr || (*member)->hierarchy() != kMeasures) {
    return;
  }
  first_measure_ = ConstantMemberOf(**member);
}

ValuePtr ExpressionResolver::ResolveFormula(const Syntax& syntax, MemberId& first_measure) const {
  first_measure_ = kNoMember;
  ValuePtr value = ResolveValue(syntax);
  first_measure = first_measure_;
  return value;
}

SetPtr ExpressionResolver::ResolveSet(const Syntax& syntax) const {
  return ToSet(ResolveAs(syntax, ArgumentType::kSet));
}

ValuePtr ExpressionResolver::ResolveValue(const Syntax& syntax) const {
  return ToValue(ResolveAs(syntax, ArgumentType::kValue));
}

Operand ExpressionResolver::ResolveAs(const Syntax& syntax, ArgumentType wanted) const {
  return Checked(Resolve(syntax), wanted, BeginOf(syntax));
}

Operand ExpressionResolver::Checked(Operand operand, ArgumentType wanted,
                                    std::size_t offset) const {
  if (!Fits(operand, wanted)) {
    source_.Fail(offset, "expected " + Describe(wanted) + " but found " + Describe(operand));
  }
  return operand;
}

Operand ExpressionResolver::Resolve(const Syntax& syntax) const {
  guard_.Check();
  switch (syntax.kind) {
    case SyntaxKind::kName:
      return ResolveName(syntax);
    case SyntaxKind::kNumber:
      return NewNumber(syntax.number);
    case SyntaxKind::kText:
      return NewText(syntax.text);
    case SyntaxKind::kSet:
      return ResolveBraces(syntax);
    case SyntaxKind::kTuple:
      return ResolveTuple(syntax);
    case SyntaxKind::kCall:
    case SyntaxKind::kProperty:
      return ResolveCall(syntax);
    case SyntaxKind::kUnary:
      return ResolveUnary(syntax);
    case SyntaxKind::kBinary:
      return ResolveBinary(syntax);
    case SyntaxKind::kCase:
      return ResolveCase(syntax);
  }
  source_.Fail(syntax.offset, "not supported: " + syntax.text);
}

/// The name up to the first property, then property by property.
Operand ExpressionResolver::ResolveName(const Syntax& syntax) const {
  const std::span<const NamePart> path = syntax.name;
  if (IsNull(syntax)) return NewNothing();
  std::size_t end = 1;
  while (end < path.size() && (path[end].bracketed || !IsFunction(path[end].text, true))) ++end;
  Operand operand = names_.Resolve(path.first(end));
  if (auto* hierarchy = std::get_if<HierarchyOperand>(&operand)) hierarchy->place = PlaceOf(syntax);
  NoteMeasure(operand);
  for (const NamePart& part : path.subspan(end)) operand = Property(std::move(operand), part);
  return operand;
}

Operand ExpressionResolver::Property(Operand base, const NamePart& part) const {
  if (part.bracketed) {
    source_.Fail(part.offset, "only a name can be followed by " + ToText(Name{part}));
  }
  std::vector<Operand> arguments;
  arguments.push_back(std::move(base));
  return CallFunction(part.text, true, Call{cube_, source_, part.offset, std::move(arguments)});
}

Operand ExpressionResolver::ResolveBraces(const Syntax& syntax) const {
  std::vector<SetPtr> sets;
  std::vector<HierarchyId> hierarchies;
  for (const Syntax& argument : syntax.arguments) {
    sets.push_back(ResolveSet(argument));
    if (hierarchies.empty()) hierarchies = sets.back()->hierarchies();
    if (!sets.back()->hierarchies().empty() && sets.back()->hierarchies() != hierarchies) {
      source_.Fail(BeginOf(argument),
                   "all members of a set must be of the same hierarchies, in the same order");
    }
  }
  if (sets.empty()) return NewEmptySet();
  if (sets.size() == 1) return std::move(sets[0]);
  return NewJoinedSets(std::move(hierarchies), std::move(sets), PlaceOf(syntax));
}

Operand ExpressionResolver::ResolveTuple(const Syntax& syntax) const {
  TupleOperand tuple;
  std::vector<HierarchyId> seen;
  for (const Syntax& argument : syntax.arguments) {
    MemberPtr member = ToMember(ResolveAs(argument, ArgumentType::kMember));
    const HierarchyId hierarchy = member->hierarchy();
    if (std::find(seen.begin(), seen.end(), hierarchy) != seen.end()) {
      source_.Fail(BeginOf(argument), "the tuple has more than one member of hierarchy " +
                                          cube_.HierarchyUniqueName(hierarchy));
    }
    seen.push_back(hierarchy);
    tuple.members.push_back(std::move(member));
  }
  return tuple;
}

Operand ExpressionResolver::ResolveCall(const Syntax& syntax) const {
  const bool as_property = syntax.kind == SyntaxKind::kProperty;
  if (!IsFunction(syntax.text, as_property)) {
    source_.Fail(syntax.offset, "not supported: " + syntax.text);
  }
  std::vector<Operand> arguments;
  for (const Syntax& argument : syntax.arguments) arguments.push_back(ResolveArgument(argument));
  return CallFunction(syntax.text, as_property,
                      Call{cube_, source_, syntax.offset, std::move(arguments)});
}

Operand ExpressionResolver::ResolveArgument(const Syntax& syntax) const {
  if (syntax.kind == SyntaxKind::kName && syntax.name.empty()) return MissingOperand{};
  if (IsWord(syntax) && IsFlag(syntax.name[0].text)) return FlagOperand{syntax.name[0].text};
  return Resolve(syntax);
}

Operand ExpressionResolver::ResolveUnary(const Syntax& syntax) const {
  ValuePtr operand = ToValue(ResolveAs(syntax.arguments[0], OperandOf(syntax.text)));
  return NewUnary(syntax.text, std::move(operand), PlaceOf(syntax));
}

Operand ExpressionResolver::ResolveBinary(const Syntax& syntax) const {
  if (syntax.text == ":") return ResolveRange(syntax);
  if (syntax.text == "IS") return ResolveIs(syntax);
  Operand left = Resolve(syntax.arguments[0]);
  Operand right = Resolve(syntax.arguments[1]);
  if (std::holds_alternative<SetPtr>(left) || std::holds_alternative<SetPtr>(right)) {
    return CombineSets(syntax, std::move(left), std::move(right));
  }
  const ArgumentType wanted = OperandOf(syntax.text);
  left = Checked(std::move(left), wanted, BeginOf(syntax.arguments[0]));
  right = Checked(std::move(right), wanted, BeginOf(syntax.arguments[1]));
  ValuePtr value =
      NewBinary(syntax.text, ToValue(std::move(left)), ToValue(std::move(right)), PlaceOf(syntax));
  if (value == nullptr) source_.Fail(syntax.offset, "not supported: " + syntax.text);
  return value;
}

Operand ExpressionResolver::CombineSets(const Syntax& syntax, Operand left, Operand right) const {
  if (syntax.text != "*" && syntax.text != "+" && syntax.text != "-") {
    source_.Fail(syntax.offset, "sets cannot stand beside " + syntax.text);
  }
  SetPtr a = ToSet(Checked(std::move(left), ArgumentType::kSet, BeginOf(syntax.arguments[0])));
  SetPtr b = ToSet(Checked(std::move(right), ArgumentType::kSet, BeginOf(syntax.arguments[1])));
  const Place place = PlaceOf(syntax);
  if (syntax.text == "*") return NewCrossJoin(std::move(a), std::move(b), place);
  if (syntax.text == "+") return NewUnion(std::move(a), std::move(b), false, place);
  return NewExcept(std::move(a), std::move(b), place);
}

Operand ExpressionResolver::ResolveIs(const Syntax& syntax) const {
  Operand left = Resolve(syntax.arguments[0]);
  if (IsNull(syntax.arguments[1])) {
    left = Checked(std::move(left), ArgumentType::kMember, BeginOf(syntax.arguments[0]));
    return NewSameMember(ToMember(std::move(left)), nullptr);
  }
  return Same(std::move(left), Resolve(syntax.arguments[1]), syntax);
}

/// Levels and hierarchies are the same or not in every cell; members depend on it.
Operand ExpressionResolver::Same(Operand left, Operand right, const Syntax& syntax) const {
  const auto* level = std::get_if<LevelOperand>(&left);
  const auto* other_level = std::get_if<LevelOperand>(&right);
  if (level != nullptr && other_level != nullptr) {
    return NewLogical(level->hierarchy == other_level->hierarchy &&
                      level->level == other_level->level);
  }
  const auto* hierarchy = std::get_if<HierarchyOperand>(&left);
  const auto* other_hierarchy = std::get_if<HierarchyOperand>(&right);
  if (hierarchy != nullptr && other_hierarchy != nullptr) {
    return NewLogical(hierarchy->hierarchy == other_hierarchy->hierarchy);
  }
  left = Checked(std::move(left), ArgumentType::kMember, BeginOf(syntax.arguments[0]));
  right = Checked(std::move(right), ArgumentType::kMember, BeginOf(syntax.arguments[1]));
  return NewSameMember(ToMember(std::move(left)), ToMember(std::move(right)));
}

/// Choices within one another, the last one first.
Operand ExpressionResolver::ResolveCase(const Syntax& syntax) const {
  const auto& parts = syntax.arguments;
  const std::size_t first = syntax.text == "CASE OF" ? 1 : 0;
  const bool has_else = (parts.size() - first) % 2 == 1;
  ValuePtr value = has_else ? ResolveValue(parts.back()) : NewNothing();
  for (std::size_t end = parts.size() - (has_else ? 1 : 0); end > first; end -= 2) {
    const Syntax* operand = first == 1 ? &parts[0] : nullptr;
    value = NewChoice(ResolveWhen(operand, parts[end - 2]), ResolveValue(parts[end - 1]),
                      std::move(value));
  }
  return value;
}

/// `operand` nullptr: what stands after WHEN is a condition by itself.
ValuePtr ExpressionResolver::ResolveWhen(const Syntax* operand, const Syntax& when) const {
  if (operand == nullptr) return ToValue(ResolveAs(when, ArgumentType::kCondition));
  Operand left = Resolve(*operand);
  Operand right = Resolve(when);
  if (Fits(left, ArgumentType::kMember) && Fits(right, ArgumentType::kMember)) {
    return NewSameMember(ToMember(std::move(left)), ToMember(std::move(right)));
  }
  left = Checked(std::move(left), ArgumentType::kValue, BeginOf(*operand));
  right = Checked(std::move(right), ArgumentType::kValue, BeginOf(when));
  return NewBinary("=", ToValue(std::move(left)), ToValue(std::move(right)), PlaceOf(when));
}

Operand ExpressionResolver::ResolveRange(const Syntax& syntax) const {
  MemberPtr first = ToMember(ResolveAs(syntax.arguments[0], ArgumentType::kMember));
  MemberPtr last = ToMember(ResolveAs(syntax.arguments[1], ArgumentType::kMember));
  if (first->hierarchy() != last->hierarchy()) {
    source_.Fail(syntax.offset, "both ends of a range must be of the same hierarchy");
  }
  return NewRange(std::move(first), std::move(last), PlaceOf(syntax));
}

}  // namespace vok::olap
