#include "providers/workbook/xlsx/text_rules.h"

#include <gtest/gtest.h>

#include "platform/utf8.h"

namespace vok::xlsx {
namespace {

std::string Xml(std::string_view text) {
  ByteBuffer xml;
  AppendXmlText(xml, text);
  return std::string(xml.View());
}

TEST(TextRules, EscapesWhatXmlOrReadersWouldChange) {
  const struct {
    std::string text;
    std::string xml;
  } cases[] = {
      {"a<b>&\"'", "a&lt;b&gt;&amp;&quot;'"},
      {std::string("\0\x01\x1F\r", 4), "_x0000__x0001__x001F__x000D_"},
      {"tab\tline\n", "tab\tline\n"},
      {"\x7F\xC2\x80", "\x7F\xC2\x80"},
      {"\xEF\xBF\xBE\xEF\xBF\xBF\xEF\xBF\xBD", "_xFFFE__xFFFF_\xEF\xBF\xBD"},
      {"_x0041_", "_x005F_x0041_"},
      {"_xabCD_", "_x005F_xabCD_"},
      {"_x0041", "_x0041"},
      {"_X0041_", "_X0041_"},
      {"_x00G1_", "_x00G1_"},
      {"_x0041_x0042_", "_x005F_x0041_x005F_x0042_"},
      {"_x005F_x0041_", "_x005F_x005F_x005F_x0041_"},
      {"_x0041\x01", "_x005F_x0041_x0001_"},
      {"_\x01", "__x0001_"},
      {"\x01x0041_", "_x0001_x0041_"},
      {"\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xF0\x9F\x98\x80",
       "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xF0\x9F\x98\x80"},
  };
  for (const auto& [text, xml] : cases) EXPECT_EQ(Xml(text), xml);
}

TEST(TextRules, BytesThatAreNoUtf8BecomeTheReplacementCharacter) {
  const std::string mark = "\xEF\xBF\xBD";
  const struct {
    std::string bytes;
    std::string text;
  } cases[] = {
      {"plain ascii, longer than eight", "plain ascii, longer than eight"},
      {"eight...\xFF", "eight..." + mark},
      {"\xE0\x80\xAF", mark + mark + mark},
      {"cut \xE2\x82", "cut " + mark + mark},
      {"\x80", mark},
      {"ab\xD7\x90xy\xD7\x90", "ab\xD7\x90xy\xD7\x90"},
      {"\xC1\xBF and \xD7\x90\xD7", mark + mark + " and \xD7\x90" + mark},
      {"\xD7z", mark + "z"},
  };
  for (const auto& [bytes, text] : cases) {
    EXPECT_EQ(ToUtf8(bytes), text);
    EXPECT_EQ(IsUtf8(bytes), bytes == text) << text;
  }
}

}  // namespace
}  // namespace vok::xlsx
