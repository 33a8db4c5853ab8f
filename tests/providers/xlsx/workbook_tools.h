// Shared by the workbook tests: a written workbook's cells as texts, what a call fails with, and
// workbooks put together from parts.
#pragma once

#include <gmock/gmock.h>

#include <charconv>
#include <map>
#include <span>
#include <string>

#include "providers/xlsx/cell_reference.h"
#include "providers/xlsx/workbook.h"
#include "providers/xlsx/zip_writer.h"
#include "tests/support/failures.h"

namespace vok::xlsx {

inline std::span<const std::byte> BytesOf(std::string_view text) {
  return std::as_bytes(std::span(text.data(), text.size()));
}

inline Workbook ReadBytes(std::string_view file) {
  return ReadWorkbook(BytesOf(file), "book.xlsX");
}

/// The call fails with this number, and says `text` and whatever else.
inline void ExpectFailure(int32_t number, const std::string& text,
                          const std::function<void()>& call) {
  const Failure failure = test::FailureOf(call);
  EXPECT_EQ(failure.number(), number) << failure.description();
  EXPECT_THAT(failure.description(), testing::HasSubstr(text));
}

/// "Data!B2" → "text:abc", "number:1.5", "boolean:1", "error:#N/A"; with "|@" for a text format.
inline std::map<std::string, std::string> CellsOf(const Workbook& book) {
  std::map<std::string, std::string> cells;
  for (const Sheet& sheet : book.sheets) {
    for (const Row& row : sheet.rows()) {
      for (const Cell& cell : row.cells) {
        constexpr const char* kKinds[] = {"blank", "number:", "boolean:", "text:", "error:"};
        std::string text = kKinds[static_cast<int>(cell.kind)];
        if (cell.kind >= CellKind::kText) {
          text += book.texts.At(cell.text);
        } else if (cell.kind != CellKind::kBlank) {
          char digits[32];
          text.append(digits, std::to_chars(digits, digits + 32, cell.number).ptr);
        }
        if (cell.format != 0) text += "|" + book.formats[cell.format];
        cells[sheet.name + "!" + CellName(row.number, cell.column)] = text;
      }
    }
  }
  return cells;
}

/// The parts of a workbook by another program, to be changed before they are packed.
class Package {
 public:
  Package() {
    const std::string office =
        "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
    parts["[Content_Types].xml"] = "<Types/>";
    parts["_rels/.rels"] = "<Relationships><Relationship Id='a' Type='" + office +
                           "officeDocument' Target='/xl/workbook.xml'/></Relationships>";
    parts["xl/workbook.xml"] =
        "<x:workbook xmlns:x='m' xmlns:r='r'><x:sheets><x:sheet name='One' sheetId='7' r:id='s'/>"
        "</x:sheets></x:workbook>";
    parts["xl/_rels/workbook.xml.rels"] =
        "<Relationships><Relationship Id='s' Type='" + office + "worksheet' " +
        "Target='../xl/./sheets/a.xml'/><Relationship Id='t' Type='" + office + "sharedStrings' " +
        "Target='strings.xml'/><Relationship Id='u' Type='" + office +
        "styles' Target='styles.xml'/></Relationships>";
    parts["xl/styles.xml"] =
        "<styleSheet><numFmts><numFmt numFmtId='170' formatCode='0.000'/></numFmts><cellXfs>"
        "<xf numFmtId='0'/><xf numFmtId='49'/><xf numFmtId='170'/></cellXfs></styleSheet>";
    parts["xl/strings.xml"] = "<sst><si><t>shared</t></si></sst>";
    SetSheet("<sheetData/>");
  }
  void SetSheet(const std::string& content) {
    parts["xl/sheets/a.xml"] = "<worksheet>" + content + "</worksheet>";
  }
  std::string Pack() const {
    ZipWriter zip("book.xlsX");
    for (const auto& [name, content] : parts) zip.Add(name, content);
    return std::string(zip.Finish().View());
  }

  std::map<std::string, std::string> parts;
};

}  // namespace vok::xlsx
