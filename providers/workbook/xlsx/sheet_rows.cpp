#include "providers/workbook/xlsx/sheet_rows.h"

#include <utility>

namespace vok::xlsx {

EncodedRows RowEncoders::Encode(const CellBlock& cells, const RowPlace& place) {
  std::unique_ptr<RowEncoder> encoder;
  {
    const std::lock_guard lock(mutex_);
    if (!free_.empty()) {
      encoder = std::move(free_.back());
      free_.pop_back();
    }
  }
  if (encoder == nullptr) encoder = std::make_unique<RowEncoder>();
  EncodedRows rows = encoder->Encode(cells, place);
  const std::lock_guard lock(mutex_);
  free_.push_back(std::move(encoder));
  return rows;
}

SheetRows::SheetRows(Files& files, const std::string& path, unsigned threads)
    : spool_(files, path), works_(threads) {}

void SheetRows::Add(CellBlock cells, RowPlace place) {
  works_.Add([this, cells = std::move(cells), place = std::move(place)]() -> Taking {
    const auto rows = std::make_shared<const EncodedRows>(encoders_.Encode(cells, place));
    return [this, rows] { Take(*rows); };
  });
}

void SheetRows::Take(const EncodedRows& rows) {
  spool_.Append(rows.piece.bytes.View());
  totals_.size.Add(rows.piece);
  TakeExtents(rows.columns, totals_.columns);
}

const RowTotals& SheetRows::Settle() {
  works_.Finish();
  return totals_;
}

}  // namespace vok::xlsx
