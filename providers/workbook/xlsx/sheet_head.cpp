#include <algorithm>
#include <string>

#include "providers/workbook/xlsx/cell_reference.h"
#include "providers/workbook/xlsx/workbook_parts.h"

namespace vok::xlsx {
namespace {

/// Widths in characters.
constexpr uint32_t kNarrowest = 9;
constexpr uint32_t kWidest = 60;
constexpr uint32_t kMargin = 2;
constexpr uint32_t kNumberWidth = 11;

struct Column {
  uint16_t format = 0;
  uint32_t width = 0;  ///< in characters; 0: the program's own
  friend bool operator==(const Column&, const Column&) = default;
};

bool IsKnown(const Column& column) { return column.width != 0; }

uint32_t WidthOf(const ColumnExtent& extent) {
  const bool has_number = extent.highest != 0 || extent.lowest != 0;
  return std::max(extent.text, has_number ? kNumberWidth : 0);
}

/// Gives a width to the columns that have contents or a format.
std::vector<Column> FitColumns(const Workbook& workbook, const std::vector<ColumnExtent>& extents) {
  const std::vector<uint16_t>& styles = *workbook.styles;
  std::vector<Column> columns(std::max(styles.size(), extents.size()));
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (i < styles.size()) columns[i].format = styles[i];
    const uint32_t width = i < extents.size() ? WidthOf(extents[i]) : 0;
    if (width > 0 || columns[i].format != 0) {
      columns[i].width = std::clamp(width + kMargin, kNarrowest, kWidest);
    }
  }
  return columns;
}

void AppendColumn(ByteBuffer& xml, std::size_t first, std::size_t end, const Column& column) {
  xml << "<col min=\"" << std::to_string(first + 1) << "\" max=\"" << std::to_string(end)
      << "\" width=\"" << std::to_string(column.width);
  if (column.format != 0) xml << "\" style=\"" << std::to_string(column.format);
  xml << "\" bestFit=\"1\" customWidth=\"1\"/>";
}

void AppendColumns(ByteBuffer& xml, const std::vector<Column>& columns) {
  if (std::none_of(columns.begin(), columns.end(), IsKnown)) return;
  xml << "<cols>";
  for (std::size_t first = 0; first < columns.size();) {
    std::size_t end = first + 1;
    while (end < columns.size() && columns[end] == columns[first]) ++end;
    if (IsKnown(columns[first])) AppendColumn(xml, first, end, columns[first]);
    first = end;
  }
  xml << "</cols>";
}

}  // namespace

void AppendSheetHead(ByteBuffer& xml, const Workbook& workbook,
                     const std::vector<ColumnExtent>& extents) {
  xml << "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
         "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">"
         "<dimension ref=\"A1:"
      << CellName(workbook.last_row, std::max<std::size_t>(extents.size(), 1)) << "\"/>"
      << "<sheetViews><sheetView tabSelected=\"1\" workbookViewId=\"0\"/></sheetViews>"
         "<sheetFormatPr defaultRowHeight=\"15\"/>";
  AppendColumns(xml, FitColumns(workbook, extents));
  xml << "<sheetData>";
}

}  // namespace vok::xlsx
