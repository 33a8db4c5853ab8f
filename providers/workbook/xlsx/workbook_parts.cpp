#include "providers/workbook/xlsx/workbook_parts.h"

#include <algorithm>
#include <iterator>

#include "providers/workbook/xlsx/text_rules.h"

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

uint32_t IdOf(std::string_view code, std::size_t index) {
  const auto found = std::find_if(std::begin(kBuiltIns), std::end(kBuiltIns),
                                  [&](const BuiltIn& known) { return known.code == code; });
  return found != std::end(kBuiltIns) ? found->id : kFirstOwnId + static_cast<uint32_t>(index);
}

void AppendOwnFormats(ByteBuffer& xml, const Workbook& workbook) {
  ByteBuffer own;
  std::size_t count = 0;
  for (std::size_t i = 0; i < workbook.formats.size(); ++i) {
    const uint32_t id = IdOf(workbook.formats[i], i);
    if (id < kFirstOwnId) continue;
    ++count;
    own << "<numFmt numFmtId=\"" << std::to_string(id) << "\" formatCode=\"";
    AppendXmlText(own, workbook.formats[i]);
    own << "\"/>";
  }
  if (count == 0) return;
  xml << "<numFmts count=\"" << std::to_string(count) << "\">" << own.View() << "</numFmts>";
}

constexpr std::string_view kDeclaration =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";
constexpr std::string_view kPackage = "http://schemas.openxmlformats.org/package/2006/";
constexpr std::string_view kOffice = "http://schemas.openxmlformats.org/officeDocument/2006/";
constexpr std::string_view kMain = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
constexpr std::string_view kType = "application/vnd.openxmlformats-officedocument.";

void AppendRelation(ByteBuffer& xml, std::size_t id, std::string_view kind,
                    std::string_view target) {
  xml << "<Relationship Id=\"rId" << std::to_string(id) << "\" Type=\"" << kOffice
      << "relationships/" << kind << "\" Target=\"" << target << "\"/>";
}

void AppendType(ByteBuffer& xml, std::string_view name, std::string_view type) {
  xml << "<Override PartName=\"/" << name << "\" ContentType=\"" << kType << type << "+xml\"/>";
}

/// A part's name as the relationships of the workbook part have it.
std::string_view BesideWorkbook(std::string_view name) {
  return name.substr(std::string_view("xl/").size());
}

}  // namespace

void AppendStyles(ByteBuffer& xml, const Workbook& workbook) {
  xml << "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
         "<styleSheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">";
  AppendOwnFormats(xml, workbook);
  xml << "<fonts count=\"1\"><font><sz val=\"11\"/><name val=\"Calibri\"/><family "
         "val=\"2\"/></font>"
         "</fonts><fills count=\"2\"><fill><patternFill patternType=\"none\"/></fill>"
         "<fill><patternFill patternType=\"gray125\"/></fill></fills>"
         "<borders count=\"1\"><border><left/><right/><top/><bottom/><diagonal/></border></borders>"
         "<cellStyleXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\"/>"
         "</cellStyleXfs><cellXfs count=\""
      << std::to_string(workbook.formats.size()) << "\">";
  for (std::size_t i = 0; i < workbook.formats.size(); ++i) {
    xml << "<xf numFmtId=\"" << std::to_string(IdOf(workbook.formats[i], i))
        << "\" fontId=\"0\" fillId=\"0\" borderId=\"0\" xfId=\"0\""
        << (i == 0 ? "/>" : " applyNumberFormat=\"1\"/>");
  }
  xml << "</cellXfs><cellStyles count=\"1\"><cellStyle name=\"Normal\" xfId=\"0\" builtinId=\"0\"/>"
         "</cellStyles></styleSheet>";
}

void AppendContentTypes(ByteBuffer& xml) {
  xml << kDeclaration << "<Types xmlns=\"" << kPackage << "content-types\">"
      << "<Default Extension=\"rels\" ContentType=\"application/vnd.openxmlformats-package."
         "relationships+xml\"/><Default Extension=\"xml\" ContentType=\"application/xml\"/>";
  AppendType(xml, part::kWorkbook, "spreadsheetml.sheet.main");
  AppendType(xml, part::kSheet, "spreadsheetml.worksheet");
  AppendType(xml, part::kSharedTexts, "spreadsheetml.sharedStrings");
  AppendType(xml, part::kStyles, "spreadsheetml.styles");
  AppendType(xml, part::kApplication, "extended-properties");
  xml << "</Types>";
}

void AppendRelations(ByteBuffer& xml) {
  xml << kDeclaration << "<Relationships xmlns=\"" << kPackage << "relationships\">";
  AppendRelation(xml, 1, "officeDocument", part::kWorkbook);
  AppendRelation(xml, 2, "extended-properties", part::kApplication);
  xml << "</Relationships>";
}

void AppendApplication(ByteBuffer& xml) {
  xml << kDeclaration << "<Properties xmlns=\"" << kOffice
      << "extended-properties\"><Application>VokCubeQ17</Application></Properties>";
}

void AppendWorkbookXml(ByteBuffer& xml, const Workbook& workbook) {
  xml << kDeclaration << "<workbook xmlns=\"" << kMain << "\" xmlns:r=\"" << kOffice
      << "relationships\"><sheets><sheet name=\"";
  AppendXmlText(xml, workbook.sheet_name);
  xml << "\" sheetId=\"1\" r:id=\"rId1\"/></sheets></workbook>";
}

void AppendWorkbookRelations(ByteBuffer& xml) {
  xml << kDeclaration << "<Relationships xmlns=\"" << kPackage << "relationships\">";
  AppendRelation(xml, 1, "worksheet", BesideWorkbook(part::kSheet));
  AppendRelation(xml, 2, "styles", BesideWorkbook(part::kStyles));
  AppendRelation(xml, 3, "sharedStrings", BesideWorkbook(part::kSharedTexts));
  xml << "</Relationships>";
}

}  // namespace vok::xlsx
