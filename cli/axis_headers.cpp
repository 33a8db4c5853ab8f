#include "cli/axis_headers.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <unordered_map>

namespace vok::cli {
namespace {

using Names = std::vector<std::string>;

/// Of "[a].[b]].c].&[d]": a, b].c and d.
Names NamesIn(std::string_view unique_name) {
  Names names;
  for (std::size_t at = unique_name.find('['); at < unique_name.size();) {
    std::string& name = names.emplace_back();
    for (++at; at < unique_name.size(); ++at) {
      if (unique_name[at] == ']' && unique_name.substr(at, 2) != "]]") break;
      if (unique_name[at] == ']') ++at;
      name += unique_name[at];
    }
    at = unique_name.find('[', at);
  }
  return names;
}

Names HierarchyOf(const AxisMember& member) {
  Names names = NamesIn(member.level_name);
  if (!names.empty()) names.pop_back();
  return names;
}

std::string Joined(const Names& names, std::string_view between) {
  std::string text;
  for (const std::string& name : names) {
    if (&name != names.data()) text += between;
    text += name;
  }
  return text;
}

std::string WithNamesAbove(const AxisMember& member) {
  const Names hierarchy = HierarchyOf(member);
  Names names = NamesIn(member.unique_name);
  const auto first = std::mismatch(hierarchy.begin(), hierarchy.end(), names.begin(), names.end());
  if (first.first == hierarchy.end()) names.erase(names.begin(), first.second);
  if (names.empty()) names.emplace_back();
  names.back() = member.caption;
  return Joined(names, " / ");
}

std::string WithOwnName(const AxisMember& member) {
  const Names names = NamesIn(member.unique_name);
  return WithNamesAbove(member) + " (" + (names.empty() ? member.name : names.back()) + ")";
}

/// The positions whose texts stand for more than one member.
std::vector<std::size_t> Shared(const Names& texts, const Names& unique_names) {
  struct Use {
    const std::string& unique_name;
    bool shared = false;
  };
  std::unordered_map<std::string_view, Use> uses;
  for (std::size_t p = 0; p < texts.size(); ++p) {
    Use& use = uses.try_emplace(texts[p], Use{unique_names[p]}).first->second;
    use.shared = use.shared || use.unique_name != unique_names[p];
  }
  std::vector<std::size_t> positions;
  for (std::size_t p = 0; p < texts.size(); ++p) {
    if (uses.at(texts[p]).shared) positions.push_back(p);
  }
  return positions;
}

HeaderColumn ColumnOf(const Cellset& cellset, std::size_t axis, std::size_t index) {
  HeaderColumn column;
  Names unique_names;
  for (std::size_t p = 0; p < cellset.PositionCount(axis); ++p) {
    AxisMember member = cellset.Member(axis, p, index);
    if (p == 0) column.hierarchy = Joined(HierarchyOf(member), ".");
    column.texts.push_back(std::move(member.caption));
    unique_names.push_back(std::move(member.unique_name));
  }
  for (const auto longer : {WithNamesAbove, WithOwnName}) {
    for (const std::size_t p : Shared(column.texts, unique_names)) {
      column.texts[p] = longer(cellset.Member(axis, p, index));
    }
  }
  return column;
}

}  // namespace

std::vector<HeaderColumn> AxisHeaders(const Cellset& cellset, std::size_t axis) {
  std::vector<HeaderColumn> columns;
  for (std::size_t i = 0; i < cellset.MembersPerPosition(axis); ++i) {
    columns.push_back(ColumnOf(cellset, axis, i));
  }
  return columns;
}

}  // namespace vok::cli
