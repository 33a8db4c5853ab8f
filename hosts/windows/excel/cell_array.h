// A block of cells as the spreadsheet program takes it.
#pragma once

#include "hosts/windows/automation/variant.h"
#include "platform/spreadsheet.h"

namespace vok::windows {

/// An array of VARIANTs with two dimensions counted from 1, rows first.
Variant CellArray(const CellBlock& block);

}  // namespace vok::windows
