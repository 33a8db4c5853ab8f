#include "providers/database/jet/reader/jet_text.h"

#include <gmock/gmock.h>

namespace vok::jet {
namespace {

TEST(JetTextTest, IsReadInBothForms) {
  const struct {
    std::string bytes;
    std::optional<std::string> text;
  } rows[] = {
      {"", ""},
      {std::string("A\0\xE9\5", 4), "Aש"},
      {std::string("\x3D\xD8\0\xDE", 4), "😀"},
      {"\xFF\xFE\x47r\xF6\xDF\x65", "Größe"},
      {std::string("\xFF\xFE\x41\0\xE9\5\xEA\5\0B", 10), "AשתB"},
      {std::string("\xFF\xFE\x41\0\xE9", 5), std::nullopt},  // half a unit
      {"A", std::nullopt},
      {"\x3D\xD8", std::nullopt},  // half a character
  };
  for (const auto& row : rows) EXPECT_EQ(TextOf(row.bytes), row.text) << row.bytes;
}

}  // namespace
}  // namespace vok::jet
