#include "providers/cube/olap/mdx/resolver.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "providers/cube/olap/mdx/declared_members.h"
#include "providers/cube/olap/mdx/expression_resolver.h"
#include "providers/cube/olap/mdx/name_resolver.h"
#include "providers/cube/olap/mdx/token_reader.h"

namespace vok::olap {
namespace {

constexpr std::string_view kOfMembers[] = {"CAPTION",
                                           "CATALOG_NAME",
                                           "CHILDREN_CARDINALITY",
                                           "CUBE_NAME",
                                           "CUSTOM_ROLLUP",
                                           "CUSTOM_ROLLUP_PROPERTIES",
                                           "DESCRIPTION",
                                           "DIMENSION_UNIQUE_NAME",
                                           "DISPLAY_INFO",
                                           "HIERARCHY_UNIQUE_NAME",
                                           "ID",
                                           "IS_DATAMEMBER",
                                           "IS_PLACEHOLDERMEMBER",
                                           "KEY",
                                           "LCID",
                                           "LEVEL_NUMBER",
                                           "LEVEL_UNIQUE_NAME",
                                           "MEMBER_CAPTION",
                                           "MEMBER_GUID",
                                           "MEMBER_KEY",
                                           "MEMBER_NAME",
                                           "MEMBER_ORDINAL",
                                           "MEMBER_TYPE",
                                           "MEMBER_UNIQUE_NAME",
                                           "MEMBER_VALUE",
                                           "NAME",
                                           "PARENT_COUNT",
                                           "PARENT_LEVEL",
                                           "PARENT_UNIQUE_NAME",
                                           "SCHEMA_NAME",
                                           "SKIPPED_LEVELS",
                                           "UNARY_OPERATOR",
                                           "UNIQUE_NAME"};
constexpr std::string_view kOfCells[] = {"ACTION_TYPE",
                                         "BACK_COLOR",
                                         "CELL_EVALUATION_LIST",
                                         "CELL_ORDINAL",
                                         "DATATYPE",
                                         "FONT_FLAGS",
                                         "FONT_NAME",
                                         "FONT_SIZE",
                                         "FORE_COLOR",
                                         "FORMATTED_VALUE",
                                         "FORMAT_STRING",
                                         "LANGUAGE",
                                         "NON_EMPTY_BEHAVIOR",
                                         "SOLVE_ORDER",
                                         "UPDATEABLE",
                                         "VALUE"};

bool IsAmong(std::span<const std::string_view> known, std::string_view word) {
  return std::any_of(known.begin(), known.end(),
                     [word](std::string_view each) { return IsKeyword(word, each); });
}

/// "KEY0", "KEY1": the parts of a key.
bool IsPartOfKey(std::string_view word) {
  constexpr std::string_view kKey = "KEY";
  if (word.size() <= kKey.size() || !IsKeyword(word.substr(0, kKey.size()), kKey)) return false;
  return word.find_first_not_of("0123456789", kKey.size()) == std::string_view::npos;
}

constexpr std::array<std::string_view, 8> kIgnoredProperties = {
    "VISIBLE",    "DESCRIPTION", "DATATYPE",  "NON_EMPTY_BEHAVIOR",
    "FORE_COLOR", "BACK_COLOR",  "FONT_NAME", "FONT_SIZE"};

class StatementResolver {
 public:
  StatementResolver(const CubeView& cube, const SourceText& source, const Statement& statement,
                    const QueryGuard& guard)
      : cube_(cube),
        source_(source),
        statement_(statement),
        guard_(guard),
        names_(cube, source, query_),
        expressions_(cube, source, names_, guard) {}

  Query Run() {
    AddDeclaredMembers(cube_, query_, guard_);
    DeclareMembers();
    ResolveSets();
    for (const auto& [index, definition] : declared_) ResolveMember(index, *definition);
    ResolveAxes();
    return std::move(query_);
  }

 private:
  /// Members first by name alone: their formulas may name one another in any order.
  void DeclareMembers() {
    for (const MemberDefinition& definition : statement_.members) {
      std::optional<CalculatedMember> member = names_.Declare(definition.name, false);
      if (!member) continue;
      declared_.emplace_back(query_.Add(cube_, std::move(*member)), &definition);
    }
  }

  void ResolveMember(std::size_t index, const MemberDefinition& definition) {
    MemberId measure = kNoMember;
    ValuePtr formula = expressions_.ResolveFormula(definition.formula, measure);
    CalculatedMember& member = query_.members[index];
    member.formula = std::move(formula);
    for (const auto& [name, value] : definition.properties) SetProperty(member, name, value);
    // A calculated member without a format of its own shows as the first measure of its formula.
    if (!member.format) member.format = FormatOf(cube_, query_, measure);
  }

