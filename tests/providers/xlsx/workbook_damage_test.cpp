// Files that are not what was written: cut short, changed at any byte, or packed by a stranger.
#include <gmock/gmock.h>

#include "providers/xlsx/zip_format.h"
#include "providers/xlsx/zip_reader.h"
#include "workbook_tools.h"

namespace vok::xlsx {
namespace {

using testing::HasSubstr;

std::string SmallWorkbook() {
  Workbook book;
  Sheet& sheet = book.sheets.emplace_back("Data");
  sheet.SetColumnsFormat({1, 11}, book.Format("@"));
  const Cell cells[] = {Cell::Text(book.texts.Intern("caption")), Cell::Number(0.1)};
  for (uint32_t row = 1; row <= 3; ++row) sheet.Assign({row, 11}, cells);
  return std::string(WriteWorkbook(book, "small").View());
}

/// The failure's text, or nothing when the file could be read.
std::string FailureOf(std::string_view file) {
  const Failure failure = test::FailureOf([&] { ReadBytes(file); });
  if (failure.number() == 0) return "";
  EXPECT_EQ(failure.number(), 1004);
  EXPECT_THAT(failure.description(), HasSubstr("book.xlsX"));
  return failure.description();
}

TEST(WorkbookDamage, IsRefusedOrChangesNothingAtAnyCutOrByte) {
  const std::string whole = SmallWorkbook();
  const auto cells = CellsOf(ReadBytes(whole));
  std::size_t refused = 0;
  for (std::size_t at = 0; at < whole.size(); ++at) {
    EXPECT_NE(FailureOf(whole.substr(0, at)), "") << at;
    for (const char flip : {'\x01', '\x80', '\xFF'}) {
      std::string damaged = whole;
      damaged[at] = static_cast<char>(damaged[at] ^ flip);
      const bool read = FailureOf(damaged).empty();
      refused += read ? 0 : 1;
      if (read) {
        EXPECT_EQ(CellsOf(ReadBytes(damaged)), cells) << at;
      }
    }
  }
  EXPECT_GT(refused, whole.size());
}

/// Writes `value` over both of the sheet part's records, `local` bytes into the first and `central`
/// into the second.
std::string WithSheetRecords(std::size_t local, std::size_t central, std::string_view value) {
  std::string file = SmallWorkbook();
  const std::string name = "xl/worksheets/sheet1.xml";
  const std::size_t first = file.find(name);
  const std::size_t second = file.find(name, first + 1);
  file.replace(first - zip::kLocalSize + local, value.size(), value);
  file.replace(second - zip::kCentralSize + central, value.size(), value);
  return file;
}

TEST(WorkbookDamage, ContainersOfOtherKindsAreRefusedByName) {
  using namespace std::string_literals;
  const std::string whole = SmallWorkbook();
  const std::size_t end = whole.size() - zip::kEndSize;
  const auto with_end = [&](std::size_t at, const std::string& value) {
    return std::string(whole).replace(end + at, value.size(), value);
  };
  const struct {
    std::string file;
    const char* why;
  } cases[] = {
      {"", "no .xlsx file"},
      {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1 and more", "protected by a password"},
      {WithSheetRecords(6, 8, "\x01"), "\"xl/worksheets/sheet1.xml\" is encrypted"},
      {WithSheetRecords(8, 10, "\x0E"), "packed by method 14"},
      {WithSheetRecords(22, 24, "\xFF\xFF\xFF\xFF"), "64-bit"},
      {WithSheetRecords(22, 24, "\x00\x00\x00\x70"s), "more than is believed"},
      {WithSheetRecords(22, 24, "\x00\x00\x00\x08"s), "more than is believed"},
      {WithSheetRecords(22, 24, "\x00\x00\x00\x01"s), "is damaged"},
      {with_end(8, "\xFF\xFF\xFF\xFF"), "65535 parts"},
      {with_end(16, "\xFF\xFF\xFF\xFF"), "64-bit"},
      {with_end(4, "\x01"), "several volumes"},
      {with_end(16, "\x00"s), "directory is damaged"},
  };
  for (const auto& [file, why] : cases) EXPECT_THAT(FailureOf(file), HasSubstr(why));
}

TEST(WorkbookDamage, APartThatPacksTooWellToBeBelievedStillComesBack) {
  const std::string even(zip::kTrustedExpanded + 1, ' ');
  ZipWriter writer("even");
  writer.Add("part", even);
  const ByteBuffer file = writer.Finish();
  EXPECT_EQ(ZipReader(BytesOf(file.View()), "even").Read("part").View(), even);
}

}  // namespace
}  // namespace vok::xlsx
