#include <algorithm>
#include <charconv>
#include <cstring>
#include <string>

#include "providers/workbook/xlsx/sheet.h"
#include "providers/workbook/xlsx/text_rules.h"
#include "providers/workbook/xlsx/workbook_parts.h"

namespace vok::xlsx {
namespace {

/// Most bytes of a row's or a cell's XML.
constexpr std::size_t kMaxRowXml = 64;
constexpr std::size_t kMaxCellXml = 112;

/// Widths in characters.
constexpr uint32_t kNarrowest = 9;
constexpr uint32_t kWidest = 60;
constexpr uint32_t kMargin = 2;
constexpr uint32_t kNumberWidth = 11;

char* Put(char* at, std::string_view text) {
  std::memcpy(at, text.data(), text.size());
  return at + text.size();
}

/// Most characters of a number.
constexpr std::size_t kLongest = 32;

template <typename Number>
char* PutNumber(char* at, Number value) {
  return std::to_chars(at, at + kLongest, value).ptr;
}

struct Column {
  uint16_t format = 0;
  uint32_t width = 0;  ///< in characters; 0: the program's own
  friend bool operator==(const Column&, const Column&) = default;
};

class SheetWriter {
 public:
  SheetWriter(ByteBuffer& xml, const Workbook& workbook, const Sheet& sheet, TextOrder& order)
      : xml_(xml), workbook_(workbook), sheet_(sheet), order_(order) {
    FitColumns();
    for (uint32_t column = 1; column <= last_column_; ++column) {
      names_.push_back(ColumnName(column));
    }
  }

  void Write(bool selected) {
    xml_ << "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
            "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">";
    WriteDimension();
    xml_ << "<sheetViews><sheetView " << (selected ? "tabSelected=\"1\" " : "")
         << "workbookViewId=\"0\"/></sheetViews><sheetFormatPr defaultRowHeight=\"15\"/>";
    WriteColumns();
    xml_ << "<sheetData>";
    for (const Row& row : sheet_.rows()) {
      if (!row.cells.empty()) WriteRow(row);
    }
    xml_ << "</sheetData></worksheet>";
  }

 private:
  uint32_t WidthOf(const Cell& cell) const {
    switch (cell.kind) {
      case CellKind::kBlank:
        return 0;
      case CellKind::kText:
        return workbook_.texts.Width(cell.text);
      default:
        return kNumberWidth;
    }
  }

  /// Gives a width to the columns that have contents or a format.
  void FitColumns() {
    std::vector<uint32_t> widest(kMaxColumns);
    for (const Row& row : sheet_.rows()) {
      for (const Cell& cell : row.cells) {
        uint32_t& width = widest[cell.column - 1u];
        width = std::max(width, WidthOf(cell));
      }
      if (!row.cells.empty()) {
        last_column_ = std::max<uint32_t>(last_column_, row.cells.back().column);
      }
    }
    const std::vector<uint16_t>& formats = sheet_.column_formats();
    columns_.resize(std::max<std::size_t>(formats.size(), last_column_));
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      if (i < formats.size()) columns_[i].format = formats[i];
      if (widest[i] > 0 || columns_[i].format != 0) {
        columns_[i].width = std::clamp(widest[i] + kMargin, kNarrowest, kWidest);
      }
    }
  }

  void WriteDimension() {
    const uint32_t last_row = sheet_.rows().empty() ? 1 : sheet_.rows().back().number;
    xml_ << "<dimension ref=\"A1:" << CellName(last_row, std::max(last_column_, 1u)) << "\"/>";
  }

  void WriteColumns() {
    const auto is_known = [](const Column& column) { return column.width != 0; };
    if (std::none_of(columns_.begin(), columns_.end(), is_known)) return;
    xml_ << "<cols>";
    for (std::size_t first = 0; first < columns_.size();) {
      std::size_t end = first + 1;
      while (end < columns_.size() && columns_[end] == columns_[first]) ++end;
      if (is_known(columns_[first])) WriteColumn(first, end);
      first = end;
    }
    xml_ << "</cols>";
  }

  void WriteColumn(std::size_t first, std::size_t end) {
    const Column& column = columns_[first];
    xml_ << "<col min=\"" << std::to_string(first + 1) << "\" max=\"" << std::to_string(end)
         << "\" width=\"" << std::to_string(column.width);
    if (column.format != 0) xml_ << "\" style=\"" << std::to_string(column.format);
    xml_ << "\" bestFit=\"1\" customWidth=\"1\"/>";
  }

  void WriteRow(const Row& row) {
    char digits[kLongest];
    const std::string_view number(digits, PutNumber(digits, row.number));
    char* at = xml_.Reserve(kMaxRowXml + row.cells.size() * kMaxCellXml);
    at = Put(at, "<row r=\"");
    at = Put(at, number);
    at = Put(at, "\">");
    for (const Cell& cell : row.cells) at = PutCell(at, cell, number);
    at = Put(at, "</row>");
    xml_.AdvanceTo(at);
  }

  char* PutCell(char* at, const Cell& cell, std::string_view row) {
    at = Put(at, "<c r=\"");
    at = Put(at, names_[cell.column - 1u]);
    at = Put(at, row);
    if (cell.format != 0) {
      at = Put(at, "\" s=\"");
      at = PutNumber(at, cell.format);
    }
    switch (cell.kind) {
      case CellKind::kBlank:
        return Put(at, "\"/>");
      case CellKind::kNumber:
        at = PutNumber(Put(at, "\"><v>"), cell.number);
        break;
      case CellKind::kBoolean:
        at = PutNumber(Put(at, "\" t=\"b\"><v>"), cell.number);
        break;
      case CellKind::kText:
        at = PutNumber(Put(at, "\" t=\"s\"><v>"), order_.Use(cell.text));
        break;
    }
    return Put(at, "</v></c>");
  }

  ByteBuffer& xml_;
  const Workbook& workbook_;
  const Sheet& sheet_;
  TextOrder& order_;
  std::vector<Column> columns_;
  std::vector<std::string> names_;
  uint32_t last_column_ = 0;
};

}  // namespace

void AppendSheet(ByteBuffer& xml, const Workbook& workbook, const Sheet& sheet, bool selected,
                 TextOrder& order) {
  SheetWriter(xml, workbook, sheet, order).Write(selected);
}

}  // namespace vok::xlsx
