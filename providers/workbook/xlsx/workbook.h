// A workbook in memory.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "providers/workbook/xlsx/byte_buffer.h"
#include "providers/workbook/xlsx/sheet.h"
#include "providers/workbook/xlsx/text_pool.h"

namespace vok::xlsx {

struct Workbook {
  TextPool texts;
  std::vector<std::string> formats{"General"};  ///< number formats, "@" is text
  std::vector<Sheet> sheets;
  std::size_t active = 0;  ///< index into `sheets`

  /// The index of the number format, added when it is new.
  uint16_t Format(std::string_view code);
};

/// The whole file. The same workbook gives the same bytes. Failure 1004 when a part grows beyond
/// what the format holds; `path` is for its text.
ByteBuffer WriteWorkbook(const Workbook& workbook, const std::string& path);

}  // namespace vok::xlsx
