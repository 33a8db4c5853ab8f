#include <algorithm>
#include <iterator>
#include <set>

#include "providers/workbook/xlsx/text_rules.h"
#include "providers/workbook/xlsx/workbook_parts.h"

namespace vok::xlsx {
namespace {

constexpr uint32_t kFirstOwnId = 164;

struct BuiltIn {
  uint32_t id;
  std::string_view code;
};

/// Number formats that every program knows by their number and shows as its language has them.
constexpr BuiltIn kBuiltIns[] = {
    {0, "General"},
    {1, "0"},
    {2, "0.00"},
    {3, "#,##0"},
    {4, "#,##0.00"},
    {9, "0%"},
    {10, "0.00%"},
    {11, "0.00E+00"},
    {12, "# ?/?"},
    {13, "# ?\?/?\?"},
    {14, "mm-dd-yy"},
    {15, "d-mmm-yy"},
    {16, "d-mmm"},
    {17, "mmm-yy"},
    {18, "h:mm AM/PM"},
    {19, "h:mm:ss AM/PM"},
    {20, "h:mm"},
    {21, "h:mm:ss"},
    {22, "m/d/yy h:mm"},
    {37, "#,##0 ;(#,##0)"},
    {38, "#,##0 ;[Red](#,##0)"},
    {39, "#,##0.00;(#,##0.00)"},
    {40, "#,##0.00;[Red](#,##0.00)"},
    {45, "mm:ss"},
    {46, "[h]:mm:ss"},
    {47, "mmss.0"},
    {48, "##0.0E+0"},
    {49, "@"},
};

/// The end of a format whose columns show no decimals when all their numbers are whole: else each
/// of them would end in a point.
constexpr std::string_view kOptionalDecimals = ".###";

/// The formats of the styles as the numbers need them.
std::vector<std::string> FittingFormats(const Workbook& workbook) {
  std::set<std::string> broken;
  for (std::size_t i = 0; i < std::min(workbook.rows.columns.size(), workbook.styles->size());
       ++i) {
    if (!workbook.rows.columns[i].has_fractions) continue;
    broken.insert(workbook.cell_styles[(*workbook.styles)[i]].format);
  }
  std::vector<std::string> formats;
  for (const CellStyle& style : workbook.cell_styles) {
    std::string& format = formats.emplace_back(style.format);
    if (broken.contains(format)) continue;
    for (std::size_t at; (at = format.find(kOptionalDecimals)) != format.npos;) {
      format.erase(at, kOptionalDecimals.size());
    }
  }
  return formats;
}

/// The number of a format, which is its own where it is not built in: that of its first style.
uint32_t IdOf(const std::vector<std::string>& formats, std::size_t style) {
  const std::string& code = formats[style];
  const auto known = std::find_if(std::begin(kBuiltIns), std::end(kBuiltIns),
                                  [&](const BuiltIn& built_in) { return built_in.code == code; });
  if (known != std::end(kBuiltIns)) return known->id;
  const auto first = std::find(formats.begin(), formats.end(), code);
  return kFirstOwnId + static_cast<uint32_t>(first - formats.begin());
}

void AppendOwnFormats(ByteBuffer& xml, const std::vector<std::string>& formats) {
  ByteBuffer own;
  std::size_t count = 0;
  for (std::size_t i = 0; i < formats.size(); ++i) {
    const uint32_t id = IdOf(formats, i);
    if (id != kFirstOwnId + i) continue;
    ++count;
    own << "<numFmt numFmtId=\"" << std::to_string(id) << "\" formatCode=\"";
    AppendXmlText(own, formats[i]);
    own << "\"/>";
  }
  if (count == 0) return;
  xml << "<numFmts count=\"" << std::to_string(count) << "\">" << own.View() << "</numFmts>";
}

void AppendStyle(ByteBuffer& xml, const CellStyle& style, uint32_t format) {
  xml << "<xf numFmtId=\"" << std::to_string(format) << "\" fontId=\"" << (style.label ? "1" : "0")
      << "\" fillId=\"" << (style.label ? "2" : "0") << "\" borderId=\""
      << (style.lined ? "1" : "0") << "\" xfId=\"0\"";
  if (format != 0) xml << " applyNumberFormat=\"1\"";
  if (style.lined) xml << " applyBorder=\"1\"";
  if (style.label) {
    xml << " applyFont=\"1\" applyFill=\"1\" applyAlignment=\"1\"><alignment horizontal=\"right\" "
           "vertical=\"center\" wrapText=\"1\"/></xf>";
  } else {
    xml << "/>";
  }
}

}  // namespace

void AppendStyles(ByteBuffer& xml, const Workbook& workbook) {
  const std::vector<std::string> formats = FittingFormats(workbook);
  xml << "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
         "<styleSheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">";
  AppendOwnFormats(xml, formats);
  xml << "<fonts count=\"2\"><font><sz val=\"11\"/><name val=\"Calibri\"/><family "
         "val=\"2\"/></font>"
         "<font><b/><sz val=\"11\"/><name val=\"Calibri\"/><family val=\"2\"/></font></fonts>"
         "<fills count=\"3\"><fill><patternFill patternType=\"none\"/></fill>"
         "<fill><patternFill patternType=\"gray125\"/></fill><fill><patternFill "
         "patternType=\"solid\"><fgColor rgb=\"FFE3EAF2\"/><bgColor indexed=\"64\"/></patternFill>"
         "</fill></fills><borders count=\"2\"><border><left/><right/><top/><bottom/><diagonal/>"
         "</border><border><left/><right/><top style=\"thin\"><color rgb=\"FF5B6B7B\"/></top>"
         "<bottom/><diagonal/></border></borders>"
         "<cellStyleXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\"/>"
         "</cellStyleXfs><cellXfs count=\""
      << std::to_string(formats.size()) << "\">";
  for (std::size_t i = 0; i < formats.size(); ++i) {
    AppendStyle(xml, workbook.cell_styles[i], IdOf(formats, i));
  }
  xml << "</cellXfs><cellStyles count=\"1\"><cellStyle name=\"Normal\" xfId=\"0\" builtinId=\"0\"/>"
         "</cellStyles></styleSheet>";
}

}  // namespace vok::xlsx
