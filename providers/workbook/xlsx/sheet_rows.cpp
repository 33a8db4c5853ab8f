#include "providers/workbook/xlsx/sheet_rows.h"

#include <algorithm>

namespace vok::xlsx {

SheetRows::SheetRows(Files& files, const std::string& path, unsigned threads)
    : spool_(files, path), pool_([this](const EncodedRows& rows) { Take(rows); }, threads) {}

void SheetRows::Take(const EncodedRows& rows) {
  spool_.Append(rows.piece.bytes.View());
  totals_.size.Add(rows.piece);
  TakeExtents(rows.columns, totals_.columns);
}

const RowTotals& SheetRows::Settle() {
  pool_.Finish();
  return totals_;
}

}  // namespace vok::xlsx
