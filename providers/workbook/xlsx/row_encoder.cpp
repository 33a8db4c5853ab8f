#include "providers/workbook/xlsx/row_encoder.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/text.h"
#include "platform/utf8.h"
#include "providers/workbook/xlsx/cell_reference.h"
#include "providers/workbook/xlsx/checksum.h"
#include "providers/workbook/xlsx/number_text.h"
#include "providers/workbook/xlsx/text_rules.h"

namespace vok::xlsx {
namespace {

/// From a cell's place to what it holds.
constexpr std::string_view kValueOpenings[] = {"\"><v>", "\" t=\"inlineStr\"><is><t>",
                                               "\" t=\"inlineStr\"><is><t xml:space=\"preserve\">",
                                               "\" t=\"s\"><v>", "\"/>"};
constexpr std::string_view kEndings[] = {"</v></c>", "</t></is></c>", "</t></is></c>", "</v></c>",
                                         ""};

uint16_t StyleOf(const std::vector<uint16_t>& styles, std::size_t column) {
  return column <= styles.size() ? styles[column - 1] : uint16_t{0};
}

constexpr std::size_t kMostWidth = 255;

std::size_t LongestLine(std::string_view text) {
  std::size_t longest = 0;
  while (longest < kMostWidth) {
    const std::size_t end = text.find('\n');
    longest = std::max(longest, Utf16Length(text.substr(0, end)));
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return std::min(longest, kMostWidth);
}

PackedPiece Packed(DeflateBlock& block, bool last) {
  PackedPiece piece;
  piece.expanded = block.Expanded().size();
  piece.checksum = Checksum(block.Expanded());
  block.Finish(last, piece.bytes);
  return piece;
}

}  // namespace

void ColumnExtent::Take(const ColumnExtent& other) {
  text = std::max(text, other.text);
  highest = std::max(highest, other.highest);
  lowest = std::min(lowest, other.lowest);
  has_fractions = has_fractions || other.has_fractions;
}

void TakeExtents(const std::vector<ColumnExtent>& columns, std::vector<ColumnExtent>& all) {
  all.resize(std::max(all.size(), columns.size()));
  for (std::size_t i = 0; i < columns.size(); ++i) all[i].Take(columns[i]);
}

PackedPiece Pack(std::string_view text, bool last) {
  DeflateBlock block;
  block.AddText(text);
  return Packed(block, last);
}

/// The mark from where the last one came, made when it is first used.
void RowEncoder::MarkTo(std::size_t to, std::string_view opening) {
  Repeated& mark = marks_[to * kSides + side_];
  if (mark.bytes.empty()) {
    mark.bytes = side_ >= kCell ? kEndings[side_ - kCell] : side_ == kRow ? "\">" : "";
    if (side_ >= kCell && to < kCell) mark.bytes += "</row>";
    mark.bytes += opening;
  }
  block_.Add(mark);
  side_ = to;
}

void RowEncoder::OpenRow(std::size_t row, unsigned height) {
  MarkTo(kRow, "<row r=\"");
  row_number_ = {std::to_string(row)};
  block_.Add(row_number_);
  if (height > 0) block_.AddNew("\" ht=\"" + std::to_string(height) + "\" customHeight=\"1");
}

void RowEncoder::OpenCell(std::size_t column, std::size_t contents) {
  MarkTo(kCell + first_mark_ + column - 1, cell_openings_[first_mark_ + column - 1]);
  block_.Add(row_number_);
  Repeated& value = values_[contents];
  if (value.bytes.empty()) value.bytes = kValueOpenings[contents];
  block_.Add(value);
  side_ = kCell + contents;
}

void RowEncoder::AddText(std::string_view text) {
  if (IsPlain(text)) return block_.AddText(text);
  escaped_.Resize(0);
  AppendXmlText(escaped_, text);
  block_.AddText(escaped_.View());
}

void RowEncoder::AddCell(std::size_t column, const BlockCell& cell, std::string_view text) {
  if (cell.IsBlank()) return OpenCell(column, kBlank);
  ColumnExtent& extent = extents_[column - 1];
  if (cell.kind == BlockCell::Kind::kNumber) {
    char digits[kLongestNumber];
    const char* end = PutNumber(digits, cell.number);
    OpenCell(column, kNumber);
    block_.AddNew({digits, end});
    extent.Take({0, cell.number, cell.number, cell.number != std::nearbyint(cell.number)});
    return;
  }
  if (!IsUtf8(text)) {
    clean_ = ToUtf8(text);
    text = clean_;
  }
  OpenCell(column, NeedsPreserve(text) ? kKeptText : kText);
  AddText(text);
  extent.text = std::max(extent.text, static_cast<uint32_t>(LongestLine(text)));
}

bool RowEncoder::AddShared(std::size_t row, std::size_t i, const RowPlace& place) {
  if (shared_ == place.shared.size()) return false;
  const SharedCell& cell = place.shared[shared_];
  if (cell.row != row || cell.column != i + 1) return false;
  OpenCell(place.column + i, kSharedText);
  block_.AddNew(std::to_string(cell.text));
  ++shared_;
  return true;
}

void RowEncoder::AddRow(const CellBlock& cells, std::size_t row, const RowPlace& place) {
  const BlockCell* first = cells.Row(row);
  const bool whole = row == 1 && place.of_first != nullptr;
  first_mark_ = whole ? extents_.size() : 0;
  bool is_open = false;
  for (std::size_t i = 0; i < cells.columns(); ++i) {
    const BlockCell& cell = first[i];
    if (cell.IsBlank() && !(whole && is_open)) continue;
    if (!std::exchange(is_open, true)) OpenRow(place.row + row - 1, place.height);
    const std::size_t column = place.column + i;
    if (AddShared(row, i, place)) continue;
    const bool is_text = cell.kind == BlockCell::Kind::kText;
    AddCell(column, cell, is_text ? cells.Text(cell) : std::string_view());
  }
}

/// Marks that lead to a cell name its column and style.
void RowEncoder::SetStyles(const RowPlace& place, std::size_t columns) {
  if (place.styles == styles_ && place.of_first == styles_of_first_ &&
      cell_openings_.size() == 2 * columns) {
    return;
  }
  styles_ = place.styles;
  styles_of_first_ = place.of_first;
  cell_openings_.clear();
  for (const ColumnStyles& styles : {styles_, styles_of_first_}) {
    for (std::size_t column = 1; column <= columns; ++column) {
      const uint16_t style = styles == nullptr ? uint16_t{0} : StyleOf(*styles, column);
      cell_openings_.push_back(style == 0 ? "<c r=\""
                                          : "<c s=\"" + std::to_string(style) + "\" r=\"");
      cell_openings_.back() += ColumnName(static_cast<uint32_t>(column));
    }
  }
  marks_.assign((kCell + cell_openings_.size()) * kSides, {});
}

EncodedRows RowEncoder::Encode(const CellBlock& cells, const RowPlace& place) {
  extents_.assign(place.column - 1 + cells.columns(), {});
  SetStyles(place, extents_.size());
  shared_ = 0;
  for (std::size_t row = 1; row <= cells.rows(); ++row) AddRow(cells, row, place);
  if (side_ != kNothing) MarkTo(kNothing, "");
  return {Packed(block_, false), std::move(extents_)};
}

}  // namespace vok::xlsx
