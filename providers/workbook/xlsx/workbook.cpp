#include "providers/workbook/xlsx/workbook.h"

#include <algorithm>

#include "providers/workbook/xlsx/workbook_parts.h"
#include "providers/workbook/xlsx/zip_writer.h"

namespace vok::xlsx {
namespace {

const CellStyle kLabelStyle{"General", true, false};

template <typename Append, typename... Arguments>
void AddPart(ZipWriter& zip, const std::string& name, Append append, Arguments&&... arguments) {
  ByteBuffer xml;
  append(xml, arguments...);
  zip.Add(name, xml.View());
}

/// Those of row 1.
ColumnStyles LabelStyles(const Workbook& workbook, std::size_t columns) {
  if (workbook.look.captions == 0) return workbook.styles;
  const auto& known = workbook.cell_styles;
  const auto label = std::find(known.begin(), known.end(), kLabelStyle);
  return std::make_shared<std::vector<uint16_t>>(columns,
                                                 static_cast<uint16_t>(label - known.begin()));
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
  const EncodedRows first = RowEncoder().Encode(
      first_row, {1, 1, LabelStyles(workbook, first_row.columns()), shared.Share(first_row),
                  workbook.look.captions > 0 ? LabelHeight(workbook) : 0});
  std::vector<ColumnExtent> extents = workbook.rows.columns;
  if (workbook.look.captions == 0) TakeExtents(first.columns, extents);  // else labels are wrapped
  ByteBuffer xml;
  AppendSheetHead(xml, workbook, extents);
  const PackedPiece head = Pack(xml.View(), false);
  ByteBuffer end_xml;
  AppendSheetEnd(end_xml, workbook);
  const PackedPiece end = Pack(end_xml.View(), true);
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

uint16_t Workbook::Style(const CellStyle& style) {
  const auto found = std::find(cell_styles.begin(), cell_styles.end(), style);
  const auto index = static_cast<uint16_t>(found - cell_styles.begin());
  if (found == cell_styles.end()) cell_styles.push_back(style);
  return index;
}

void Workbook::SetLook(const WorkbookLook& wanted) {
  look = wanted;
  if (look.captions == 0) return;
  Style(kLabelStyle);
  std::vector<uint16_t> of_columns(look.captions);
  for (const std::string& format : look.formats) of_columns.push_back(Style({format}));
  styles = std::make_shared<std::vector<uint16_t>>(std::move(of_columns));
}

ColumnStyles Workbook::LinedStyles() {
  std::vector<uint16_t> lined = *styles;
  for (uint16_t& style : lined) style = Style({cell_styles[style].format, false, true});
  return std::make_shared<std::vector<uint16_t>>(std::move(lined));
}

void WriteWorkbook(const Workbook& workbook, const Spool& spool, const std::string& path,
                   FileReplacement& file) {
  ZipWriter zip(file, path);
  AddPart(zip, part::kContentTypes, AppendContentTypes);
  AddPart(zip, part::kRelations, AppendRelations);
  AddPart(zip, part::kApplication, AppendApplication);
  AddPart(zip, part::kCore, AppendCore, workbook);
  AddPart(zip, part::kWorkbook, AppendWorkbookXml, workbook);
  AddPart(zip, part::kWorkbookRelations, AppendWorkbookRelations);
  AddPart(zip, part::kStyles, AppendStyles, workbook);
  AddSheet(zip, workbook, spool);
  zip.Finish();
}

}  // namespace vok::xlsx
