#include "providers/cube/olap/mdx/declared_members.h"

#include <memory>
#include <utility>

#include "providers/cube/olap/mdx/expression_parser.h"
#include "providers/cube/olap/mdx/expression_resolver.h"
#include "providers/cube/olap/mdx/name_resolver.h"
#include "providers/cube/olap/mdx/token_reader.h"

namespace vok::olap {
namespace {

std::string NameOf(const CalculatedDefinition& definition) {
  return definition.above + "." + Bracketed(definition.name);
}

const SourceText& Keep(Query& query, std::string text, const std::string& title) {
  return *query.formulas.emplace_back(std::make_unique<SourceText>(std::move(text), title));
}

CalculatedMember Declare(const CubeView& cube, Query& query, const CalculatedDefinition& definition,
                         const std::string& title) {
  const SourceText& source = Keep(query, NameOf(definition), title);
  TokenReader tokens(source, 0, false);
  const Name name = tokens.ReadName();
  auto member = NameResolver(cube, source, query).Declare(name, true);
  if (!member) source.Fail(0, NameOf(definition) + " is declared twice");
  member->caption = definition.caption;
  member->solve_order = definition.solve_order;
  return std::move(*member);
}

ValuePtr ResolveFormula(const CubeView& cube, Query& query, const QueryGuard& guard,
                        const CalculatedDefinition& definition, const std::string& title,
                        MemberId& first_measure) {
  const SourceText& source = Keep(query, definition.formula, title);
  TokenReader tokens(source, 0, false);
  const Syntax formula = ParseFormula(tokens);
  if (tokens.current().kind != TokenKind::kEnd) tokens.Expected("the end of the formula");
  const NameResolver names(cube, source, query);
  return ExpressionResolver(cube, source, names, guard).ResolveFormula(formula, first_measure);
}

}  // namespace

void AddDeclaredMembers(const CubeView& cube, Query& query, const QueryGuard& guard,
                        std::span<const std::string> places) {
  const auto& definitions = cube.model().calculated;
  const auto title = [&](std::size_t i) {
    const std::string place = i < places.size() ? places[i] + ": " : "";
    return place + "calculated member " + NameOf(definitions[i]);
  };
  for (std::size_t i = 0; i < definitions.size(); ++i) {
    CalculatedMember member = Declare(cube, query, definitions[i], title(i));
    query.Add(cube, std::move(member));
  }
  for (std::size_t i = 0; i < definitions.size(); ++i) {
    MemberId measure = kNoMember;
    ValuePtr formula = ResolveFormula(cube, query, guard, definitions[i], title(i), measure);
    query.members[i].formula = std::move(formula);
    query.members[i].format = definitions[i].format_string.empty()
                                  ? FormatOf(cube, query, measure)
                                  : std::optional(definitions[i].format_string);
  }
}

}  // namespace vok::olap
