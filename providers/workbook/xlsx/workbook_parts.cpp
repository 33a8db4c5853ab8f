#include "providers/workbook/xlsx/workbook_parts.h"

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

}  // namespace

std::string part::Sheet(std::size_t index) {
  return "xl/worksheets/sheet" + std::to_string(index + 1) + ".xml";
}

void AppendContentTypes(ByteBuffer& xml, std::size_t sheets) {
  xml << kDeclaration << "<Types xmlns=\"" << kPackage << "content-types\">"
      << "<Default Extension=\"rels\" ContentType=\"application/vnd.openxmlformats-package."
         "relationships+xml\"/><Default Extension=\"xml\" ContentType=\"application/xml\"/>";
  AppendType(xml, part::kWorkbook, "spreadsheetml.sheet.main");
  for (std::size_t i = 0; i < sheets; ++i) {
    AppendType(xml, part::Sheet(i), "spreadsheetml.worksheet");
  }
  AppendType(xml, part::kStyles, "spreadsheetml.styles");
  AppendType(xml, part::kSharedStrings, "spreadsheetml.sharedStrings");
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
      << "relationships\"><bookViews><workbookView activeTab=\"" << std::to_string(workbook.active)
      << "\"/></bookViews><sheets>";
  for (std::size_t i = 0; i < workbook.sheets.size(); ++i) {
    const std::string number = std::to_string(i + 1);
    xml << "<sheet name=\"";
    AppendXmlText(xml, workbook.sheets[i].name);
    xml << "\" sheetId=\"" << number << "\" r:id=\"rId" << number << "\"/>";
  }
  xml << "</sheets></workbook>";
}

void AppendWorkbookRelations(ByteBuffer& xml, std::size_t sheets) {
  xml << kDeclaration << "<Relationships xmlns=\"" << kPackage << "relationships\">";
  for (std::size_t i = 0; i < sheets; ++i) {
    AppendRelation(xml, i + 1, "worksheet", BesideWorkbook(part::Sheet(i)));
  }
  AppendRelation(xml, sheets + 1, "styles", BesideWorkbook(part::kStyles));
  AppendRelation(xml, sheets + 2, "sharedStrings", BesideWorkbook(part::kSharedStrings));
  xml << "</Relationships>";
}

}  // namespace vok::xlsx
