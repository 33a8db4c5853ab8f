#include "providers/workbook/xlsx/workbook_parts.h"

#include <string>

#include "providers/workbook/xlsx/cell_reference.h"
#include "providers/workbook/xlsx/text_rules.h"

namespace vok::xlsx {
namespace {

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

/// The captions and the labels stand on each page.
void AppendPrintTitles(ByteBuffer& xml, const Workbook& workbook) {
  std::string sheet;  // in apostrophes, with its own doubled
  for (const char c : workbook.sheet_name) sheet += c == '\'' ? "''" : std::string(1, c);
  xml << "<definedNames><definedName name=\"_xlnm.Print_Titles\" localSheetId=\"0\">'";
  AppendXmlText(xml, sheet);
  xml << "'!$A:$" << ColumnName(static_cast<uint32_t>(workbook.look.captions)) << ",'";
  AppendXmlText(xml, sheet);
  xml << "'!$1:$1</definedName></definedNames>";
}

}  // namespace

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
  xml << "\" sheetId=\"1\" r:id=\"rId1\"/></sheets>";
  if (workbook.look.captions > 0) AppendPrintTitles(xml, workbook);
  xml << "</workbook>";
}

void AppendWorkbookRelations(ByteBuffer& xml) {
  xml << kDeclaration << "<Relationships xmlns=\"" << kPackage << "relationships\">";
  AppendRelation(xml, 1, "worksheet", BesideWorkbook(part::kSheet));
  AppendRelation(xml, 2, "styles", BesideWorkbook(part::kStyles));
  AppendRelation(xml, 3, "sharedStrings", BesideWorkbook(part::kSharedTexts));
  xml << "</Relationships>";
}

}  // namespace vok::xlsx
