// One sheet in memory: rows of cells, sorted, nothing stored for what is blank; and its columns.
//
// Rows and columns are counted from 1. Texts and number formats are numbers into the workbook's
// `TextPool` and `formats`.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "providers/workbook/xlsx/cell_reference.h"

namespace vok::xlsx {

enum class CellKind : uint8_t { kBlank, kNumber, kBoolean, kText };

/// A cell as it is stored. A blank one exists only to keep a format that its column does not have.
struct Cell {
  uint16_t column = 0;
  uint16_t format = 0;
  CellKind kind = CellKind::kBlank;
  union {
    double number = 0;  ///< of kNumber, and 0 or 1 of kBoolean
    uint32_t text;      ///< of kText
  };

  static Cell Number(double value);
  static Cell Boolean(bool value);
  static Cell Text(uint32_t number);
};

struct Row {
  uint32_t number = 0;
  std::vector<Cell> cells;
};

class Sheet {
 public:
  explicit Sheet(std::string sheet_name) : name(std::move(sheet_name)) {}

  std::string name;

  const std::vector<Row>& rows() const { return rows_; }
  /// Of the columns from 1 on; those past its end have format 0.
  const std::vector<uint16_t>& column_formats() const { return column_formats_; }

  /// Puts `contents`, whose columns do not count, side by side from `place` on; blank ones clear
  /// what was there. A cell keeps the format it has, or takes its column's; only where that is
  /// General, the content's own.
  void Assign(CellPlace place, std::span<const Cell> contents);
  /// For the columns and for the cells that stand in them.
  void SetColumnsFormat(ColumnRange range, uint16_t format);

 private:
  Row& RowAt(uint32_t number);
  uint16_t ColumnFormat(uint32_t column) const;

  std::vector<Row> rows_;
  std::vector<uint16_t> column_formats_;
};

/// Rows of the smallest rectangle around the place that has only blank cells along its border,
/// corners included.
std::size_t CurrentRegionRows(const Sheet& sheet, CellPlace place);

}  // namespace vok::xlsx
