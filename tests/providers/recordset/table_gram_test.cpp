#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "tests/providers/recordset/rowset_tools.h"

namespace vok::recordset::test {
namespace {

using std::string_literals::operator""s;
using testing::HasSubstr;
using testing::StartsWith;

template <typename Number>
std::string Le(Number number) {
  std::string bytes(sizeof number, '\0');
  std::memcpy(bytes.data(), &number, sizeof number);
  return bytes;
}
std::string Short(int number) { return Le(static_cast<uint16_t>(number)); }
std::string Byte(int number) { return std::string(1, static_cast<char>(number)); }
/// Of ASCII and two-byte UTF-8 letters.
std::string Wide(std::string_view text) {
  std::string wide;
  for (std::size_t at = 0; at < text.size(); ++at) {
    int letter = static_cast<unsigned char>(text[at]);
    if (letter >= 0x80) letter = (letter & 0x1F) << 6 | (text[++at] & 0x3F);
    wide += Short(letter);
  }
  return wide;
}
std::string Part(int token, const std::string& content) {
  return Byte(token) + Short(static_cast<int>(content.size())) + content;
}

constexpr int kFixed = 0x10, kNullable = 0x60, kLong = 0x80;

struct Col {
  const char* name;
  int type;
  uint32_t length;
  int flags;
};

/// A column as servers describe it: with its table's column and catalogue, and what follows.
std::string Described(const Col& col, int ordinal) {
  const std::string name = Wide(col.name);
  const std::string counted = Short(static_cast<int>(name.size() / 2)) + name;
  return Part(6, "\xF2\x01" + Byte(0) + Short(ordinal) + counted + Short(1) + Short(ordinal) +
                     counted + Short(col.type) + Le(col.length) + Le(255) + Le(255) +
                     Le(col.flags) + Short(2) + Wide("db") + Short(0) + Short(0xFFFF));
}

std::string Gram(const std::vector<Col>& columns, const std::string& rows, int visible = -1) {
  const int count = static_cast<int>(columns.size());
  std::string gram =
      "\x01\x07TG!" + Short(0) + Short(0) + Part(2, std::string(25, '\1')) +
      Part(3, std::string(18, '\2') + Byte(0) + Short(visible < 0 ? count : visible) +
                  Short(count) + Short(0) + Short(1) + Short(0) + Le(1) + "properties") +
      Part(0x10, "context") + Part(5, "table");
  for (int index = 0; index < count; ++index) {
    gram += Described(columns[static_cast<std::size_t>(index)], index + 1);
  }
  return gram + rows + "\x0F";
}

const std::vector<Col> kTexts = {
    {"sId", 3, 4, kFixed}, {"lId", 2, 2, kFixed | kNullable}, {"text", 130, 100, kNullable}};

std::string TextRow(int number, const std::string& text) {
  return "\x07\xC0" + Le(number) + Short(1) + Byte(static_cast<int>(Wide(text).size())) +
         Wide(text);
}

TEST(TableGram, ReadsRowsNullsAndChangesThatWait) {
  const std::string rows =
      TextRow(1000, "OK") + "\x07" + Byte(0x40) + Le(1001) + Byte(4) + Wide("כן") + "\x07" +
      Byte(0) + Le(1002) +
      // The next row changed: its text; the one after it became NULL; the third was deleted.
      TextRow(1003, "was") + "\x0A" + Byte(0x20) + Byte(0) + Byte(2) + Wide("i") +
      TextRow(1004, "a") + "\x0A" + Byte(0xA0) + Byte(0x20) + Le(1005) + TextRow(1006, "gone") +
      "\x0C" + "\x0D" + Byte(0xA0) + Byte(0) + Le(1007) + Byte(2) + Wide("n");
  EXPECT_EQ(Outcome(Gram(kTexts, rows)),
            "sId,lId,text;1000,1,OK;1001,-,כן;1002,-,-;1003,1,i;1005,1,-;1007,-,n");
  EXPECT_EQ(Outcome(Gram(kTexts, rows, 2)), "sId,lId;1000,1;1001,-;1002,-;1003,1;1005,1;1007,-");
  EXPECT_EQ(Outcome(Gram(kTexts, "")), "sId,lId,text");
  EXPECT_GT(RefusedDamage(Gram(kTexts, rows)), 500U);
}

TEST(TableGram, ReadsEveryTypeItKnows) {
  const std::string long_text(300, 'x');
  const struct {
    Col col;
    std::string bytes;
    std::string expected;
  } cases[] = {
      {{"v", 2, 2, kFixed}, Short(-2), "-2"},
      {{"v", 3, 4, kFixed}, Le(-70000), "-70000"},
      {{"v", 4, 4, kFixed}, Le(0.5F), "0.5"},
      {{"v", 5, 8, kFixed}, Le(1e10), "1e+10"},
      {{"v", 6, 8, kFixed}, Le(int64_t{-12345}), "-1.2345"},
      {{"v", 7, 8, kFixed}, Le(45351.5), "#45351.5"},
      {{"v", 11, 2, kFixed}, Short(0xFFFF), "yes"},
      {{"v", 16, 1, kFixed}, Byte(-3), "-3"},
      {{"v", 17, 1, kFixed}, Byte(253), "253"},
      {{"v", 18, 2, kFixed}, Short(65533), "65533"},
      {{"v", 19, 4, kFixed}, Le(-1), "4294967295"},
      {{"v", 20, 8, kFixed}, Le(int64_t{-5000000000}), "-5e+09"},
      {{"v", 21, 8, kFixed}, Le(uint64_t{1} << 40), "1099511627776"},
      {{"v", 133, 6, kFixed}, Short(2024) + Short(2) + Short(29), "#45351"},
      {{"v", 134, 6, kFixed}, Short(6) + Short(0) + Short(0), "#0.25"},
      {{"v", 135, 16, kFixed},
       Short(2024) + Short(2) + Short(29) + Short(12) + Short(0) + Short(0) + Le(7),
       "#45351.5"},
      {{"v", 129, 4, kFixed}, "ab  ", "ab  "},
      {{"v", 129, 255, 0}, Byte(3) + "abc", "abc"},
      {{"v", 129, 256, 0}, Le(3) + "abc", "abc"},
      {{"v", 130, 2, kFixed}, Wide("ab"), "ab"},
      {{"v", 8, 100, 0}, Byte(2) + Wide("b"), "b"},
      {{"v", 130, 127, 0}, Byte(4) + Wide("ab"), "ab"},
      // Between 128 and 255 characters: a length of four bytes, or of one where only that fits.
      {{"v", 130, 128, 0}, Le(4) + Wide("ab"), "ab"},
      {{"v", 130, 255, 0}, Le(600) + Wide(long_text), long_text},
      {{"v", 130, 255, 0}, Byte(4) + Wide("ab"), "ab"},
      {{"v", 130, 256, 0}, Le(4) + Wide("ab"), "ab"},
      {{"v", 130, 10, kLong}, Le(600) + Wide(long_text), long_text},
      {{"v", 130, 0xFFFFFFFF, 0}, Le(4) + "\x3D\xD8\x00\xDE"s, "\xF0\x9F\x98\x80"},
  };
  for (const auto& [col, bytes, expected] : cases) {
    EXPECT_EQ(Outcome(Gram({col}, "\x07" + bytes)), "v;" + expected) << col.type;
  }
}

TEST(TableGram, RefusesWhatItDoesNotUnderstandAndSaysWhy) {
  const std::string good = Gram(kTexts, TextRow(1, "x"));
  const auto with = [&](std::size_t at, char byte) {
    std::string changed = good;
    changed[at] = byte;
    return changed;
  };
  const struct {
    std::string bytes;
    const char* why;
  } cases[] = {
      {with(5, 1), "newer version"},
      {with(7, 1), "big end first"},
      {with(8, 1), "stored in a way"},
      {with(9, 4), "part 2 is expected, part 4 is there"},
      {good + "x", "more bytes follow"},
      {good.substr(0, good.size() - 1), "ends too soon"},
      {Gram(kTexts, "", 4), "more to be seen than there are"},
      {Gram({}, ""), "no columns"},
      {Gram({{"v", 128, 4, kFixed}}, ""), "column \"v\" is of the type 128"},
      {Gram({{"v", 136, 4, kFixed}}, ""), "of the type 136"},
      {Gram({{"v", 129, 9, 0}}, "\x07" + Byte(1) + "\xE0"), "code page"},
      {Gram({{"v", 130, 9, 0}}, "\x07" + Byte(3) + "abc"), "no UTF-16"},
      {Gram({{"v", 130, 9, 0}}, "\x07" + Byte(2) + Short(0xDC00)), "no UTF-16"},
      {Gram({{"v", 7, 8, kFixed}}, "\x07" + Le(1e9)), "no calendar has"},
      {Gram({{"v", 133, 6, kFixed}}, "\x07" + Short(2023) + Short(2) + Short(29)), "no calendar"},
      {Gram({{"v", 5, 8, kFixed}}, "\x07" + Le(uint64_t{0x7FF8000000000000})),
       "number that is none"},
      {Gram({{"v", 129, 0xFFFFFFF0, kFixed}}, "\x07"), "ends too soon"},
      {Gram(kTexts, "\x0C"), "part 12 stands among its rows"},
      {Gram(kTexts, TextRow(1, "x") + "\x0C\x0C"), "part 12 stands"},
      {Gram(kTexts, "\x87"), "part 135 stands"},
  };
  for (const auto& [bytes, why] : cases) {
    EXPECT_THAT(Outcome(bytes), AllOf(StartsWith("!"), HasSubstr(why)));
  }
  std::string swapped = good;
  const auto second = swapped.find(Byte(0) + Short(2) + Short(3));
  ASSERT_NE(second, std::string::npos);
  swapped[second + 1] = 1;
  EXPECT_THAT(Outcome(swapped), HasSubstr("out of order"));
}

}  // namespace
}  // namespace vok::recordset::test
