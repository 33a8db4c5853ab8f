// Shared by the workbook tests: what another reader finds in a written workbook, and what a call
// fails with.
#pragma once

#include <gmock/gmock.h>
#include <libdeflate.h>

#include <cstring>
#include <map>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "platform/text.h"
#include "providers/workbook/xlsx/cell_reference.h"
#include "tests/support/failures.h"

namespace vok::xlsx {

/// The call fails with this number, and says `text` among other things.
inline void ExpectFailure(int32_t number, const std::string& text,
                          const std::function<void()>& call) {
  const Failure failure = test::FailureOf(call);
  EXPECT_EQ(failure.number(), number) << failure.description();
  EXPECT_THAT(failure.description(), testing::HasSubstr(text));
}

/// `bytes` of a record at `at`, least significant first.
inline std::size_t NumberAt(std::string_view record, std::size_t at, std::size_t bytes) {
  std::size_t value = 0;
  for (std::size_t i = bytes; i > 0; --i) {
    value = value << 8 | static_cast<unsigned char>(record.at(at + i - 1));
  }
  return value;
}

/// What all of `packed` expands to.
inline std::string Expanded(std::string_view packed, std::size_t size) {
  std::string bytes(size, 0);
  std::size_t used = 0, made = 0;
  libdeflate_decompressor* reader = libdeflate_alloc_decompressor();
  EXPECT_EQ(libdeflate_deflate_decompress_ex(reader, packed.data(), packed.size(), bytes.data(),
                                             size, &used, &made),
            LIBDEFLATE_SUCCESS);
  EXPECT_TRUE(used == packed.size() && made == size);
  libdeflate_free_decompressor(reader);
  return bytes;
}

/// The parts of a container by their names, as its directory lists them.
inline std::map<std::string, std::string> Unpacked(std::string_view file) {
  std::map<std::string, std::string> parts;
  const std::string_view end = file.substr(file.size() - 22);
  std::string_view entry = file.substr(NumberAt(end, 16, 4));
  for (std::size_t count = NumberAt(end, 10, 2); count > 0; --count) {
    const std::size_t name_size = NumberAt(entry, 28, 2);
    const std::string_view local = file.substr(NumberAt(entry, 42, 4));
    const std::string_view packed = local.substr(30 + name_size, NumberAt(entry, 20, 4));
    std::string& part = parts[std::string(entry.substr(46, name_size))];
    part = packed;
    if (NumberAt(entry, 10, 2) != 0) {
      part = Expanded(packed, NumberAt(entry, 24, 4));
    }
    EXPECT_EQ(libdeflate_crc32(0, part.data(), part.size()), NumberAt(entry, 16, 4));
    entry.remove_prefix(46 + name_size);
  }
  return parts;
}

inline pugi::xml_document Parsed(const std::string& part) {
  pugi::xml_document document;
  EXPECT_TRUE(document.load_string(part.c_str(), pugi::parse_default | pugi::parse_ws_pcdata));
  return document;
}

/// For each style "|" and its number format: the code, or the number of one that needs none.
inline std::vector<std::string> FormatsOf(const std::string& styles) {
  const pugi::xml_document document = Parsed(styles);
  const pugi::xml_node root = document.child("styleSheet");
  std::vector<std::string> formats;
  for (const pugi::xml_node style : root.child("cellXfs")) {
    const char* id = style.attribute("numFmtId").value();
    const auto own = root.child("numFmts").find_child_by_attribute("numFmtId", id);
    formats.push_back(std::string("|") + (own ? own.attribute("formatCode").value() : id));
  }
  return formats;
}

/// Excel drops outer blanks of a text that is not marked.
inline std::string TextIn(const pugi::xml_node& text) {
  const std::string whole = text.text().get();
  return text.attribute("xml:space") ? whole : std::string(TrimBlanks(whole));
}

/// "Data!B2" → "text:abc" or "number:1.5", as the file has them; with "|" and the format where it
/// is not that of General.
inline std::map<std::string, std::string> CellsOf(std::string_view file) {
  const auto parts = Unpacked(file);
  const auto formats = FormatsOf(parts.at("xl/styles.xml"));
  const pugi::xml_document book = Parsed(parts.at("xl/workbook.xml"));
  const std::string name =
      book.child("workbook").child("sheets").child("sheet").attribute("name").value();
  const pugi::xml_document sheet = Parsed(parts.at("xl/worksheets/sheet1.xml"));
  const pugi::xml_document table = Parsed(parts.at("xl/sharedStrings.xml"));
  std::vector<std::string> texts;
  for (const auto item : table.child("sst")) texts.push_back(TextIn(item.child("t")));
  std::map<std::string, std::string> cells;
  for (const auto row : sheet.child("worksheet").child("sheetData")) {
    for (const auto cell : row) {
      const std::string place = cell.attribute("r").value();  // some programs need it
      if (!cell.first_child()) continue;                      // blank
      std::string& found = cells[name + "!" + place];
      const std::string type = cell.attribute("t").value(), value = cell.child("v").text().get();
      found = type == "s"           ? "text:" + texts.at(std::stoul(value))
              : type == "inlineStr" ? "text:" + TextIn(cell.child("is").child("t"))
                                    : "number:" + value;
      if (const auto style = cell.attribute("s")) found += formats.at(style.as_uint());
    }
  }
  return cells;
}

}  // namespace vok::xlsx
