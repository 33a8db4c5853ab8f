#include "platform/text.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "platform/shown_text.h"

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

TEST(ShownText, LeavesNothingThatATerminalObeys) {
  const std::pair<const char*, const char*> cases[] = {
      {"a\tb\r\n\x1B[2J\x7F", R"(a\tb\r\n\u001b[2J\u007f)"},
      {"\u009B2J\u2028\u202E\u2066", R"(\u009b2J\u2028\u202e\u2066)"},
      {"שלום 日本 😀 \u200F", "שלום 日本 😀 \u200F"},
      {"\xE2\x1B[2J", R"(\xe2\u001b[2J)"},  // a letter that is cut short hides nothing
      {"\xC0\x9B \xF0\x80\x80\x9B", R"(\xc0\x9b \xf0\x80\x80\x9b)"},  // too long for their codes
      {"\xED\xA0\x80 \xF4\x90\x80\x80", R"(\xed\xa0\x80 \xf4\x90\x80\x80)"},
      {"\x9B\xFF\xF0\x9F", R"(\x9b\xff\xf0\x9f)"},
  };
  for (const auto& [text, shown] : cases) EXPECT_EQ(OneLine(text), shown);
  EXPECT_EQ(Excerpt(std::string(1000, 'x')), std::string(160, 'x'));
}

TEST(ShownText, HasNoUsersInAddresses) {
  const std::pair<const char*, const char*> cases[] = {
      {"at http://u:p@h:80/x?y of", "at http://h:80/x?y of"},
      {"http:///u:p@h/", "http:///h/"},
      {"http:/u:p@h/", "http:/h/"},
      {"C:/a@b.cub or (D:/a@b.cub", "C:/a@b.cub or (D:/a@b.cub"},
      {"'https://u:p w/@[::1]:8/' and http://k@m", "'https://[::1]:8/' and http://m"},
      {"http://u:p@h;https://l:q@@m", "http://h;https://m"},
      {"https://h:80/x@y, http://[::1]/@ and a@b", "https://h:80/x@y, http://[::1]/@ and a@b"},
      {"http:// and x@y", "http:// and x@y"},
      {"\"https:u:p@h\" //u:p@h, u:p@h/x", "\"...@h\" //...@h, ...@h/x"},
      {"10:30 x@y, \"user:password@\"", "10:30 x@y, \"user:password@\""},
      {"h Password=s password='a b' x password=", "h Password=... password=... x password="},
      {"/x;password='a''b' c", "/x;password=... c"},
      {"\"h password='a b\": no \"", "\"h password=... b\": no \""},
  };
  for (const auto& [text, shown] : cases) EXPECT_EQ(WithoutUsers(text), shown);
}

TEST(Text, TrimsBlanksAlone) {
  EXPECT_EQ(TrimBlanks("  a b  "), "a b");
  EXPECT_EQ(TrimBlanks("   "), "");
  EXPECT_EQ(TrimBlanks("\ta "), "\ta");
}

}  // namespace
}  // namespace vok
