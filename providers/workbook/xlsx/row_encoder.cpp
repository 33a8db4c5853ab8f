#include "providers/workbook/xlsx/row_encoder.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "platform/text.h"
#include "platform/utf8.h"
#include "providers/workbook/xlsx/cell_reference.h"
#include "providers/workbook/xlsx/checksum.h"
#include "providers/workbook/xlsx/number_text.h"
#include "providers/workbook/xlsx/text_rules.h"

namespace vok::xlsx {
namespace {

/// What a cell of a style can hold.
enum Contents : std::size_t { kNumber, kText, kKeptText, kSharedText, kBlank, kContents };

constexpr std::string_view kOpenings[] = {"><v>", " t=\"inlineStr\"><is><t>",
                                          " t=\"inlineStr\"><is><t xml:space=\"preserve\">",
                                          " t=\"s\"><v>", "/>"};
constexpr std::string_view kEndings[] = {"</v></c>", "</t></is></c>", "</t></is></c>", "</v></c>",
                                         ""};

uint16_t StyleOf(const std::vector<uint16_t>& styles, std::size_t column) {
  return column <= styles.size() ? styles[column - 1] : uint16_t{0};
}

std::size_t StylesIn(const ColumnStyles& styles) {
  if (styles == nullptr || styles->empty()) return 1;
  return *std::max_element(styles->begin(), styles->end()) + std::size_t{1};
}

/// A longer gap is cheaper told by the place of the next cell than by blank ones.
constexpr std::size_t kLongestGap = 6;

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

std::size_t RowEncoder::SideOf(uint16_t style, std::size_t contents) {
  return kFirstCell + style * kContents + contents;
}

std::string RowEncoder::MarkBytes(std::size_t from, std::size_t to) const {
  std::string mark(from >= kFirstCell ? kEndings[(from - kFirstCell) % kContents]
                   : from == kRow     ? "\">"
                   : from == kPlace   ? "\""
                                      : "");
  if (from >= kFirstCell && to <= kRow) mark += "</row>";
  if (to == kRow) return mark + "<row r=\"";
  if (to == kPlace) return mark + "<c r=\"";
  if (to == kNothing) return mark;
  if (from != kPlace) mark += "<c";
  const std::size_t style = (to - kFirstCell) / kContents;
  if (style != 0) mark += " s=\"" + std::to_string(style) + "\"";
  return mark.append(kOpenings[(to - kFirstCell) % kContents]);
}

void RowEncoder::MarkTo(std::size_t side) {
  Repeated& mark = marks_[side_ * sides_ + side];
  if (mark.bytes.empty()) mark.bytes = MarkBytes(side_, side);
  block_.Add(mark);
  side_ = side;
}

void RowEncoder::AddText(std::string_view text) {
  if (IsPlain(text)) return block_.AddText(text);
  escaped_.Resize(0);
  AppendXmlText(escaped_, text);
  block_.AddText(escaped_.View());
}

void RowEncoder::AddCell(std::size_t column, const BlockCell& cell, std::string_view text,
                         uint16_t style) {
  if (cell.IsBlank()) return MarkTo(SideOf(style, kBlank));
  ColumnExtent& extent = extents_[column - 1];
  if (cell.kind == BlockCell::Kind::kNumber) {
    char digits[kLongestNumber];
    const char* end = PutNumber(digits, cell.number);
    MarkTo(SideOf(style, kNumber));
    block_.AddNew({digits, end});
    extent.Take({0, cell.number, cell.number, cell.number != std::nearbyint(cell.number)});
    return;
  }
  if (!IsUtf8(text)) {
    clean_ = ToUtf8(text);
    text = clean_;
  }
  MarkTo(SideOf(style, NeedsPreserve(text) ? kKeptText : kText));
  AddText(text);
  extent.text = std::max(extent.text, static_cast<uint32_t>(LongestLine(text)));
}

bool RowEncoder::AddShared(std::size_t row, std::size_t column, uint16_t style,
                           const RowPlace& place) {
  if (shared_ == place.shared.size()) return false;
  const SharedCell& cell = place.shared[shared_];
  if (cell.row != row || cell.column != column) return false;
  MarkTo(SideOf(style, kSharedText));
  block_.AddNew(std::to_string(cell.text));
  ++shared_;
  return true;
}

void RowEncoder::AddRow(const CellBlock& cells, std::size_t row, const RowPlace& place) {
  char digits[kLongestNumber];
  const std::size_t number = place.row + row - 1;
  const std::string_view number_text(digits,
                                     std::to_chars(digits, digits + kLongestNumber, number).ptr);
  const BlockCell* first = cells.Row(row);
  const bool whole = row == 1 && place.of_first != nullptr;
  const std::vector<uint16_t>& styles = whole ? *place.of_first : *place.styles;
  std::size_t next = 0;  // the column that a cell without a place stands in; 0: there is no row yet
  for (std::size_t i = 0; i < cells.columns(); ++i) {
    const BlockCell& cell = first[i];
    if (cell.IsBlank() && !(whole && next > 0)) continue;
    if (next == 0) {
      MarkTo(kRow);
      block_.AddNew(number_text);
      if (place.height > 0) {
        block_.AddNew("\" ht=\"" + std::to_string(place.height) + "\" customHeight=\"1");
      }
      next = 1;
    }
    const std::size_t column = place.column + i;
    const uint16_t style = StyleOf(styles, column);
    if (column - next > kLongestGap) {
      MarkTo(kPlace);
      block_.AddNew(ColumnName(static_cast<uint32_t>(column)));
      block_.AddNew(number_text);
    } else {
      for (; next < column; ++next) MarkTo(SideOf(StyleOf(styles, next), kBlank));
    }
    next = column + 1;
    if (AddShared(row, i + 1, style, place)) continue;
    const bool is_text = cell.kind == BlockCell::Kind::kText;
    AddCell(column, cell, is_text ? cells.Text(cell) : std::string_view(), style);
  }
}

EncodedRows RowEncoder::Encode(const CellBlock& cells, const RowPlace& place) {
  const std::size_t styles = std::max(StylesIn(place.styles), StylesIn(place.of_first));
  if (sides_ != kFirstCell + styles * kContents) {
    sides_ = kFirstCell + styles * kContents;
    marks_.assign(sides_ * sides_, {});
  }
  shared_ = 0;
  extents_.assign(place.column - 1 + cells.columns(), {});
  for (std::size_t row = 1; row <= cells.rows(); ++row) AddRow(cells, row, place);
  if (side_ != kNothing) MarkTo(kNothing);
  return {Packed(block_, false), std::move(extents_)};
}

}  // namespace vok::xlsx
