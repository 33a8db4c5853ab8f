#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "tests/providers/recordset/rowset_tools.h"
#include "tests/support/memory_host.h"

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
/// `end` is what only columns of child sets end with.
std::string Described(const Col& col, int ordinal, const std::string& end) {
  const std::string name = Wide(col.name);
  const std::string counted = Short(static_cast<int>(name.size() / 2)) + name;
  return Part(6, "\xF2\x01" + Byte(0) + Short(ordinal) + counted + Short(1) + Short(ordinal) +
                     counted + Short(col.type) + Le(col.length) + Le(255) + Le(255) +
                     Le(col.flags) + Short(2) + Wide("db") + Short(0) + Short(0xFFFF) + end);
}

/// A record set without its rows. `more` are columns that are counted here and described later.
std::string Set(const std::vector<Col>& columns, int visible, const std::string& end = "",
                int more = 0) {
  const int count = static_cast<int>(columns.size());
  std::string set = Part(3, std::string(18, '\2') + Byte(0) + Short(visible) + Short(count + more) +
                                Short(0) + Short(1) + Short(0) + Le(1) + "properties") +
                    Part(0x10, "context") + Part(5, "table");
  for (int index = 0; index < count; ++index) {
    set += Described(columns[static_cast<std::size_t>(index)], index + 1, end);
  }
  return set;
}

const std::string kStart = "\x01\x07TG!" + Short(0) + Short(0) + Part(2, std::string(25, '\1'));

std::string Gram(const std::vector<Col>& columns, const std::string& rows, int visible = -1) {
  const int count = static_cast<int>(columns.size());
  return kStart + Set(columns, visible < 0 ? count : visible) + rows + "\x0F";
}

const std::vector<Col> kTexts = {
    {"sId", 3, 4, kFixed}, {"lId", 2, 2, kFixed | kNullable}, {"text", 130, 100, kNullable}};

std::string TextRow(int number, const std::string& text) {
  return "\x07\xC0" + Le(number) + Short(1) + Byte(static_cast<int>(Wide(text).size())) +
         Wide(text);
}

TEST(Adtg, ReadsRowsNullsAndChangesThatWait) {
  const std::string rows =
      TextRow(1000, "OK") + "\x07" + Byte(0x40) + Le(1001) + Byte(4) + Wide("כן") + "\x07" +
      Byte(0) + Le(1002) +
      // Changes: of a text; of a text to NULL, with and without a new number; of NULL to a text; of
      // both at once.
      TextRow(1003, "was") + "\x0A" + Byte(0x20) + Byte(0) + Byte(2) + Wide("i") +
      TextRow(1004, "a") + "\x0A" + Byte(0x80) + Byte(0x20) + Le(1005) + TextRow(1006, "b") +
      "\x0A" + Byte(0) + Byte(0x60) + "\x07" + Byte(0) + Le(1007) + "\x0A" + Byte(0x20) + Byte(0) +
      Byte(2) + Wide("c") + "\x07" + Byte(0x40) + Le(1011) + Byte(2) + Wide("d") + "\x0A" +
      Byte(0x60) + Byte(0x20) + Short(5) +
      // A row that was deleted; new ones, with a field that is not named and one that is NULL.
      TextRow(1008, "gone") + "\x0C" + "\x0D" + Byte(0xA0) + Byte(0) + Le(1009) + Byte(2) +
      Wide("n") + "\x0D" + Byte(0xC0) + Byte(0x20) + Le(1010) + Short(3);
  EXPECT_EQ(Outcome(Gram(kTexts, rows)),
            "sId,lId,text;1000,1,OK;1001,-,כן;1002,-,-;1003,1,i;1005,1,-;1006,-,-;1007,-,c;"
            "1011,5,-;1009,-,n;1010,3,-");
  EXPECT_EQ(Outcome(Gram(kTexts, rows, 2)),
            "sId,lId;1000,1;1001,-;1002,-;1003,1;1005,1;1006,-;1007,-;1011,5;1009,-;1010,3");
  EXPECT_EQ(Outcome(Gram(kTexts, "")), "sId,lId,text");
  EXPECT_GT(RefusedDamage(Gram(kTexts, rows)), 500U);
}

