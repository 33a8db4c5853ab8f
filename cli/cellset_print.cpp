#include "cli/cellset_print.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "cli/print.h"

namespace vok::cli {
namespace {

using Line = std::vector<std::string>;

std::size_t AxisSize(const Cellset& cellset, std::size_t axis) {
  return axis < cellset.AxisCount() ? cellset.AxisAt(axis).PositionCount() : 1;
}

std::size_t RowCount(const Cellset& cellset) {
  std::size_t rows = 1;
  for (std::size_t axis = 1; axis < cellset.AxisCount(); ++axis) rows *= AxisSize(cellset, axis);
  return rows;
}

std::size_t MembersOf(const Cellset& cellset, std::size_t axis) {
  return axis < cellset.AxisCount() ? cellset.AxisAt(axis).MembersPerPosition() : 0;
}

/// Captions of a row, outermost axis first.
Line RowHeader(const Cellset& cellset, std::size_t row) {
  Line header;
  for (std::size_t axis = 1; axis < cellset.AxisCount(); ++axis) {
    const std::size_t position = row % AxisSize(cellset, axis);
    row /= AxisSize(cellset, axis);
    Line captions;
    for (std::size_t i = 0; i < MembersOf(cellset, axis); ++i) {
      captions.push_back(cellset.AxisAt(axis).MemberAt(position, i).caption);
    }
    header.insert(header.begin(), captions.begin(), captions.end());
  }
  return header;
}

/// Header lines and rows as texts; `cell` prints the cell of an ordinal.
template <typename PrintCell>
std::vector<Line> Lines(const Cellset& cellset, std::size_t& header_lines, PrintCell cell) {
  std::size_t row_headers = 0;
  for (std::size_t axis = 1; axis < cellset.AxisCount(); ++axis) {
    row_headers += MembersOf(cellset, axis);
  }
  const std::size_t columns = AxisSize(cellset, 0);
  header_lines = MembersOf(cellset, 0);
  std::vector<Line> lines;
  for (std::size_t i = 0; i < header_lines; ++i) {
    Line line(row_headers);
    for (std::size_t column = 0; column < columns; ++column) {
      line.push_back(cellset.AxisAt(0).MemberAt(column, i).caption);
    }
    lines.push_back(std::move(line));
  }
  for (std::size_t row = 0; row < RowCount(cellset); ++row) {
    Line line = RowHeader(cellset, row);
    for (std::size_t column = 0; column < columns; ++column) {
      line.push_back(cell(row * columns + column));
    }
    lines.push_back(std::move(line));
  }
  return lines;
}

std::size_t CharacterCount(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string WithoutControls(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
  return text;
}

nlohmann::ordered_json CellJson(const Value& value) {
  if (value.IsEmpty()) return nullptr;
  if (const auto* number = value.As<double>()) {
    if (std::isnan(*number)) return "NaN";
    if (std::isinf(*number)) return *number > 0 ? "Infinity" : "-Infinity";
    return *number;
  }
  if (const auto* error = value.As<CellError>()) return "#ERR: " + error->description;
  return value.ToText();
}

std::string CellText(const Value& value) {
  const auto json = CellJson(value);
  if (json.is_null()) return {};
  return json.is_string() ? json.get<std::string>() : value.ToText();
}

}  // namespace

void PrintTable(const Cellset& cellset, std::ostream& out) {
  std::size_t header_lines = 0;
  auto lines = Lines(cellset, header_lines,
                     [&](std::size_t ordinal) { return cellset.FormattedCell(ordinal); });
  const std::size_t first_value = lines.empty() ? 0 : lines.front().size() - AxisSize(cellset, 0);
  std::vector<std::size_t> widths(lines.empty() ? 0 : lines.front().size());
  for (auto& line : lines) {
    for (std::size_t i = 0; i < line.size(); ++i) {
      line[i] = WithoutControls(std::move(line[i]));
      widths[i] = std::max(widths[i], CharacterCount(line[i]));
    }
  }
  for (std::size_t l = 0; l < lines.size(); ++l) {
    for (std::size_t i = 0; i < lines[l].size(); ++i) {
      const std::string padding(widths[i] - CharacterCount(lines[l][i]), ' ');
      if (i > 0) out << "  ";
      out << (i < first_value ? lines[l][i] + padding : padding + lines[l][i]);
    }
    out << '\n';
    if (l + 1 == header_lines) {
      for (std::size_t i = 0; i < widths.size(); ++i) {
        out << (i > 0 ? "  " : "") << std::string(widths[i], '-');
      }
      out << '\n';
    }
  }
}

void PrintCsv(const Cellset& cellset, std::ostream& out) {
  std::size_t header_lines = 0;
  const auto lines = Lines(cellset, header_lines,
                           [&](std::size_t ordinal) { return CellText(cellset.Cell(ordinal)); });
  for (const auto& line : lines) {
    for (std::size_t i = 0; i < line.size(); ++i) out << (i > 0 ? "," : "") << CsvField(line[i]);
    out << "\r\n";
  }
}

void PrintJson(const Cellset& cellset, std::ostream& out) {
  nlohmann::ordered_json document{{"axes", nlohmann::ordered_json::array()},
                                  {"cells", nlohmann::ordered_json::array()}};
  std::size_t cells = 1;
  for (std::size_t a = 0; a < cellset.AxisCount(); ++a) {
    const CellsetAxis& axis = cellset.AxisAt(a);
    cells *= axis.PositionCount();
    auto positions = nlohmann::ordered_json::array();
    for (std::size_t p = 0; p < axis.PositionCount(); ++p) {
      auto members = nlohmann::ordered_json::array();
      for (std::size_t i = 0; i < axis.MembersPerPosition(); ++i) {
        const AxisMember member = axis.MemberAt(p, i);
        members.push_back({{"UniqueName", member.unique_name},
                           {"Caption", member.caption},
                           {"LevelName", member.level_name}});
      }
      positions.push_back(std::move(members));
    }
    document["axes"].push_back(std::move(positions));
  }
  for (std::size_t i = 0; i < cells; ++i) document["cells"].push_back(CellJson(cellset.Cell(i)));
  out << document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

}  // namespace vok::cli
