// Rows of cells as the sheet's part holds them: XML, compressed in the same pass.
//
// A cell that follows another does not tell its place: the format allows that, and the places would
// be a third of the size. A short gap is made of blank cells; only after a long one a cell names
// its place.
#pragma once

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
  /// What a mark ends or begins: each cell by its style and what it holds.
  enum Side : std::size_t { kNothing, kRow, kPlace, kFirstCell };

  void AddRow(const CellBlock& cells, std::size_t row, const RowPlace& place);
  void AddCell(std::size_t column, const BlockCell& cell, std::string_view text, uint16_t style);
  void AddText(std::string_view text);
  /// Whether the cell shows a text of the table; then it is added.
  bool AddShared(std::size_t row, std::size_t column, uint16_t style, const RowPlace& place);
  static std::size_t SideOf(uint16_t style, std::size_t contents);
  void MarkTo(std::size_t side);
  std::string MarkBytes(std::size_t from, std::size_t to) const;

  DeflateBlock block_;
  std::vector<Repeated> marks_;  // sides_ times sides_, made when they are first used
  std::size_t sides_ = 0;
  std::size_t side_ = kNothing;  // where the last mark came to
  std::size_t shared_ = 0;       // the next cell of `RowPlace::shared`
  std::string clean_;
  ByteBuffer escaped_;
  std::vector<ColumnExtent> extents_;
};

}  // namespace vok::xlsx
