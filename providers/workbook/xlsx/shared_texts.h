// The texts that stand in a table instead of their cells: those with what looks like an escape of
// the format's. Some readers undo escapes in the table alone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/spreadsheet.h"
#include "providers/workbook/xlsx/byte_buffer.h"

namespace vok::xlsx {

/// A cell of a block that shows a text of the table.
struct SharedCell {
  std::size_t row = 0;  ///< as `column` counted from 1 within the block
  std::size_t column = 0;
  uint32_t text = 0;
};

class SharedTexts {
 public:
  /// Takes such texts of the block into the table. Where that is full they stay in their cells.
  std::vector<SharedCell> Share(const CellBlock& block);
  void AppendTo(ByteBuffer& xml) const;

 private:
  static constexpr std::size_t kMostTexts = 10'000;
  static constexpr std::size_t kMostBytes = std::size_t{4} << 20;

  std::map<std::string, uint32_t, std::less<>> numbers_;
  std::vector<std::string> texts_;
  std::size_t bytes_ = 0;
  uint64_t uses_ = 0;
};

}  // namespace vok::xlsx
