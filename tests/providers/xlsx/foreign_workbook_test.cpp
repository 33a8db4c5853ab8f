// Workbooks by other programs: what is read of them, and what is said of the rest.
#include "providers/xlsx/xlsx_spreadsheet.h"
#include "tests/support/memory_host.h"
#include "workbook_tools.h"

namespace vok::xlsx {
namespace {

TEST(ForeignWorkbook, CellsOfEveryKindAreRead) {
  Package package;
  package.SetSheet(
      "<sheetPr><outlinePr/></sheetPr><cols><col min='2' max='3' width='20' customWidth='1' "
      "style='1'/></cols><sheetData><row><c t='s'><v>0</v></c><c s='1'><v>1.25</v></c></row>"
      "<row r='4'><c r='B4' t='inlineStr'><is><t>in _x0041_</t></is></c>"
      "<c r='D4' t='b'><v>1</v></c><c t='e'><v>#DIV/0!</v></c><c t='str'><v>last</v></c>"
      "<c s='2'><v>-1E-3</v></c><c s='2'/><c/></row></sheetData><pageMargins left='1'/>");
  const Workbook book = ReadBytes(package.Pack());
  const std::map<std::string, std::string> expected = {
      {"One!A1", "text:shared"},         {"One!B1", "number:1.25|@"}, {"One!B4", "text:in A"},
      {"One!D4", "boolean:1"},           {"One!E4", "error:#DIV/0!"}, {"One!F4", "text:last"},
      {"One!G4", "number:-0.001|0.000"}, {"One!H4", "blank|0.000"}};
  EXPECT_EQ(CellsOf(book), expected);
  EXPECT_EQ(book.sheets[0].columns().at(2), (Column{1, 20}));
  EXPECT_TRUE(book.unkept.empty());
  const Workbook again = ReadBytes(WriteWorkbook(book, "again").View());
  EXPECT_EQ(CellsOf(again), expected);
  EXPECT_EQ(again.sheets[0].columns().at(2), (Column{1, 20}));
}

TEST(ForeignWorkbook, OurOwnSheetReadsTheSameByTheShortWayAndTheGeneralOne) {
  const std::string head =
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<worksheet><cols>"
      "<col min=\"2\" max=\"2\" style=\"1\"/></cols><sheetData>";
  const std::string rows[] = {
      "<row r=\"2\"><c r=\"A2\" s=\"1\" t=\"s\"><v>0</v></c><c r=\"AB2\"><v>-1.5e-7</v></c></row>"
      "<row r=\"3\"></row><row r=\"1048576\"><c r=\"XFD1048576\"><v>1</v></c></row>",
      "<row r=\"1\"><c r=\"A1\"><v>1</v></c><c r=\"B1\" s=\"2\"/><c r=\"C1\" "
      "t=\"b\"><v>1</v></c></row>",
      "<row r=\"1\"><c r=\"A1\"><v>1</v></c><c r=\"A1\"><v>2</v></c></row>",
      "<row r=\"1\"><c r=\"A2\"><v>1</v></c></row>",
      "<row r=\"1\"><c r=\"A1\" t=\"s\"><v>1</v></c></row>",
      "<row r=\"1\"><c r=\"A1\" s=\"3\"><v>1</v></c></row>",
      "<row r=\"1\"><c r=\"A1\"><v>inf</v></c></row>",
      "<row r=\"1\"><c r=\"A1\"><v>1</v></c>",
      "<row r=\"2\"></row><row r=\"1\"></row>",
  };
  const auto read = [](const std::string& sheet) {
    Package package;
    package.parts["xl/sheets/a.xml"] = sheet;
    std::map<std::string, std::string> cells;
    const auto attempt = [&] { cells = CellsOf(ReadBytes(package.Pack())); };
    cells["failure"] = test::DescriptionOf(attempt);
    return cells;
  };
  for (const std::string& content : rows) {
    const std::string sheet = head + content + "</sheetData></worksheet>";
    EXPECT_EQ(read(sheet), read(sheet + "\n")) << content;
  }
}

TEST(ForeignWorkbook, WhatASaveWouldLoseIsNamedAndTheFileStays) {
  const struct {
    const char* part;
    const char* content;
    const char* note;
  } cases[] = {
      {"xl/sheets/a.xml",
       "<worksheet><sheetData><row><c><f>1+1</f><v>2</v></c></row></sheetData></worksheet>",
       "xl/sheets/a.xml: <f>"},
      {"xl/sheets/a.xml", "<worksheet><sheetData/><mergeCells/></worksheet>",
       "xl/sheets/a.xml: <mergeCells>"},
      {"xl/sheets/a.xml", "<worksheet><sheetData><row hidden='1'/></sheetData></worksheet>",
       "xl/sheets/a.xml: hidden rows"},
      {"xl/sheets/a.xml", "<worksheet><cols><col min='1' max='1' hidden='1'/></cols></worksheet>",
       "xl/sheets/a.xml: hidden columns"},
      {"xl/strings.xml", "<sst><si><r><rPr/><t>a</t></r></si></sst>", "xl/strings.xml: <rPr>"},
      {"xl/styles.xml", "<styleSheet><cellXfs><xf fontId='1'/></cellXfs></styleSheet>",
       "xl/styles.xml: fonts, fills or borders"},
      {"xl/vbaProject.bin", "code", "xl/vbaProject.bin"},
      {"xl/charts/chart1.xml", "<chart/>", "xl/charts/chart1.xml"},
  };
  for (const auto& [part, content, note] : cases) {
    Package package;
    package.parts[part] = content;
    test::MemoryFiles files;
    const std::string packed = files.files["a.xlsx"] = package.Pack();
    const auto application = XlsxSpreadsheet(files).NewApplication();
    application->OpenWorkbook("a.xlsx");
    ExpectFailure(1004, note, [&] { application->SaveAs("a.xlsx", kOpenXmlWorkbook); });
    EXPECT_EQ(files.files["a.xlsx"], packed);
  }
}

TEST(ForeignWorkbook, DamagedAndHostilePartsAreRefusedByName) {
  const std::string sheet = "xl/sheets/a.xml";
  const auto rows = [](const std::string& content) {
    return "<worksheet><sheetData>" + content + "</sheetData></worksheet>";
  };
  std::string deep;
  for (int i = 0; i < 65; ++i) deep += "<a>";
  const struct {
    std::string part;
    std::string content;
    const char* why;
  } cases[] = {
      {sheet, "<worksheet", "no proper XML"},
      {sheet, deep, "nested too deeply"},
      {sheet, "<!DOCTYPE a [<!ENTITY b 'c'>]><worksheet/>", "DOCTYPE"},
      {sheet, rows("<row r='2'/><row r='1'/>"), "row 1 is not in its place"},
      {sheet, rows("<row r='1048577'/>"), "attribute r is \"1048577\""},
      {sheet, rows("<row r='1048576'/><row/>"), "more rows than a sheet has"},
      {sheet, rows("<row><c r='B1'/><c r='A1'/></row>"), "cell A1 is not in its place"},
      {sheet, rows("<row><c r='A2'/></row>"), "cell A2 is not in its place"},
      {sheet, rows("<row><c r='XFE1'/></row>"), "no cell \"XFE1\""},
      {sheet, rows("<row><c r='XFD1'/><c/></row>"), "not in its place"},
      {sheet, rows("<row><c><c/></c></row>"), "holds another cell"},
      {sheet, rows("<row><c><is><row/></is></c></row>"), "cell A1 holds a row"},
      {sheet, rows("<c/>"), "not in its place"},
      {sheet, rows("<row><c s='3'/></row>"), "style 3"},
      {sheet, rows("<row><c t='s'><v>1</v></c></row>"), "has a text that is not there"},
      {sheet, rows("<row><c t='s'><v>-1</v></c></row>"), "attribute v is \"-1\""},
      {sheet, rows("<row><c><v>nan</v></c></row>"), "is no number"},
      {sheet, rows("<row><c><v>1e999</v></c></row>"), "is no number"},
      {sheet, rows("<row><c><v>1,5</v></c></row>"), "is no number"},
      {sheet, rows("<row><c t='str'><v>" + std::string(32768, 'a') + "</v></c></row>"), "longer"},
      {sheet, "<worksheet><cols><col min='2' max='1'/></cols></worksheet>", "column range"},
      {sheet, "<worksheet><cols><col min='1' max='16385'/></cols></worksheet>", "max is \"16385\""},
      {"xl/strings.xml", "<sst><si><t>" + std::string(32768, 'a') + "</t></si></sst>", "longer"},
      {"xl/workbook.xml", "<workbook/>", "no sheet"},
      {"xl/workbook.xml", "<workbook><sheets><sheet name='a' id='x'/></sheets></workbook>",
       "\"a\" has no part"},
      {"xl/workbook.xml",
       "<workbook><sheets><sheet name='a' id='s'/><sheet name='b' id='s'/></sheets></workbook>",
       "two parts"},
      {"_rels/.rels", "<Relationships/>", "no workbook is named"},
  };
  for (const auto& [part, content, why] : cases) {
    Package package;
    package.parts[part] = content;
    for (const char* text : {why, "book.xlsX"}) {
      ExpectFailure(1004, text, [&] { ReadBytes(package.Pack()); });
    }
  }
}

}  // namespace
}  // namespace vok::xlsx
