// A block of cells as the spreadsheet program takes it.
#pragma once

#include "platform/spreadsheet.h"
#include "system/automation/variant.h"

namespace vok::windows {

/// An array of VARIANTs with two dimensions counted from 1, rows first.
Variant CellArray(const CellBlock& block);

}  // namespace vok::windows
