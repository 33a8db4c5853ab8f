#include "providers/olap/mdx/expression_resolver.h"

#include <algorithm>
#include <utility>

#include "providers/olap/mdx/basic_expressions.h"
#include "providers/olap/mdx/cross_join.h"
#include "providers/olap/mdx/functions/registry.h"
#include "providers/olap/mdx/operators.h"

namespace vok::olap {

SetPtr ExpressionResolver::ResolveSet(const Syntax& syntax) const {
  return ToSet(ResolveAs(syntax, Wanted::kSet));
}

ValuePtr ExpressionResolver::ResolveValue(const Syntax& syntax) const {
  return ToValue(ResolveAs(syntax, Wanted::kValue));
}

Operand ExpressionResolver::ResolveAs(const Syntax& syntax, Wanted wanted) const {
  return Checked(Resolve(syntax), wanted, BeginOf(syntax));
}

Operand ExpressionResolver::Checked(Operand operand, Wanted wanted, std::size_t offset) const {
  if (!Fits(operand, wanted)) {
    source_.Fail(offset, "expected " + Describe(wanted) + " but found " + Describe(operand));
  }
  return operand;
}

Operand ExpressionResolver::Resolve(const Syntax& syntax) const {
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
      break;
  }
  source_.Fail(syntax.offset, "not supported: CASE");
}

/// The name up to the first property, then property by property.
Operand ExpressionResolver::ResolveName(const Syntax& syntax) const {
  const std::span<const NamePart> path = syntax.name;
  std::size_t end = 1;
  while (end < path.size() && (path[end].bracketed || !IsFunction(path[end].text, true))) ++end;
  Operand operand = names_.Resolve(path.first(end));
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
  if (syntax.arguments.empty()) source_.Fail(syntax.offset, "not supported: {} without members");
  std::vector<SetPtr> sets;
  for (const Syntax& argument : syntax.arguments) {
    sets.push_back(ResolveSet(argument));
    if (sets.back()->hierarchies() != sets.front()->hierarchies()) {
      source_.Fail(BeginOf(argument),
                   "all members of a set must be of the same hierarchies, in the same order");
    }
  }
  if (sets.size() == 1) return std::move(sets[0]);
  return NewJoinedSets(std::move(sets));
}

Operand ExpressionResolver::ResolveTuple(const Syntax& syntax) const {
  TupleOperand tuple;
  std::vector<HierarchyId> seen;
  for (const Syntax& argument : syntax.arguments) {
    MemberPtr member = ToMember(ResolveAs(argument, Wanted::kMember));
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
  for (const Syntax& argument : syntax.arguments) arguments.push_back(Resolve(argument));
  return CallFunction(syntax.text, as_property,
                      Call{cube_, source_, syntax.offset, std::move(arguments)});
}

Operand ExpressionResolver::ResolveUnary(const Syntax& syntax) const {
  const Wanted wanted = IsLogical(syntax.text) ? Wanted::kCondition : Wanted::kNumber;
  return NewUnary(syntax.text, ToValue(ResolveAs(syntax.arguments[0], wanted)));
}

Operand ExpressionResolver::ResolveBinary(const Syntax& syntax) const {
  if (syntax.text == ":") return ResolveRange(syntax);
  Operand left = Resolve(syntax.arguments[0]);
  Operand right = Resolve(syntax.arguments[1]);
  const bool sets = std::holds_alternative<SetPtr>(left) || std::holds_alternative<SetPtr>(right);
  if (syntax.text == "*" && sets) {
    left = Checked(std::move(left), Wanted::kSet, BeginOf(syntax.arguments[0]));
    right = Checked(std::move(right), Wanted::kSet, BeginOf(syntax.arguments[1]));
    return NewCrossJoin(ToSet(std::move(left)), ToSet(std::move(right)), source_, syntax.offset);
  }
  const Wanted wanted = IsLogical(syntax.text) ? Wanted::kCondition : Wanted::kNumber;
  left = Checked(std::move(left), wanted, BeginOf(syntax.arguments[0]));
  right = Checked(std::move(right), wanted, BeginOf(syntax.arguments[1]));
  ValuePtr value = NewBinary(syntax.text, ToValue(std::move(left)), ToValue(std::move(right)));
  if (value == nullptr) source_.Fail(syntax.offset, "not supported: " + syntax.text);
  return value;
}

Operand ExpressionResolver::ResolveRange(const Syntax& syntax) const {
  MemberPtr first = ToMember(ResolveAs(syntax.arguments[0], Wanted::kMember));
  MemberPtr last = ToMember(ResolveAs(syntax.arguments[1], Wanted::kMember));
  if (first->hierarchy() != last->hierarchy()) {
    source_.Fail(syntax.offset, "both ends of a range must be of the same hierarchy");
  }
  return NewRange(std::move(first), std::move(last));
}

}  // namespace vok::olap
