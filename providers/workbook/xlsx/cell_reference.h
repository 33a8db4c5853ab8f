// How cells and columns are called on a sheet ("A1", "A:K"), and how many there are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vok::xlsx {

inline constexpr uint32_t kMaxRows = 1'048'576;
inline constexpr uint32_t kMaxColumns = 16'384;

/// Row and column counted from 1.
struct CellPlace {
  uint32_t row = 0;
  uint32_t column = 0;
  friend bool operator==(const CellPlace&, const CellPlace&) = default;
};

struct ColumnRange {
  uint32_t first = 0;
  uint32_t last = 0;
  friend bool operator==(const ColumnRange&, const ColumnRange&) = default;
};

/// "L1", "$L$1", letters of either case. Nothing for any other text and for a place off the sheet.
std::optional<CellPlace> ParseCell(std::string_view name);
/// "A:K"; the columns may stand in either order.
std::optional<ColumnRange> ParseColumns(std::string_view name);

/// "K" for 11.
std::string ColumnName(uint32_t column);
/// "K2".
std::string CellName(std::size_t row, std::size_t column);

}  // namespace vok::xlsx
