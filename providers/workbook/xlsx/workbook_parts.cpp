#include "providers/workbook/xlsx/workbook_parts.h"

#include <chrono>
#include <cstdio>
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
constexpr std::string_view kProgram = "VokCubeQ17";

void AppendRelation(ByteBuffer& xml, std::size_t id, std::string_view kind, std::string_view target,
                    std::string_view origin = kOffice) {
  xml << "<Relationship Id=\"rId" << std::to_string(id) << "\" Type=\"" << origin
      << "relationships/" << kind << "\" Target=\"" << target << "\"/>";
}

void AppendType(ByteBuffer& xml, std::string_view name, std::string_view type) {
  xml << "<Override PartName=\"/" << name << "\" ContentType=\"" << kType << type << "+xml\"/>";
}

/// A part's name as the relationships of the workbook part have it.
std::string_view BesideWorkbook(std::string_view name) {
  return name.substr(std::string_view("xl/").size());
}

/// "2024-12-31T23:59:59Z".
std::string MomentText(int64_t moment) {
  const std::chrono::sys_seconds seconds{std::chrono::seconds(moment)};
  const auto days = std::chrono::floor<std::chrono::days>(seconds);
  const std::chrono::year_month_day date(days);
  const std::chrono::hh_mm_ss time(seconds - days);
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                static_cast<int>(time.seconds().count()));
  return text;
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
  xml << "<Override PartName=\"/" << part::kCore
      << "\" ContentType=\"application/vnd.openxmlformats-package.core-properties+xml\"/></Types>";
}

void AppendRelations(ByteBuffer& xml) {
  xml << kDeclaration << "<Relationships xmlns=\"" << kPackage << "relationships\">";
  AppendRelation(xml, 1, "officeDocument", part::kWorkbook);
  AppendRelation(xml, 2, "extended-properties", part::kApplication);
  AppendRelation(xml, 3, "metadata/core-properties", part::kCore, kPackage);
  xml << "</Relationships>";
}

void AppendApplication(ByteBuffer& xml) {
  xml << kDeclaration << "<Properties xmlns=\"" << kOffice << "extended-properties\"><Application>"
      << kProgram << "</Application></Properties>";
}

void AppendCore(ByteBuffer& xml, const Workbook& workbook) {
  xml << kDeclaration << "<cp:coreProperties xmlns:cp=\"" << kPackage
      << "metadata/core-properties\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\" "
         "xmlns:dcterms=\"http://purl.org/dc/terms/\" "
         "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"><dc:title>";
  AppendXmlText(xml, ToUtf8(workbook.look.title));
  xml << "</dc:title><dc:creator>" << kProgram << "</dc:creator>";
  if (workbook.made) {
    xml << "<dcterms:created xsi:type=\"dcterms:W3CDTF\">" << MomentText(*workbook.made)
        << "</dcterms:created>";
  }
  xml << "</cp:coreProperties>";
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
