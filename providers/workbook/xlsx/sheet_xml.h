// The part that holds one sheet.
#pragma once

#include "providers/workbook/xlsx/shared_strings.h"
#include "providers/workbook/xlsx/workbook.h"

namespace vok::xlsx {

/// `selected`: the sheet is the one shown when the workbook is opened.
void AppendSheet(ByteBuffer& xml, const Workbook& workbook, const Sheet& sheet, bool selected,
                 TextOrder& order);

}  // namespace vok::xlsx
