#include <algorithm>
#include <cmath>
#include <string>

#include "platform/text.h"
#include "providers/workbook/xlsx/cell_reference.h"
#include "providers/workbook/xlsx/text_rules.h"
#include "providers/workbook/xlsx/workbook_parts.h"

namespace vok::xlsx {
namespace {

/// Widths in characters.
constexpr uint32_t kNarrowest = 9;
constexpr uint32_t kWidest = 60;
constexpr uint32_t kMargin = 2;
constexpr uint32_t kNumberWidth = 11;
/// Of captions, which stay in sight beside the numbers.
constexpr uint32_t kNarrowestCaption = 3;
constexpr uint32_t kWidestCaption = 24;

struct Column {
  uint16_t format = 0;
  uint32_t width = 0;  ///< in characters; 0: the program's own
  friend bool operator==(const Column&, const Column&) = default;
};

bool IsKnown(const Column& column) { return column.width != 0; }

/// Of the longest number, in groups of three digits, with decimals and a sign.
uint32_t NumberWidth(const ColumnExtent& extent, bool has_look) {
  if (extent.highest == 0 && extent.lowest == 0) return 0;
  constexpr uint32_t kDecimalsAndSign = 5, kGroup = 3, kMostDigits = 15;
  const double largest = std::max(extent.highest, -extent.lowest);
  if (!has_look || largest < 1) return kNumberWidth;
  const uint32_t digits = std::min(static_cast<uint32_t>(std::log10(largest)) + 1, kMostDigits);
  return digits + (digits - 1) / kGroup + kDecimalsAndSign;
}

/// Labels are bold, whose letters are wider by a fifth.
std::size_t BoldWidth(std::string_view text) {
  const std::size_t units = Utf16Length(text);
  return units + (units + 4) / 5;
}

/// Takes the first word with the blanks after it.
std::string_view TakeWord(std::string_view& text) {
  const std::size_t end = std::min(text.find_first_not_of(' ', text.find(' ')), text.size());
  const std::string_view word = text.substr(0, end);
  text.remove_prefix(end);
  return word;
}

/// So much that no word of the label is broken unless it is long.
uint32_t LabelWidth(const Workbook& workbook, std::size_t column) {
  constexpr std::size_t kMost = 16;
  const auto label = workbook.first_row.find(column);
  if (label == workbook.first_row.end()) return 0;
  const std::string whole = label->second.ToText();
  std::size_t longest = 0;
  for (std::string_view text = whole; !text.empty();) {
    longest = std::max(longest, BoldWidth(TrimBlanks(TakeWord(text))));
  }
  return static_cast<uint32_t>(std::min(longest, kMost));
}

/// Gives a width to the columns that have contents or a format.
std::vector<Column> FitColumns(const Workbook& workbook, const std::vector<ColumnExtent>& extents) {
  const std::vector<uint16_t>& styles = *workbook.styles;
  const std::size_t captions = workbook.look.captions;
  std::vector<Column> columns(std::max(styles.size(), extents.size()));
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (i < styles.size()) columns[i].format = styles[i];
    const ColumnExtent extent = i < extents.size() ? extents[i] : ColumnExtent();
    const uint32_t width = std::max(extent.text, NumberWidth(extent, captions > 0));
    if (i < captions) {
      columns[i].width = std::clamp(width + 1, kNarrowestCaption, kWidestCaption);
    } else if (width > 0 || columns[i].format != 0) {
      const uint32_t of_label = captions > 0 ? LabelWidth(workbook, i + 1) : 0;
      columns[i].width = std::clamp(std::max(width, of_label) + kMargin, kNarrowest, kWidest);
    }
  }
  return columns;
}

void AppendColumn(ByteBuffer& xml, std::size_t first, std::size_t end, const Column& column) {
  xml << "<col min=\"" << std::to_string(first + 1) << "\" max=\"" << std::to_string(end)
      << "\" width=\"" << std::to_string(column.width);
  if (column.format != 0) xml << "\" style=\"" << std::to_string(column.format);
  xml << "\" bestFit=\"1\" customWidth=\"1\"/>";
}

void AppendColumns(ByteBuffer& xml, const std::vector<Column>& columns) {
  if (std::none_of(columns.begin(), columns.end(), IsKnown)) return;
  xml << "<cols>";
  for (std::size_t first = 0; first < columns.size();) {
    std::size_t end = first + 1;
    while (end < columns.size() && columns[end] == columns[first]) ++end;
    if (IsKnown(columns[first])) AppendColumn(xml, first, end, columns[first]);
    first = end;
  }
  xml << "</cols>";
}

/// Row 1 and the captions stay in sight.
void AppendView(ByteBuffer& xml, const WorkbookLook& look) {
  xml << "<sheetViews><sheetView " << (look.right_to_left ? "rightToLeft=\"1\" " : "")
      << "tabSelected=\"1\" workbookViewId=\"0\"";
  if (look.captions == 0) {
    xml << "/></sheetViews>";
    return;
  }
  xml << "><pane xSplit=\"" << std::to_string(look.captions) << "\" ySplit=\"1\" topLeftCell=\""
      << CellName(2, look.captions + 1)
      << "\" activePane=\"bottomRight\" state=\"frozen\"/><selection pane=\"bottomRight\"/>"
         "</sheetView></sheetViews>";
}

/// How many lines a label takes that is broken at its blanks, and within longer words.
unsigned LinesOf(std::string_view text, std::size_t width) {
  unsigned lines = 1;
  std::size_t used = 0;
  while (!text.empty()) {
    const std::size_t word = BoldWidth(TakeWord(text));
    if (used > 0 && used + word > width + 1) {
      ++lines;
      used = 0;
    }
    for (used += word; used > width + 1; used -= width) ++lines;
  }
  return lines;
}

/// What a footer shows of a text: "&" begins an instruction there, and 255 characters are too many.
std::string FooterText(std::string_view text) {
  constexpr std::size_t kMost = 100;
  std::string shown;
  for (const char c : Utf16Prefix(text, kMost)) shown += c == '&' ? "&&" : std::string(1, c);
  return shown;
}

}  // namespace

