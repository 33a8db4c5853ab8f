// The part of the cells' looks: every number format of the workbook has one style of its index.
#pragma once

#include "providers/workbook/xlsx/workbook.h"

namespace vok::xlsx {

void AppendStyles(ByteBuffer& xml, const Workbook& workbook);

}  // namespace vok::xlsx
