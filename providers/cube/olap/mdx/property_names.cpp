#include "providers/cube/olap/mdx/property_names.h"

#include <algorithm>
#include <span>
#include <string_view>

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

}  // namespace vok::olap
