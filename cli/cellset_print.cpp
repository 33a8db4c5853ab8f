#include "cli/cellset_print.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "cli/print.h"
#include "platform/shown_text.h"

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

using Line = std::vector<std::string>;

/// A cellset as header lines and rows of texts.
class Sheet {
 public:
  explicit Sheet(const Cellset& cellset) {
    for (std::size_t axis = 0; axis < cellset.AxisCount(); ++axis) {
      const std::size_t positions = cellset.PositionCount(axis);
      axes_.push_back({positions, AxisHeaders(cellset, axis)});
      (axis == 0 ? columns_ : rows_) *= positions;
    }
  }

  std::size_t RowHeaders() const { return RowNames().size(); }
  std::size_t HeaderLines() const { return axes_.empty() ? 0 : axes_[0].headers.size(); }

  /// `cell` writes the cell of an ordinal.
  template <typename WriteCell>
  std::vector<Line> Lines(WriteCell cell) const {
    std::vector<Line> lines;
    for (std::size_t i = 0; i < HeaderLines(); ++i) {
      const bool last = i + 1 == HeaderLines();
      Line& line = lines.emplace_back(last ? RowNames() : Line(RowHeaders()));
      const Line& captions = axes_[0].headers[i].texts;
      line.insert(line.end(), captions.begin(), captions.end());
    }
    for (std::size_t row = 0; row < rows_; ++row) {
      Line& line = lines.emplace_back(RowHeader(row));
      for (std::size_t column = 0; column < columns_; ++column) {
        line.push_back(cell(row * columns_ + column));
      }
    }
    return lines;
  }

 private:
  struct Axis {
    std::size_t positions;
    std::vector<HeaderColumn> headers;
  };

  /// Outermost axis first, as the headers of a row stand.
  Line RowNames() const {
    Line names;
    for (std::size_t axis = axes_.size(); axis-- > 1;) {
      for (const HeaderColumn& column : axes_[axis].headers) names.push_back(column.hierarchy);
    }
    return names;
  }
  Line RowHeader(std::size_t row) const {
    Line header;
    for (std::size_t axis = 1; axis < axes_.size(); ++axis) {
      const std::size_t position = row % axes_[axis].positions;
      row /= axes_[axis].positions;
      Line texts;
      for (const HeaderColumn& column : axes_[axis].headers) {
        texts.push_back(column.texts[position]);
      }
      header.insert(header.begin(), texts.begin(), texts.end());
    }
    return header;
  }

  std::vector<Axis> axes_;
  std::size_t columns_ = 1;
  std::size_t rows_ = 1;
};

Json CellJson(const Value& value) {
  if (value.IsEmpty()) return nullptr;
  if (const auto* number = value.As<double>()) {
    if (std::isnan(*number)) return "NaN";
    if (std::isinf(*number)) return *number > 0 ? "Infinity" : "-Infinity";
    return *number;
  }
  if (value.Is<int16_t>() || value.Is<int32_t>()) return value.ToInt32();
  if (const auto* logical = value.As<bool>()) return *logical;
  if (const auto* error = value.As<CellError>()) return "#ERR: " + error->description;
  return value.ToText();
}

std::string CellText(const Value& value) {
  const auto json = CellJson(value);
  if (json.is_null()) return {};
  return json.is_string() ? json.get<std::string>() : value.ToText();
}

/// The first `names` texts at the left of their columns, the others at the right.
std::string Aligned(const Line& line, const std::vector<std::size_t>& widths, std::size_t names) {
  std::string text;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const std::string padding(widths[i] - CellWidth(line[i]), ' ');
    text += (i > 0 ? "  " : "") + (i < names ? line[i] + padding : padding + line[i]);
  }
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string Rule(const std::vector<std::size_t>& widths) {
  std::string text;
  for (const std::size_t width : widths)
    text += (text.empty() ? "" : "  ") + std::string(width, '-');
  return text;
}

/// On one line as others see it, but with its tabs, which captions have between their parts.
std::string WithTabs(std::string_view text) {
  std::string line;
  while (true) {
    const std::size_t tab = text.find('\t');
    line += OneLine(text.substr(0, tab));
    if (tab == text.npos) return line;
    line += '\t';
    text.remove_prefix(tab + 1);
  }
}

}  // namespace

std::vector<HeaderColumn> AxisHeaders(const Cellset& cellset, std::size_t axis) {
  std::vector<HeaderColumn> columns;
  for (std::size_t i = 0; i < cellset.MembersPerPosition(axis); ++i) {
    columns.push_back(ColumnOf(cellset, axis, i));
  }
  return columns;
}

void PrintTable(const Cellset& cellset, std::ostream& out) {
  const Sheet sheet(cellset);
  auto lines = sheet.Lines([&](std::size_t ordinal) { return cellset.FormattedCell(ordinal); });
  std::vector<std::size_t> widths(lines.empty() ? 0 : lines.front().size());
  for (auto& line : lines) {
    for (std::size_t i = 0; i < line.size(); ++i) {
      line[i] = OneLine(line[i]);
      widths[i] = std::max(widths[i], CellWidth(line[i]));
    }
  }
  for (std::size_t l = 0; l < lines.size(); ++l) {
    out << Aligned(lines[l], widths, sheet.RowHeaders()) << '\n';
    if (l + 1 == sheet.HeaderLines()) out << Rule(widths) << '\n';
  }
  for (std::size_t axis = 0; axis < cellset.AxisCount(); ++axis) {
    if (cellset.PositionCount(axis) > 0) continue;
    out << "No cells: axis " << axis << " is empty.\n";
  }
}

void PrintCsv(const Cellset& cellset, std::ostream& out) {
  const auto lines =
      Sheet(cellset).Lines([&](std::size_t ordinal) { return CellText(cellset.Cell(ordinal)); });
  for (const auto& line : lines) {
    if (line.size() == 1 && line[0].empty()) out << "\"\"";  // readers pass over a line of nothing
    for (std::size_t i = 0; i < line.size(); ++i) {
      out << (i > 0 ? "," : "") << CsvField(WithTabs(line[i]));
    }
    out << "\r\n";
  }
}

void PrintJson(const Cellset& cellset, std::ostream& out) {
  Json document{{"axes", Json::array()}, {"cells", Json::array()}};
  std::size_t cells = 1;
  for (std::size_t a = 0; a < cellset.AxisCount(); ++a) {
    cells *= cellset.PositionCount(a);
    auto positions = Json::array();
    for (std::size_t p = 0; p < cellset.PositionCount(a); ++p) {
      auto members = Json::array();
      for (std::size_t i = 0; i < cellset.MembersPerPosition(a); ++i) {
        const AxisMember member = cellset.Member(a, p, i);
        members.push_back({{"UniqueName", member.unique_name},
                           {"Caption", member.caption},
                           {"LevelName", member.level_name}});
      }
      positions.push_back(std::move(members));
    }
    document["axes"].push_back(std::move(positions));
  }
  for (std::size_t i = 0; i < cells; ++i) document["cells"].push_back(CellJson(cellset.Cell(i)));
  out << JsonText(document);
}

}  // namespace vok::cli
