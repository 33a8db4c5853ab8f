// One sheet in memory: rows of cells, sorted, nothing stored for what is blank; and its columns.
//
// Rows and columns are counted from 1. Texts and number formats are numbers into the workbook's
// `TextPool` and `formats`.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "providers/xlsx/cell_reference.h"

namespace vok::xlsx {

enum class CellKind : uint8_t { kBlank, kNumber, kBoolean, kText, kError };

/// A cell as it is stored. A blank one exists only to keep a format that its column does not have.
struct Cell {
  uint16_t column = 0;
  uint16_t format = 0;
  CellKind kind = CellKind::kBlank;
  union {
    double number = 0;  ///< of kNumber, and 0 or 1 of kBoolean
    uint32_t text;      ///< of kText and kError
  };

  static Cell Number(double value);
  static Cell Boolean(bool value);
  static Cell Text(uint32_t number);
  static Cell Error(uint32_t number);
};

struct Row {
  uint32_t number = 0;
  std::vector<Cell> cells;
};

struct Column {
  uint16_t format = 0;
  double width = 0;  ///< in characters, as the user set it; 0: fitted to the contents on saving
  friend bool operator==(const Column&, const Column&) = default;
};

class Sheet {
 public:
  explicit Sheet(std::string sheet_name) : name(std::move(sheet_name)) {}

  std::string name;

  const std::vector<Row>& rows() const { return rows_; }
  /// The columns from 1 on that anything is known of.
  const std::vector<Column>& columns() const { return columns_; }
  uint16_t ColumnFormat(uint32_t column) const;

  /// The cell there; nullptr when nothing is stored.
  const Cell* Find(CellPlace place) const;
  bool IsBlank(CellPlace place) const;

  /// Adds behind everything else: row and column grow from call to call.
  void AppendCell(uint32_t row, const Cell& cell);
  /// Puts `contents`, whose columns do not count, side by side from `place` on; blank ones clear
  /// what was there. A cell keeps the format it has, or takes its column's; only where that is
  /// General, the content's own.
  void Assign(CellPlace place, std::span<const Cell> contents);
  /// For the columns and for the cells that stand in them.
  void SetColumnsFormat(ColumnRange range, uint16_t format);
  void SetColumns(ColumnRange range, const Column& column);

 private:
  Row& RowAt(uint32_t number);
  void GrowColumns(uint32_t count);

  std::vector<Row> rows_;
  std::vector<Column> columns_;
};

/// Rows of the smallest rectangle around the place that has only blank cells along its border,
/// corners included.
std::size_t CurrentRegionRows(const Sheet& sheet, CellPlace place);

}  // namespace vok::xlsx
