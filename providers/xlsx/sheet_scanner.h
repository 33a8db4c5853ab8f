// The short way into a sheet that this system wrote itself: reopening a run's workbook to append to
// it takes a fraction of the time that the general way (sheet_xml.h) takes.
#pragma once

#include <string_view>

#include "providers/xlsx/sheet_xml.h"

namespace vok::xlsx {

/// A sheet part in three pieces: `head` and `tail` make a document of their own, without rows.
struct SheetPieces {
  std::string_view head;  ///< up to and with <sheetData>
  std::string_view rows;
  std::string_view tail;
};

/// All in `rows` is empty when the part does not look like one of our own.
SheetPieces SplitSheet(std::string_view xml);

/// Adds the cells to `sheet` if every byte of `rows` stands exactly where our own writer would have
/// put it. False for anything else, whatever it is; `sheet` then holds a part of the cells.
bool ScanRows(std::string_view rows, const SheetTables& tables, const TextPool& pool, Sheet& sheet);

}  // namespace vok::xlsx
