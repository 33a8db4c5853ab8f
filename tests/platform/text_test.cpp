#include "platform/text.h"

#include <gtest/gtest.h>

#include <string>

namespace vok {
namespace {

TEST(Text, CountsUtf16UnitsAndNeverCutsACharacter) {
  const struct {
    const char* text;
    std::size_t length;
    std::size_t units;
    const char* prefix;
  } cases[] = {
      {"", 0, 5, ""},
      {"plain", 5, 3, "pla"},
      {"שלום", 4, 2, "של"},
      {"Счёт", 4, 4, "Счёт"},
      {"a😀b", 4, 2, "a"},  // the pair would be cut
      {"a😀b", 4, 3, "a😀"},
      {"😀", 2, 1, "😀"},          // wider than the room there is, kept whole
      {"a\xC3", 2, 2, "a\xC3"},  // a cut sequence counts byte by byte
      {"\xF0\x9F", 2, 1, "\xF0"},
      {"abc", 3, 0, ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Utf16Length(c.text), c.length) << c.text;
    EXPECT_EQ(Utf16Prefix(c.text, c.units), c.prefix) << c.text << " at " << c.units;
  }
}

TEST(Text, TrimsBlanksAlone) {
  EXPECT_EQ(TrimBlanks("  a b  "), "a b");
  EXPECT_EQ(TrimBlanks("   "), "");
  EXPECT_EQ(TrimBlanks("\ta "), "\ta");
}

}  // namespace
}  // namespace vok
