// The part of the cells' looks. Of it this system keeps the number formats; the writer gives every
// number format of the workbook one style of the same index.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "providers/xlsx/part_context.h"
#include "providers/xlsx/workbook.h"

namespace vok::xlsx {

void AppendStyles(ByteBuffer& xml, const Workbook& workbook);
/// For each style of the part the index of its number format in `workbook.formats`, which grows.
std::vector<uint16_t> ReadStyles(std::string_view xml, Workbook& workbook, PartContext& context);

}  // namespace vok::xlsx
