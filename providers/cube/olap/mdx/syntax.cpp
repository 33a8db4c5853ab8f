#include "providers/cube/olap/mdx/syntax.h"

#include <charconv>

#include "providers/cube/olap/storage/model.h"

namespace vok::olap {
namespace {

std::string Joined(const std::vector<Syntax>& items, std::size_t from = 0) {
  std::string text;
  for (std::size_t i = from; i < items.size(); ++i) {
    if (i > from) text += ", ";
    text += ToText(items[i]);
  }
  return text;
}

std::string NumberText(double number) {
  char buffer[32];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, number).ptr;
  return std::string(buffer, end);
}

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += c;
    quoted += c;
  }
  return quoted + '"';
}

std::string CaseText(const Syntax& syntax) {
  std::string text = "CASE";
  std::size_t i = 0;
  if (syntax.text == "CASE OF") text += ' ' + ToText(syntax.arguments[i++]);
  for (; i + 1 < syntax.arguments.size(); i += 2) {
    text += " WHEN " + ToText(syntax.arguments[i]) + " THEN " + ToText(syntax.arguments[i + 1]);
  }
  if (i < syntax.arguments.size()) text += " ELSE " + ToText(syntax.arguments[i]);
  return text + " END";
}

std::string PropertyText(const Syntax& syntax) {
  std::string text = ToText(syntax.arguments[0]) + '.' + syntax.text;
  if (syntax.arguments.size() > 1) text += '(' + Joined(syntax.arguments, 1) + ')';
  return text;
}

}  // namespace

std::size_t BeginOf(const Syntax& syntax) {
  const bool begins_with_operand =
      syntax.kind == SyntaxKind::kBinary || syntax.kind == SyntaxKind::kProperty;
  return begins_with_operand ? BeginOf(syntax.arguments[0]) : syntax.offset;
}

std::string ToText(const Name& name) {
  std::string text;
  for (const NamePart& part : name) {
    if (!text.empty()) text += '.';
    text += part.bracketed ? Bracketed(part.text) : part.text;
  }
  return text;
}

std::string ToText(const Syntax& syntax) {
  const auto& arguments = syntax.arguments;
  switch (syntax.kind) {
    case SyntaxKind::kName:
      return ToText(syntax.name);
    case SyntaxKind::kNumber:
      return NumberText(syntax.number);
    case SyntaxKind::kText:
      return Quoted(syntax.text);
    case SyntaxKind::kSet:
      return '{' + Joined(arguments) + '}';
    case SyntaxKind::kTuple:
      return '(' + Joined(arguments) + ')';
    case SyntaxKind::kCall:
      return syntax.text + '(' + Joined(arguments) + ')';
    case SyntaxKind::kProperty:
      return PropertyText(syntax);
    case SyntaxKind::kUnary:
      return '(' + syntax.text + ' ' + ToText(arguments[0]) + ')';
    case SyntaxKind::kBinary:
      return '(' + ToText(arguments[0]) + ' ' + syntax.text + ' ' + ToText(arguments[1]) + ')';
    case SyntaxKind::kCase:
      return CaseText(syntax);
  }
  return {};
}

std::string ToText(const Statement& statement) {
  std::string text;
  for (const MemberDefinition& member : statement.members) {
    text += text.empty() ? "WITH " : " ";
    text += "MEMBER " + ToText(member.name) + " AS " + ToText(member.formula);
    for (const auto& [name, value] : member.properties) {
      text += ", " + name.text + " = " + ToText(value);
    }
  }
  for (const SetDefinition& set : statement.sets) {
    text += text.empty() ? "WITH " : " ";
    text += "SET " + ToText(Name{set.name}) + " AS " + ToText(set.formula);
  }
  text += text.empty() ? "SELECT" : " SELECT";
  for (const AxisSyntax& axis : statement.axes) {
    if (axis.ordinal > 0) text += ',';
    text += axis.non_empty ? " NON EMPTY " : " ";
    text += ToText(axis.set) + " ON " + std::to_string(axis.ordinal);
  }
  text += " FROM " + ToText(Name{statement.cube});
  if (statement.slicer) text += " WHERE " + ToText(*statement.slicer);
  return text;
}

}  // namespace vok::olap