TEST(Adtg, ReadsEveryTypeItKnows) {
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
      {{"v", 14, 16, kFixed},
       Short(0) + Byte(2) + Byte(0x80) + Le(1) + Le(0) + Le(0),
       "-184467440737095520"},
      {{"v", 131, 19, kFixed},
       Byte(9) + Byte(3) + Byte(1) + Le(int64_t{12345}) + Le(int64_t{0}),
       "12.345"},
      {{"v", 131, 19, kFixed}, Byte(1) + Byte(0) + Byte(0) + Le(int64_t{0}) + Le(int64_t{0}), "0"},
      {{"v", 64, 8, kFixed}, Le(int64_t{116444736000000000}), "#25569"},
      {{"v", 72, 16, kFixed},
       Le(0x01234567) + Short(0x89AB) + Short(0xCDEF) + "\x01\x23\x45\x67\x89\xAB\xCD\xEF",
       "{01234567-89AB-CDEF-0123-456789ABCDEF}"},
      // Bytes are passed over.
      {{"v", 128, 4, kFixed}, "\1\2\3\4", "!"},
      {{"v", 204, 255, 0}, Byte(2) + "\1\2", "!"},
      {{"v", 205, 10, kLong}, Le(2) + "\1\2", "!"},
      {{"v", 12, 16, 0}, Byte(2) + "\1\2", "!"},
      {{"v", 12, 16, kFixed}, std::string(16, '\1'), "!"},
      {{"v", 10, 4, kFixed}, "\1\2\3\4", "!"},
      {{"v", 129, 4, kFixed}, "ab  ", "ab  "},
      {{"v", 200, 9, 0}, Byte(1) + "\xE0", "!"},
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

TEST(Adtg, PassesOverRecordSetsWithinTheRows) {
  const std::vector<Col> parent = {{"sId", 3, 4, kFixed},
                                   {"lines", 136, 4, kFixed | kNullable},
                                   {"text", 130, 100, kNullable},
                                   {"more", 3, 4, kFixed | 0x2000}};
  const std::vector<Col> child = {{"chapter", 136, 4, kFixed}, {"a", 130, 9, kNullable}};
  const std::vector<Col> grandchild = {{"b", 3, 4, kFixed}};
  const auto text = [](const char* letter) { return Byte(2) + Wide(letter); };
  const std::string parents = "\x07" + Byte(0x40) + Le(1) + text("x") + "\x0A" + Byte(0xA0) +
                              Byte(0) + Le(2) + text("y") + "\x07" + Byte(0) + Le(3) + "\x0D" +
                              Byte(0x80) + Byte(0x20) + Le(4);
  const std::string last = "\x07" + Byte(0x40) + Le(5) + text("z");
  const std::string children = "\x87" + Le(7) + Byte(0x80) + text("a") + "\x8A" + Le(7) +
                               Byte(0x40) + Byte(0) + text("b") + "\x87" + Le(7) + Byte(0) +
                               "\x8C" + Le(7) + "\x8D" + Le(7) + Byte(0x40) + Byte(0) + text("c") +
                               "\x87" + Le(8) + Le(70000);
  const std::string sets = Set(child, 2, Le(7)) + Set(grandchild, 1, Le(8)) + Set(child, 2, Le(9));
  const auto gram = [&](int counted_twice, const std::string& rows) {
    return kStart + Set(parent, 4 + counted_twice, "", counted_twice) + sets + rows + "\x0F";
  };
  const std::string expected = "sId,lines,text,more;2,!,y,!;3,!,-,!;4,!,-,!";
  EXPECT_EQ(Outcome(gram(0, parents + children)), expected);
  EXPECT_EQ(Outcome(gram(5, parents + children)), expected);
  EXPECT_EQ(Outcome(gram(0, parents + children + last)), expected + ";5,!,z,!");
  EXPECT_GT(RefusedDamage(gram(0, parents + children)), 500U);

  EXPECT_THAT(Outcome(gram(0, "\x87" + Le(6) + "\x01")), HasSubstr("that is not described"));
  EXPECT_THAT(Outcome(gram(0, parents + "\x8A" + Le(7) + "\x01")), HasSubstr("part 10 stands"));
  EXPECT_THAT(Outcome(kStart + Set(parent, 4) + Set({child[0]}, 1, Le(7)) + "\x0F"),
              HasSubstr("a record set within its rows has no number"));
}

/// Knows one code page, of one letter; the user's is another.
class OneCodePage : public vok::test::SimpleLocale {
 public:
  std::optional<std::string> FromCodePage(std::string_view bytes, int code_page) const override {
    if (bytes != "\xE0") return std::nullopt;
    return code_page == 1255 ? "\u05D0" : code_page == 0 ? "\u00E0" : std::optional<std::string>();
  }
};

TEST(Adtg, ReadsTextsInTheCodePageOfTheCallTheFileOrTheUser) {
  const OneCodePage locale;
  const auto gram = [](int code_page) {
    const std::string table = Short(1) + Short(1) + Wide("t") + Short(0) + Short(code_page);
    std::string bytes = Gram({{"v", 129, 9, 0}}, "\x07" + Byte(1) + "\xE0");
    const std::string empty = Part(5, "table");
    return bytes.replace(bytes.find(empty), empty.size(), Part(5, table));
  };
  const struct {
    int in_file;
    int asked;
    const char* expected;
  } cases[] = {{0, 0, "v;\u00E0"},
               {1255, 0, "v;\u05D0"},
               {1200, 0, "v;\u00E0"},
               {1252, 1255, "v;\u05D0"},
               {1255, 1252, "v;!"}};
  for (const auto& [in_file, asked, expected] : cases) {
    EXPECT_EQ(Outcome(gram(in_file), {&locale, asked}), expected) << in_file << " " << asked;
  }
  EXPECT_EQ(Outcome(gram(1255)), "v;!");
}

TEST(Adtg, RefusesWhatItDoesNotUnderstandAndSaysWhy) {
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
      {Gram({{"v", 130, 9, 0}}, "\x07" + Byte(3) + "abc"), "not UTF-16"},
      {Gram({{"v", 130, 9, 0}}, "\x07" + Byte(2) + Short(0xDC00)), "not UTF-16"},
      {Gram({{"v", 7, 8, kFixed}}, "\x07" + Le(1e9)), "no calendar has"},
      {Gram({{"v", 133, 6, kFixed}}, "\x07" + Short(2023) + Short(2) + Short(29)), "no calendar"},
      {Gram({{"v", 5, 8, kFixed}}, "\x07" + Le(uint64_t{0x7FF8000000000000})),
       "number that is NaN or infinite"},
      {Gram({{"v", 129, 0xFFFFFFF0, kFixed}}, "\x07"), "ends too soon"},
      {Gram(kTexts, "\x0C"), "part 12 stands among its rows"},
      {Gram(kTexts, TextRow(1, "x") + "\x0C\x0C"), "part 12 stands"},
      {Gram(kTexts, "\x87" + Le(2)), "part 135 stands among its rows, of a record set that is not"},
      {Gram(kTexts, "\x70"), "part 112 stands"},
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
