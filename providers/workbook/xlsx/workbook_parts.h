// The parts of a workbook file: which there are, how they relate, and what each holds.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "providers/workbook/xlsx/workbook.h"

namespace vok::xlsx {

/// Where the parts stand.
namespace part {
inline constexpr const char* kContentTypes = "[Content_Types].xml";
inline constexpr const char* kRelations = "_rels/.rels";
inline constexpr const char* kApplication = "docProps/app.xml";
inline constexpr const char* kCore = "docProps/core.xml";
inline constexpr const char* kWorkbook = "xl/workbook.xml";
inline constexpr const char* kWorkbookRelations = "xl/_rels/workbook.xml.rels";
inline constexpr const char* kStyles = "xl/styles.xml";
inline constexpr const char* kSharedTexts = "xl/sharedStrings.xml";
inline constexpr const char* kSheet = "xl/worksheets/sheet1.xml";
}  // namespace part

void AppendContentTypes(ByteBuffer& xml);
void AppendRelations(ByteBuffer& xml);
void AppendApplication(ByteBuffer& xml);
void AppendCore(ByteBuffer& xml, const Workbook& workbook);
void AppendWorkbookXml(ByteBuffer& xml, const Workbook& workbook);
void AppendWorkbookRelations(ByteBuffer& xml);
void AppendStyles(ByteBuffer& xml, const Workbook& workbook);

/// The sheet's part up to its rows, and what follows them. `extents` are those of all rows.
void AppendSheetHead(ByteBuffer& xml, const Workbook& workbook,
                     const std::vector<ColumnExtent>& extents);
/// How high row 1 is, in points, so that its labels fit into the columns.
unsigned LabelHeight(const Workbook& workbook);
void AppendSheetEnd(ByteBuffer& xml, const Workbook& workbook);

}  // namespace vok::xlsx
