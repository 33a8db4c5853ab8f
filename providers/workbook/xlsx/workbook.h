// What is known of a workbook beside the rows that are encoded already, and how it becomes a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "platform/spreadsheet.h"
#include "platform/value.h"
#include "providers/workbook/xlsx/current_region.h"
#include "providers/workbook/xlsx/sheet_rows.h"

namespace vok::xlsx {

struct CellStyle {
  std::string format;  ///< of numbers, "@" is text
  bool label = false;  ///< of row 1, where the workbook has a look
  bool lined = false;  ///< with a line above
  friend bool operator==(const CellStyle&, const CellStyle&) = default;
};

/// It has one sheet. Row 1 stays as cells, since it may be written again; the others do not.
struct Workbook {
  WorkbookLook look;
  std::optional<int64_t> made;  ///< seconds since 1970, UTC
  std::vector<CellStyle> cell_styles{{"General"}};
  std::string sheet_name = "Sheet1";
  ColumnStyles styles = std::make_shared<std::vector<uint16_t>>();  ///< indexes into `cell_styles`
  std::map<std::size_t, Value> first_row;  ///< numbers and texts by their columns
  std::size_t last_row = 1;
  SharedTexts shared;  ///< those of the rows
  RowTotals rows;      ///< of the second row and those below, when it was saved
  CurrentRegion region;

  /// Its columns get the look's formats.
  void SetLook(const WorkbookLook& wanted);
  /// The index of the style, added when it is new.
  uint16_t Style(const CellStyle& style);
  /// The columns' styles with a line above.
  ColumnStyles LinedStyles();
  /// Of those that the look says something about.
  std::size_t LookColumns() const { return look.captions + look.formats.size(); }
};

/// Writes the whole file: `spool` begins with the rows of the workbook. The same workbook gives the
/// same bytes. Failures: 1004 when it grows beyond what the format holds, `path` is for its text;
/// else those of the file and the spool.
void WriteWorkbook(const Workbook& workbook, const Spool& spool, const std::string& path,
                   FileReplacement& file);

}  // namespace vok::xlsx
