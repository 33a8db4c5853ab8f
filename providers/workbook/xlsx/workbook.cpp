#include "providers/workbook/xlsx/workbook.h"

#include <algorithm>

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

CellBlock FirstRow(const Workbook& workbook) {
  if (workbook.first_row.empty()) return {};
  CellBlock row(1, workbook.first_row.rbegin()->first);
  for (const auto& [column, value] : workbook.first_row) {
    if (const auto* number = value.As<double>()) {
      row.SetNumber(1, column, *number);
    } else {
      row.SetText(1, column, value.ToText());
    }
  }
  return row;
}

/// The part of the sheet and that of its table of texts: what comes before its rows, the first of
/// them, the spooled ones, the end.
void AddSheet(ZipWriter& zip, const Workbook& workbook, const Spool& spool) {
  SharedTexts shared = workbook.shared;
  const CellBlock first_row = FirstRow(workbook);
  const EncodedRows first =
      RowEncoder().Encode(first_row, {1, 1, workbook.styles, shared.Share(first_row)});
  std::vector<ColumnExtent> extents = workbook.rows.columns;
  TakeExtents(first.columns, extents);
  ByteBuffer xml;
  AppendSheetHead(xml, workbook, extents);
  const PackedPiece head = Pack(xml.View(), false);
  const PackedPiece end = Pack(kSheetEnd, true);
  PartSize size;
  for (const PackedPiece* piece : {&head, &first.piece}) size.Add(*piece);
  size.Add(workbook.rows.size);
  size.Add(end);
  zip.Begin(part::kSheet, size);
  for (const PackedPiece* piece : {&head, &first.piece}) zip.Write(piece->bytes.View());
  spool.ReadTo(workbook.rows.size.packed, [&zip](std::string_view bytes) { zip.Write(bytes); });
  zip.Write(end.bytes.View());
  ByteBuffer table;
  shared.AppendTo(table);
  zip.Add(part::kSharedTexts, table.View());
}

}  // namespace

uint16_t Workbook::Format(std::string_view code) {
  const auto found = std::find(formats.begin(), formats.end(), code);
  const auto index = static_cast<uint16_t>(found - formats.begin());
  if (found == formats.end()) formats.emplace_back(code);
  return index;
}

void WriteWorkbook(const Workbook& workbook, const Spool& spool, const std::string& path,
                   FileReplacement& file) {
  ZipWriter zip(file, path);
  AddPart(zip, part::kContentTypes, AppendContentTypes);
  AddPart(zip, part::kRelations, AppendRelations);
  AddPart(zip, part::kApplication, AppendApplication);
  AddPart(zip, part::kWorkbook, AppendWorkbookXml, workbook);
  AddPart(zip, part::kWorkbookRelations, AppendWorkbookRelations);
  AddPart(zip, part::kStyles, AppendStyles, workbook);
  AddSheet(zip, workbook, spool);
  zip.Finish();
}

}  // namespace vok::xlsx