void AppendSheetHead(ByteBuffer& xml, const Workbook& workbook,
                     const std::vector<ColumnExtent>& extents) {
  xml << "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
         "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">";
  if (workbook.look.captions > 0) xml << "<sheetPr><pageSetUpPr fitToPage=\"1\"/></sheetPr>";
  xml << "<dimension ref=\"A1:"
      << CellName(workbook.last_row,
                  std::max({extents.size(), workbook.LookColumns(), std::size_t{1}}))
      << "\"/>";
  AppendView(xml, workbook.look);
  xml << "<sheetFormatPr defaultRowHeight=\"15\"/>";
  AppendColumns(xml, FitColumns(workbook, extents));
  xml << "<sheetData>";
}

unsigned LabelHeight(const Workbook& workbook) {
  constexpr unsigned kLineHeight = 15, kMostLines = 8;
  const std::vector<Column> columns = FitColumns(workbook, workbook.rows.columns);
  unsigned lines = 1;
  for (const auto& [column, label] : workbook.first_row) {
    const uint32_t width = column <= columns.size() ? columns[column - 1].width : kNarrowest;
    lines = std::max(lines, LinesOf(label.ToText(), width - 1));
  }
  return kLineHeight * std::min(lines, kMostLines);
}

void AppendSheetEnd(ByteBuffer& xml, const Workbook& workbook) {
  const WorkbookLook& look = workbook.look;
  xml << "</sheetData>";
  if (look.captions > 0) {
    xml << "<pageMargins left=\"0.4\" right=\"0.4\" top=\"0.4\" bottom=\"0.6\" header=\"0.3\" "
           "footer=\"0.3\"/><pageSetup paperSize=\""
        << (look.letter_paper ? "1" : "9")
        << "\" orientation=\"landscape\" fitToHeight=\"0\"/><headerFooter><oddFooter>";
    AppendXmlText(xml, "&L" + FooterText(ToUtf8(look.title)) + "&R&P / &N");
    xml << "</oddFooter></headerFooter><ignoredErrors><ignoredError sqref=\"A1:"
        << CellName(workbook.last_row, look.captions)
        << "\" numberStoredAsText=\"1\"/></ignoredErrors>";
  }
  xml << "</worksheet>";
}

}  // namespace vok::xlsx
