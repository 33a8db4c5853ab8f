// Rows of cells as the sheet's part holds them: XML, compressed in the same pass.
//
// Each cell tells its place, without which some programs fail. Its style stands before it, so that
// what comes again is in two runs: from the cell before to the name of the column, as in the row
// above, and from the number of the row to the value, as in the cell before.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spreadsheet.h"
#include "providers/workbook/xlsx/deflate_block.h"
#include "providers/workbook/xlsx/shared_texts.h"

namespace vok::xlsx {

/// What is wide in a column.
struct ColumnExtent {
  uint32_t text = 0;   ///< UTF-16 units of the longest line of a text, at most 255
  double highest = 0;  ///< numbers; 0 where there is none
  double lowest = 0;
  bool has_fractions = false;

  void Take(const ColumnExtent& other);
};

/// Columns from the first on; `all` grows where it has fewer.
void TakeExtents(const std::vector<ColumnExtent>& columns, std::vector<ColumnExtent>& all);

/// A piece of a part, compressed.
struct PackedPiece {
  ByteBuffer bytes;
  uint32_t checksum = 0;  ///< of what it expands to, and its size
  uint64_t expanded = 0;
};

/// Any text as a piece; `last`: it ends its part.
PackedPiece Pack(std::string_view text, bool last);

struct EncodedRows {
  PackedPiece piece;
  std::vector<ColumnExtent> columns;  ///< of the sheet, from the first
};

/// The styles of the sheet's columns from the first; those past its end have style 0.
using ColumnStyles = std::shared_ptr<const std::vector<uint16_t>>;

/// Where a block of cells stands.
struct RowPlace {
  std::size_t row = 1;
  std::size_t column = 1;
  ColumnStyles styles;
  std::vector<SharedCell> shared = {};  ///< row by row, from left to right
  unsigned height = 0;                  ///< of each row, in points; 0: the program's own
  ColumnStyles of_first = nullptr;      ///< of the first row, when it has others, to its end
};

/// Encodes for one thread. Texts are cleaned by the rules of text_rules.h.
class RowEncoder {
 public:
  /// The rows of a block as a piece of their own. Rows of blank cells are left out.
  EncodedRows Encode(const CellBlock& cells, const RowPlace& place);

 private:
  /// What a cell can hold.
  enum Contents : std::size_t { kNumber, kText, kKeptText, kSharedText, kBlank, kContents };
  /// Where a mark comes from: nothing, a row's number, or a cell by its contents. Where it leads:
  /// nothing, a row, or a cell by its opening.
  enum Side : std::size_t { kNothing, kRow, kCell, kSides = kCell + kContents };

  void SetStyles(const RowPlace& place, std::size_t columns);
  void AddRow(const CellBlock& cells, std::size_t row, const RowPlace& place);
  void OpenRow(std::size_t row, unsigned height);
  void AddCell(std::size_t column, const BlockCell& cell, std::string_view text);
  void OpenCell(std::size_t column, std::size_t contents);
  void AddText(std::string_view text);
  /// Whether cell `i` of the block's row shows a text of the table; then it is added.
  bool AddShared(std::size_t row, std::size_t i, const RowPlace& place);
  void MarkTo(std::size_t to, std::string_view opening);

  DeflateBlock block_;
  ColumnStyles styles_, styles_of_first_;   // those that the openings are made for
  std::vector<std::string> cell_openings_;  // by column, then by column in a first row
  std::vector<Repeated> marks_;             // those that lead to one side stand together
  std::array<Repeated, kContents> values_;
  Repeated row_number_;
  std::size_t first_mark_ = 0;   // of the row's openings
  std::size_t side_ = kNothing;  // where the last mark came to
  std::size_t shared_ = 0;       // the next cell of `RowPlace::shared`
  std::string clean_;
  ByteBuffer escaped_;
  std::vector<ColumnExtent> extents_;
};

}  // namespace vok::xlsx
