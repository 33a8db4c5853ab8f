#include "providers/workbook/xlsx/workbook.h"

#include <algorithm>

#include "providers/workbook/xlsx/sheet.h"
#include "providers/workbook/xlsx/text_pool.h"
#include "providers/workbook/xlsx/workbook_parts.h"
#include "providers/workbook/xlsx/zip_writer.h"

namespace vok::xlsx {
namespace {

template <typename Append, typename... Arguments>
void AddPart(ZipWriter& zip, const std::string& name, Append append, Arguments&&... arguments) {
  ByteBuffer xml;
  append(xml, arguments...);
  zip.Add(name, xml.View());
}

}  // namespace

uint16_t Workbook::Format(std::string_view code) {
  const auto found = std::find(formats.begin(), formats.end(), code);
  const auto index = static_cast<uint16_t>(found - formats.begin());
  if (found == formats.end()) formats.emplace_back(code);
  return index;
}

ByteBuffer WriteWorkbook(const Workbook& workbook, const std::string& path) {
  ZipWriter zip(path);
  const std::size_t sheets = workbook.sheets.size();
  AddPart(zip, part::kContentTypes, AppendContentTypes, sheets);
  AddPart(zip, part::kRelations, AppendRelations);
  AddPart(zip, part::kApplication, AppendApplication);
  AddPart(zip, part::kWorkbook, AppendWorkbookXml, workbook);
  AddPart(zip, part::kWorkbookRelations, AppendWorkbookRelations, sheets);
  AddPart(zip, part::kStyles, AppendStyles, workbook);
  TextOrder order(workbook.texts);
  for (std::size_t i = 0; i < sheets; ++i) {
    AddPart(zip, part::Sheet(i), AppendSheet, workbook, workbook.sheets[i], i == workbook.active,
            order);
  }
  AddPart(zip, part::kSharedStrings, AppendSharedStrings, workbook.texts, order);
  return zip.Finish();
}

}  // namespace vok::xlsx