  void SetProperty(CalculatedMember& member, const NamePart& name, const Syntax& value) const {
    if (IsKeyword(name.text, "FORMAT_STRING")) {
      member.format = TextOf(name, value);
    } else if (IsKeyword(name.text, "CAPTION")) {
      member.caption = TextOf(name, value);
    } else if (IsKeyword(name.text, "SOLVE_ORDER")) {
      member.solve_order = NumberOf(name, value);
    } else if (!IsIgnoredProperty(name.text)) {
      source_.Fail(name.offset, "not supported: the member property " + name.text);
    }
  }

  const std::string& TextOf(const NamePart& name, const Syntax& value) const {
    if (value.kind != SyntaxKind::kText) {
      source_.Fail(value.offset, "not supported: " + name.text + " other than a text in quotes");
    }
    return value.text;
  }

  double NumberOf(const NamePart& name, const Syntax& value) const {
    if (value.kind == SyntaxKind::kNumber) return value.number;
    if (value.kind == SyntaxKind::kUnary && value.arguments[0].kind == SyntaxKind::kNumber) {
      return -value.arguments[0].number;
    }
    source_.Fail(value.offset, name.text + " must be a number");
  }

  void ResolveSets() {
    for (const SetDefinition& definition : statement_.sets) {
      const std::size_t index = query_.Add(
          cube_, NamedSet{definition.name.text, nullptr, Place{&source_, definition.name.offset}});
      query_.sets[index].set = expressions_.ResolveSet(definition.formula);
    }
  }

  void ResolveAxes() {
    std::vector<HierarchyId> used;
    for (const AxisSyntax& axis : statement_.axes) {
      query_.axes.push_back({expressions_.ResolveSet(axis.set), axis.non_empty, BeginOf(axis.set)});
      Use(query_.axes.back(), used);
      for (const Name& property : axis.properties) CheckMemberProperty(names_, source_, property);
    }
    for (const Name& property : statement_.cell_properties) CheckCellProperty(source_, property);
    if (!statement_.slicer) return;
    query_.slicer =
        QueryAxis{expressions_.ResolveSet(*statement_.slicer), false, BeginOf(*statement_.slicer)};
    Use(*query_.slicer, used);
  }

  void Use(const QueryAxis& axis, std::vector<HierarchyId>& used) const {
    for (const HierarchyId hierarchy : axis.set->hierarchies()) {
      if (std::find(used.begin(), used.end(), hierarchy) != used.end()) {
        source_.Fail(axis.offset, "hierarchy " + cube_.HierarchyUniqueName(hierarchy) +
                                      " is on more than one axis (the slicer is one)");
      }
      used.push_back(hierarchy);
    }
  }

  const CubeView& cube_;
  const SourceText& source_;
  const Statement& statement_;
  const QueryGuard& guard_;
  Query query_;
  NameResolver names_;
  ExpressionResolver expressions_;
  std::vector<std::pair<std::size_t, const MemberDefinition*>> declared_;
};

}  // namespace

void CheckMemberProperty(const NameResolver& names, const SourceText& source, const Name& name) {
  if (name.size() > 1) {
    const Operand of = names.Resolve(std::span(name).first(name.size() - 1));
    if (!Fits(of, ArgumentType::kHierarchy) && !Fits(of, ArgumentType::kLevel)) {
      source.Fail(name.front().offset, "expected a hierarchy or a level but found " + Describe(of));
    }
  }
  const NamePart& last = name.back();
  if (IsAmong(kOfMembers, last.text) || IsPartOfKey(last.text)) return;
  source.Fail(last.offset, "not a property of members: " + last.text);
}

void CheckCellProperty(const SourceText& source, const Name& name) {
  if (name.size() == 1 && IsAmong(kOfCells, name[0].text)) return;
  source.Fail(name.front().offset, "not a property of cells: " + ToText(name));
}

bool IsIgnoredProperty(std::string_view name) {
  return std::any_of(kIgnoredProperties.begin(), kIgnoredProperties.end(),
                     [name](std::string_view known) { return IsKeyword(name, known); });
}

Query Resolve(const CubeView& cube, const SourceText& source, const Statement& statement,
              const QueryGuard& guard) {
  return StatementResolver(cube, source, statement, guard).Run();
}

}  // namespace vok::olap
