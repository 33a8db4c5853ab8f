// Recorded files of the binary form, whole and with one place changed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/providers/recordset/rowset_tools.h"
#include "tests/support/memory_host.h"

namespace vok::recordset::test {
namespace {

using std::string_literals::operator""s;
using testing::HasSubstr;
using testing::StartsWith;

/// The file with the bytes that stand there once replaced.
std::string Changed(std::string bytes, const std::string& from, const std::string& to) {
  const auto at = bytes.find(from);
  EXPECT_NE(at, std::string::npos);
  EXPECT_EQ(bytes.find(from, at + 1), std::string::npos) << "stands there twice";
  return bytes.replace(at, from.size(), to);
}

const std::string kCounts = "\2\0\3\0\3\0"s;  // of the columns to be seen and of all

TEST(Adtg, ReadsRowsNullsAndChangesThatWait) {
  const std::string rows = Recorded("pending.rs");
  EXPECT_EQ(Outcome(rows),
            "sId,lId,text;1000,1,OK;1001,-,כן;1002,-,-;1003,1,i;1005,1,-;1006,-,-;1007,-,c;"
            "1011,5,-;1009,-,n;1010,3,-");
  EXPECT_EQ(Outcome(Changed(rows, kCounts, "\2\0\2\0\3\0"s)),
            "sId,lId;1000,1;1001,-;1002,-;1003,1;1005,1;1006,-;1007,-;1011,5;1009,-;1010,3");
}

TEST(Adtg, ReadsEveryTypeItKnows) {
  const std::string long_text(300, 'x');
  const std::string read = Outcome(Recorded("types.rs"));
  EXPECT_EQ(read.substr(read.find(';') + 1),
            "-2,-70000,0.5,1e+10,-1.2345,#45351.5,yes,-3,253,65533,4294967295,-5e+09,"
            "1099511627776,#45351,#0.25,#45351.5,-184467440737095520,12.345,0,#25569,"
            "{01234567-89AB-CDEF-0123-456789ABCDEF},!,!,!,!,!,!,ab  ,!,abc,abc,ab,b,ab,ab," +
                long_text + ",ab," + long_text + ",😀")
      << read;
  // Where four bytes of a length do not fit, it has one.
  EXPECT_EQ(Outcome(Recorded("short_texts.rs")), "v;ab");
}

TEST(Adtg, PassesOverRecordSetsWithinTheRows) {
  const std::string children = Recorded("children.rs");
  const std::string expected = "sId,lines,text,more;2,!,y,!;3,!,-,!;4,!,-,!";
  EXPECT_EQ(Outcome(children), expected + ";5,!,z,!");
  EXPECT_EQ(Outcome(Recorded("children_counted.rs")), expected);
  const std::string row_of_grandchild = "\x87\x08\0\0\0\x70\x11\1\0"s;
  EXPECT_THAT(Outcome(Changed(children, row_of_grandchild, "\x87\x06\0\0\0"s)),
              HasSubstr("that is not described"));
  EXPECT_THAT(Outcome(Changed(children, row_of_grandchild, "\x8A\x08\0\0\0"s)),
              HasSubstr("part 10 stands"));
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
  const std::string hebrew = Recorded("hebrew.rs");
  const struct {
    std::string in_file;
    int asked;
    const char* expected;
  } cases[] = {{"\0\0"s, 0, "v;\u00E0"},
               {"\xE7\x04", 0, "v;\u05D0"},
               {"\xB0\x04", 0, "v;\u00E0"},
               {"\xE4\x04", 1255, "v;\u05D0"},
               {"\xE7\x04", 1252, "v;!"}};
  for (const auto& [in_file, asked, expected] : cases) {
    EXPECT_EQ(Outcome(Changed(hebrew, "\xE7\x04", in_file), {&locale, asked}), expected);
  }
  EXPECT_EQ(Outcome(hebrew), "v;!");
}

TEST(Adtg, RefusesWhatItDoesNotUnderstandAndSaysWhy) {
  const std::string plain = Recorded("plain.rs");
  const std::string types = Recorded("types.rs");
  const std::string row = "\7\xC0\1\0\0\0\1\0\2x\0"s;
  const auto with = [&](std::size_t at, char byte) {
    std::string changed = plain;
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
      {plain + "x", "more bytes follow"},
      {plain.substr(0, plain.size() - 1), "ends too soon"},
      {Changed(plain, kCounts, "\2\0\4\0\3\0"s), "more to be seen than there are"},
      {Changed(plain, "\xF2\1\0\2\0\3\0"s, "\xF2\1\0\1\0\3\0"s), "out of order"},
      {Changed(plain, row, "\x0C"), "part 12 stands among its rows"},
      {Changed(plain, row, row + "\x0C\x0C"), "part 12 stands"},
      {Changed(plain, row, "\x87\2\0\0\0"s),
       "part 135 stands among its rows, of a record set that is not"},
      {Changed(plain, row, "\x70"), "part 112 stands"},
      {Changed(types, "\2b\0"s, "\3abc"), "not UTF-16"},
      {Changed(types, "\2b\0"s, "\2\0\xDC"s), "not UTF-16"},
      {Changed(types, "\0\0\0\0\xF0\x24\xE6\x40"s, "\0\0\0\0\x65\xCD\xCD\x41"s), "no calendar has"},
      {Changed(types, "\xE8\7\2\0\x1D\0\6\0"s, "\xE7\7\2\0\x1D\0\6\0"s), "no calendar"},
      {Changed(types, "\0\0\0\x20\x5F\xA0\2\x42"s, "\0\0\0\0\0\0\xF8\x7F"s),
       "number that is NaN or infinite"},
      {Changed(types, "\x81\0\4\0\0\0"s, "\x81\0\xF0\xFF\xFF\xFF"s), "ends too soon"},
  };
  for (const auto& [bytes, why] : cases) {
    EXPECT_THAT(Outcome(bytes), AllOf(StartsWith("!"), HasSubstr(why)));
  }
}

}  // namespace
}  // namespace vok::recordset::test
