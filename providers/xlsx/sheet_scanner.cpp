#include "providers/xlsx/sheet_scanner.h"

#include <charconv>
#include <cmath>

namespace vok::xlsx {
namespace {

constexpr std::string_view kOpen = "<sheetData>";
constexpr std::string_view kTail = "</sheetData></worksheet>";
constexpr std::string_view kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\" ";

class RowScanner {
 public:
  RowScanner(std::string_view rows, const SheetTables& tables, const TextPool& pool, Sheet& sheet)
      : rest_(rows), tables_(tables), pool_(pool), sheet_(sheet) {}

  bool Scan() {
    while (!rest_.empty()) {
      if (!ScanRow()) return false;
    }
    return true;
  }

 private:
  bool Take(std::string_view expected) {
    if (!rest_.starts_with(expected)) return false;
    rest_.remove_prefix(expected.size());
    return true;
  }

  template <typename Number>
  bool TakeNumber(Number& number) {
    const auto parsed = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
    if (parsed.ec != std::errc()) return false;
    rest_.remove_prefix(static_cast<std::size_t>(parsed.ptr - rest_.data()));
    return true;
  }

  bool ScanRow() {
    if (!Take("<row r=\"")) return false;
    const char* digits = rest_.data();
    const uint32_t previous = row_;
    if (!TakeNumber(row_) || row_ <= previous || row_ > kMaxRows) return false;
    row_name_ = {digits, static_cast<std::size_t>(rest_.data() - digits)};
    column_ = 0;
    if (!Take("\">")) return false;
    while (Take("<c r=\"")) {
      if (!ScanCell()) return false;
    }
    return Take("</row>");
  }

  bool ScanCell() {
    if (!TakeColumn() || !Take(row_name_) || !Take("\"")) return false;
    uint16_t style = 0;
    if (Take(" s=\"") && !(TakeNumber(style) && Take("\""))) return false;
    if (style >= tables_.formats.size()) return false;
    Cell cell;
    if (!(Take(" t=\"s\"><v>") ? TakeText(cell) : Take("><v>") && TakeAmount(cell))) return false;
    cell.column = column_;
    cell.format = tables_.formats[style];
    sheet_.AppendCell(row_, cell);
    return Take("</v></c>");
  }

  bool TakeColumn() {
    uint32_t column = 0;
    while (!rest_.empty() && rest_[0] >= 'A' && rest_[0] <= 'Z') {
      column = column * 26 + static_cast<uint32_t>(rest_[0] - 'A' + 1);
      if (column > kMaxColumns) return false;
      rest_.remove_prefix(1);
    }
    if (column <= column_) return false;
    column_ = static_cast<uint16_t>(column);
    return true;
  }

  bool TakeText(Cell& cell) {
    uint32_t index = 0;
    if (!TakeNumber(index) || index >= tables_.texts.size()) return false;
    cell = Cell::Text(tables_.texts[index]);
    return !pool_.At(cell.text).empty();
  }

  bool TakeAmount(Cell& cell) {
    double number = 0;
    if (!TakeNumber(number) || !std::isfinite(number)) return false;
    cell = Cell::Number(number);
    return true;
  }

  std::string_view rest_;
  const SheetTables& tables_;
  const TextPool& pool_;
  Sheet& sheet_;
  uint32_t row_ = 0;
  uint16_t column_ = 0;
  std::string_view row_name_;
};

}  // namespace

SheetPieces SplitSheet(std::string_view xml) {
  const std::size_t open = xml.find(kOpen);
  if (!xml.starts_with(kDeclaration) || !xml.ends_with(kTail) || open == std::string_view::npos) {
    return {xml, {}, {}};
  }
  const std::size_t begin = open + kOpen.size();
  const std::string_view head = xml.substr(0, begin);
  // A comment or CDATA section could hide where the rows really begin.
  if (head.find("<!") != std::string_view::npos) return {xml, {}, {}};
  return {head, xml.substr(begin, xml.size() - kTail.size() - begin), kTail};
}

bool ScanRows(std::string_view rows, const SheetTables& tables, const TextPool& pool,
              Sheet& sheet) {
  return RowScanner(rows, tables, pool, sheet).Scan();
}

}  // namespace vok::xlsx
