#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>

#include "providers/xlsx/sheet_scanner.h"
#include "providers/xlsx/sheet_xml.h"
#include "providers/xlsx/text_rules.h"

namespace vok::xlsx {
namespace {

constexpr double kMaxWidth = 255;
constexpr std::size_t kMaxValueBytes = kMaxTextUnits * 7;

/// Elements outside the cells that say nothing a save would lose: what can be computed again, and
/// the state of the view.
constexpr std::array<std::string_view, 15> kHarmless = {
    "worksheet",   "sheetPr",    "outlinePr",     "pageSetUpPr",   "dimension",
    "sheetViews",  "sheetView",  "selection",     "sheetFormatPr", "cols",
    "pageMargins", "phoneticPr", "ignoredErrors", "ignoredError",  "sheetData"};

std::optional<double> ParseNumber(std::string_view text) {
  double number = 0;
  const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool whole = parsed.ec == std::errc() && parsed.ptr == text.data() + text.size();
  return whole && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::string CellAt(uint32_t row, uint32_t column) { return "cell " + CellName(row, column); }

class SheetReader : public xml::Handler {
 public:
  SheetReader(const SheetTables& tables, TextPool& pool, Sheet& sheet, PartContext& context)
      : tables_(tables), pool_(pool), sheet_(sheet), context_(context) {}

  void Start(std::string_view name, const xml::Attributes& attributes) override {
    if (!in_data_) return StartOutside(name, attributes);
    if (name == "c") return StartCell(attributes);
    if (name == "v") {
      value_.clear();
      in_value_ = true;
    } else if (name == "row") {
      StartRow(attributes);
    } else if (name == "is") {
      item_.Begin();
      in_item_ = true;
    } else if (in_item_) {
      item_.Start(name, context_);
    } else {
      context_.LoseElement(name);
    }
  }

  void End(std::string_view name) override {
    if (!in_data_) return;
    if (name == "v") {
      in_value_ = false;
    } else if (name == "c") {
      EndCell();
    } else if (name == "is") {
      in_item_ = false;
    } else if (name == "sheetData") {
      in_data_ = false;
    } else if (in_item_) {
      item_.End(name);
    }
  }

  void Characters(std::string_view characters) override {
    if (in_value_) {
      value_ += characters;
      if (value_.size() > kMaxValueBytes) Fail("is longer than a cell can hold");
    } else if (in_item_) {
      item_.Characters(characters, context_);
    }
  }

 private:
  [[noreturn]] void Fail(const std::string& why) const {
    context_.Fail(CellAt(row_, column_) + " " + why);
  }

  void StartOutside(std::string_view name, const xml::Attributes& attributes) {
    if (name == "sheetData") {
      in_data_ = true;
    } else if (name == "col") {
      AddColumns(attributes);
    } else if (std::find(kHarmless.begin(), kHarmless.end(), name) == kHarmless.end()) {
      context_.LoseElement(name);
    }
    if (name == "sheetView" && attributes.IsTrue("rightToLeft")) {
      context_.Lose("view from right to left");
    }
  }

  void AddColumns(const xml::Attributes& attributes) {
    const auto count = [&](std::string_view name, uint32_t most) {
      return context_.Count(name, attributes.Get(name), 0, most);
    };
    const ColumnRange range{count("min", kMaxColumns), count("max", kMaxColumns)};
    if (range.first == 0 || range.last < range.first) context_.Fail("a column range is damaged");
    Column column;
    column.format = FormatOf(attributes.Get("style"));
    if (!attributes.IsTrue("bestFit") && attributes.IsTrue("customWidth")) {
      const auto width = ParseNumber(attributes.Get("width"));
      if (!width || *width < 0 || *width > kMaxWidth) context_.Fail("a column has no proper width");
      column.width = *width;
    }
    if (attributes.IsTrue("hidden")) context_.Lose("hidden columns");
    if (count("outlineLevel", 7) != 0) context_.Lose("grouped columns");
    sheet_.SetColumns(range, column);
  }

  void StartRow(const xml::Attributes& attributes) {
    if (in_cell_) Fail("holds a row");
    const uint32_t row = context_.Count("r", attributes.Get("r"), row_ + 1, kMaxRows);
    if (row <= row_) context_.Fail("row " + std::to_string(row) + " is not in its place");
    if (row > kMaxRows) context_.Fail("there are more rows than a sheet has");
    row_ = row;
    column_ = 0;
    if (attributes.IsTrue("hidden")) context_.Lose("hidden rows");
    if (attributes.IsTrue("customHeight")) context_.Lose("heights of rows");
    if (attributes.IsTrue("customFormat")) context_.Lose("formats of whole rows");
    if (context_.Count("outlineLevel", attributes.Get("outlineLevel"), 0, 7) != 0) {
      context_.Lose("grouped rows");
    }
  }

  void StartCell(const xml::Attributes& attributes) {
    if (in_cell_) Fail("holds another cell");
    in_cell_ = true;
    std::string_view place;
    std::string_view format;
    type_.clear();
    value_.clear();
    item_.Begin();
    attributes.ForEach([&](xml::Name name, const char* value) {
      if (name.local == "r") place = value;
      if (name.local == "s") format = value;
      if (name.local == "t") type_ = value;
    });
    MoveTo(place);
    format_ = FormatOf(format);
  }

  void MoveTo(std::string_view place) {
    const uint32_t previous = column_;
    CellPlace cell{row_, previous + 1};
    if (!place.empty()) {
      const auto parsed = ParseCell(place);
      if (!parsed) context_.Fail("there is no cell \"" + std::string(place.substr(0, 40)) + "\"");
      cell = *parsed;
    }
    if (cell.row != row_ || row_ == 0 || cell.column <= previous || cell.column > kMaxColumns) {
      context_.Fail(CellAt(cell.row, cell.column) + " is not in its place");
    }
    column_ = cell.column;
  }

  uint16_t FormatOf(std::string_view style) const {
    const uint32_t index = context_.Count("style", style, 0, 0xFFFF);
    if (index >= tables_.formats.size()) {
      context_.Fail("style " + std::string(style) + " is used but not there");
    }
    return tables_.formats[index];
  }

  uint32_t TextOfValue() {
    item_.Start("t", context_);
    item_.Characters(value_, context_);
    return item_.Finish(pool_, context_);
  }

  Cell Content() {
    if (type_ == "inlineStr") return Cell::Text(item_.Finish(pool_, context_));
    if (value_.empty()) return Cell();
    if (type_.empty() || type_ == "n") return Cell::Number(NumberOfValue());
    if (type_ == "s") return Cell::Text(SharedText());
    if (type_ == "b") return Cell::Boolean(NumberOfValue() != 0);
    if (type_ == "e") return Cell::Error(TextOfValue());
    if (type_ != "str") context_.Lose("cells of type " + type_);
    return Cell::Text(TextOfValue());
  }

  double NumberOfValue() const {
    const auto number = ParseNumber(value_);
    if (!number) Fail("is no number: \"" + value_.substr(0, 40) + "\"");
    return *number;
  }

  uint32_t SharedText() const {
    const uint32_t index = context_.Count("v", value_, 0, 0xFFFFFFFF);
    if (index >= tables_.texts.size()) Fail("has a text that is not there");
    return tables_.texts[index];
  }

  void EndCell() {
    in_cell_ = false;
    Cell cell = Content();
    if (cell.kind == CellKind::kText && pool_.At(cell.text).empty()) cell = Cell();
    cell.column = static_cast<uint16_t>(column_);
    cell.format = format_;
    if (cell.kind == CellKind::kBlank && format_ == sheet_.ColumnFormat(column_)) return;
    sheet_.AppendCell(row_, cell);
  }

  const SheetTables& tables_;
  TextPool& pool_;
  Sheet& sheet_;
  PartContext& context_;
  bool in_data_ = false;
  bool in_cell_ = false;
  bool in_value_ = false;
  bool in_item_ = false;
  uint32_t row_ = 0;
  uint32_t column_ = 0;
  uint16_t format_ = 0;
  std::string type_;
  std::string value_;
  StringItem item_;
};

}  // namespace

void ReadSheet(std::string_view xml, const SheetTables& tables, TextPool& pool, Sheet& sheet,
               PartContext& context) {
  const SheetPieces pieces = SplitSheet(xml);
  if (!pieces.rows.empty()) {
    const std::string frame = std::string(pieces.head).append(pieces.tail);
    SheetReader reader(tables, pool, sheet, context);
    context.Parse(frame, reader);
    if (ScanRows(pieces.rows, tables, pool, sheet)) return;
    sheet = Sheet(sheet.name);
  }
  SheetReader reader(tables, pool, sheet, context);
  context.Parse(xml, reader);
}

}  // namespace vok::xlsx
