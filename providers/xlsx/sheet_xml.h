// The part that holds one sheet.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "providers/xlsx/part_context.h"
#include "providers/xlsx/shared_strings.h"
#include "providers/xlsx/workbook.h"

namespace vok::xlsx {

/// `selected`: the sheet is the one shown when the workbook is opened.
void AppendSheet(ByteBuffer& xml, const Workbook& workbook, const Sheet& sheet, bool selected,
                 TextOrder& order);

/// What the numbers of a sheet part's cells mean.
struct SheetTables {
  std::span<const uint32_t> texts;    ///< shared string → `Workbook::texts`
  std::span<const uint16_t> formats;  ///< style → `Workbook::formats`
};

/// Fills the empty `sheet`. Cells and rows must stand in order.
void ReadSheet(std::string_view xml, const SheetTables& tables, TextPool& pool, Sheet& sheet,
               PartContext& context);

}  // namespace vok::xlsx
