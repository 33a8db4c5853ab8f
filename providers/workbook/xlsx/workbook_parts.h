// The parts of a workbook file: which there are, how they relate, and what each holds.
#pragma once

#include <string>

#include "providers/workbook/xlsx/workbook.h"

namespace vok::xlsx {

/// Where the parts stand.
namespace part {
inline constexpr const char* kContentTypes = "[Content_Types].xml";
inline constexpr const char* kRelations = "_rels/.rels";
inline constexpr const char* kApplication = "docProps/app.xml";
inline constexpr const char* kWorkbook = "xl/workbook.xml";
inline constexpr const char* kWorkbookRelations = "xl/_rels/workbook.xml.rels";
inline constexpr const char* kStyles = "xl/styles.xml";
inline constexpr const char* kSharedStrings = "xl/sharedStrings.xml";
/// `index` counted from 0.
std::string Sheet(std::size_t index);
}  // namespace part

void AppendContentTypes(ByteBuffer& xml, std::size_t sheets);
void AppendRelations(ByteBuffer& xml);
void AppendApplication(ByteBuffer& xml);
void AppendWorkbookXml(ByteBuffer& xml, const Workbook& workbook);
void AppendWorkbookRelations(ByteBuffer& xml, std::size_t sheets);
void AppendStyles(ByteBuffer& xml, const Workbook& workbook);

/// `selected`: the sheet is the one shown when the workbook is opened.
void AppendSheet(ByteBuffer& xml, const Workbook& workbook, const Sheet& sheet, bool selected,
                 TextOrder& order);

}  // namespace vok::xlsx
