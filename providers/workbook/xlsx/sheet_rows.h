// The rows of a sheet that will not change any more: encoded as they come, and spooled.
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/in_order.h"
#include "providers/workbook/xlsx/row_encoder.h"
#include "providers/workbook/xlsx/spool.h"
#include "providers/workbook/xlsx/zip_writer.h"

namespace vok::xlsx {

/// What is known of the rows so far.
struct RowTotals {
  PartSize size;
  std::vector<ColumnExtent> columns;  ///< of the sheet, from the first
};

/// Encoders for as many threads as work at once.
class RowEncoders {
 public:
  EncodedRows Encode(const CellBlock& cells, const RowPlace& place);

 private:
  std::mutex mutex_;
  std::vector<std::unique_ptr<RowEncoder>> free_;
};

class SheetRows {
 public:
  /// `path` is the workbook's, `threads` how many may work on it.
  SheetRows(Files& files, const std::string& path, unsigned threads);

  /// The rows of the block, which stand below all that came before. Failures, also for blocks
  /// before this one, are those of the files port and of memory.
  void Add(CellBlock cells, RowPlace place);
  /// Waits until all is encoded. Failures as above.
  const RowTotals& Settle();
  const Spool& spool() const { return spool_; }

 private:
  void Take(const EncodedRows& rows);

  Spool spool_;
  RowTotals totals_;
  RowEncoders encoders_;
  OrderedWorks works_;  // goes first
};

}  // namespace vok::xlsx
