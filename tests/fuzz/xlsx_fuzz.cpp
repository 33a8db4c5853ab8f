// Any bytes as a workbook, and as the sheet in one: a failure, or a workbook that can be written
// and reads back the same.
#include <array>
#include <span>

#include "providers/xlsx/sheet_xml.h"
#include "providers/xlsx/workbook.h"
#include "tests/fuzz/fuzz.h"

namespace {

using namespace vok::xlsx;

Workbook ReadSheetOnly(std::string_view xml) {
  Workbook book;
  const std::array<uint16_t, 2> formats = {0, book.Format("@")};
  const std::array<uint32_t, 2> texts = {book.texts.Intern("one"), book.texts.Intern("two")};
  PartContext context("input.xlsx", "sheet", book.unkept);
  ReadSheet(xml, {texts, formats}, book.texts, book.sheets.emplace_back("Data"), context);
  return book;
}

void CheckRoundTrip(const Workbook& book) {
  const ByteBuffer first = WriteWorkbook(book, "first.xlsx");
  const auto bytes = std::as_bytes(std::span(first.data(), first.size()));
  const ByteBuffer second = WriteWorkbook(ReadWorkbook(bytes, "first.xlsx"), "second.xlsx");
  if (second.View() != first.View()) std::abort();
}

}  // namespace

void FuzzOne(std::string_view bytes) {
  Refuses([&] { CheckRoundTrip(ReadWorkbook(std::as_bytes(std::span(bytes)), "input.xlsx")); });
  Refuses([&] { CheckRoundTrip(ReadSheetOnly(bytes)); });
}
