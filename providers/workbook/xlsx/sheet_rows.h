// The rows of a sheet that will not change any more: encoded as they come, and spooled.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/files.h"
#include "providers/workbook/xlsx/row_pool.h"
#include "providers/workbook/xlsx/spool.h"
#include "providers/workbook/xlsx/zip_writer.h"

namespace vok::xlsx {

/// What is known of the rows so far.
struct RowTotals {
  PartSize size;
  std::vector<ColumnExtent> columns;  ///< of the sheet, from the first
};

class SheetRows {
 public:
  /// `path` is the workbook's, `threads` how many may work on it.
  SheetRows(Files& files, const std::string& path, unsigned threads);

  /// The rows of the block, which stand below all that came before. Failures, also for blocks
  /// before this one, are those of the files port and of memory.
  void Add(CellBlock cells, const RowPlace& place) { pool_.Add(std::move(cells), place); }
  /// Waits until all is encoded. Failures as above.
  const RowTotals& Settle();
  const Spool& spool() const { return spool_; }

 private:
  void Take(const EncodedRows& rows);

  Spool spool_;
  RowTotals totals_;
  RowPool pool_;
};

}  // namespace vok::xlsx
