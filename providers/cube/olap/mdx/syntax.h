// The syntax tree of a query: what was written, not yet what it means.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vok::olap {

/// One part of "[Date].[2010].Children". Only a part without brackets can be a property.
struct NamePart {
  std::string text;
  bool bracketed = false;
  std::size_t offset = 0;
};
using Name = std::vector<NamePart>;

enum class SyntaxKind {
  kName,      ///< `name`; without parts: an argument that is left out
  kNumber,    ///< `number`
  kText,      ///< `text`
  kSet,       ///< {arguments}
  kTuple,     ///< (arguments), two or more
  kCall,      ///< text(arguments)
  kProperty,  ///< arguments[0].text or arguments[0].text(arguments[1], ...)
  kUnary,     ///< text arguments[0]; "-" or "NOT"
  kBinary,    ///< arguments[0] text arguments[1]
  kCase       ///< text "CASE": WHEN and THEN in pairs; "CASE OF": the operand before them; a last
              ///< argument without partner is ELSE
};

struct Syntax {
  SyntaxKind kind = SyntaxKind::kNumber;
  std::size_t offset = 0;
  std::string text;
  double number = 0;
  Name name;
  std::vector<Syntax> arguments;
  uint32_t depth = 1;  ///< of the tree below, itself included
};

struct MemberDefinition {
  Name name;
  Syntax formula;
  std::vector<std::pair<NamePart, Syntax>> properties;
};

struct SetDefinition {
  NamePart name;
  Syntax formula;
};

struct AxisSyntax {
  Syntax set;
  bool non_empty = false;
  uint32_t ordinal = 0;
  std::vector<Name> properties;  ///< of the members, as DIMENSION PROPERTIES asks
};

struct Statement {
  std::vector<MemberDefinition> members;
  std::vector<SetDefinition> sets;
  std::vector<AxisSyntax> axes;  ///< by ordinal, 0 first
  NamePart cube;
  std::optional<Syntax> slicer;
  std::vector<Name> cell_properties;
};

/// Where the expression begins in the text; an operation's own offset is that of its operator.
std::size_t BeginOf(const Syntax& syntax);
/// "[Date].[2010].Children"
std::string ToText(const Name& name);
/// The expression, with every operation in parentheses.
std::string ToText(const Syntax& syntax);
/// The statement on one line.
std::string ToText(const Statement& statement);

}  // namespace vok::olap
