// A workbook in memory: what the format's files hold of what this system keeps.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "providers/xlsx/byte_buffer.h"
#include "providers/xlsx/sheet.h"
#include "providers/xlsx/text_pool.h"

namespace vok::xlsx {

struct Workbook {
  TextPool texts;
  std::vector<std::string> formats{"General"};  ///< number formats, "@" is text
  std::vector<Sheet> sheets;
  std::size_t active = 0;           ///< index into `sheets`
  std::vector<std::string> unkept;  ///< what the file had and a save of this would lose

  /// The index of the number format, added when it is new.
  uint16_t Format(std::string_view code);
};

/// The whole file. The same workbook gives the same bytes. Failure 1004 when a part grows beyond
/// what the format holds; `path` is for its text.
ByteBuffer WriteWorkbook(const Workbook& workbook, const std::string& path);

/// Failure 1004 for a file that is no workbook, damaged, encrypted or beyond the limits; its text
/// names `path` and the part.
Workbook ReadWorkbook(std::span<const std::byte> file, const std::string& path);

}  // namespace vok::xlsx
