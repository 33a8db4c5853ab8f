#include "cli/language_texts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <string_view>

#include "platform/text.h"
#include "tests/support/failures.h"
#include "tests/support/memory_host.h"
#include "texts/string_table.h"

namespace vok::cli {
namespace {

using recordset::FieldType;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using vok::test::FailureOf;

LanguageTexts Shipped() {
  std::ifstream file(SHIPPED_TEXTS, std::ios::binary);
  const std::string csv(std::istreambuf_iterator<char>(file), {});
  return ParseLanguageTexts(csv, SHIPPED_TEXTS);
}

TEST(LanguageTexts, ReadsACsvFileOfTranslators) {
  const struct {
    const char* csv;
    LanguageTexts expected;
  } cases[] = {
      {"number,1,2,3\n1,a,b,c\n", {{1, {"a", "b", "c"}}}},
      {"\xEF\xBB\xBFnumber,3 Русский,1 English\r\n 1205 ,В,\r\n7,,\"\"\r\n",
       {{1205, {"", "", "В"}}, {7, {}}}},
      {"number,2 עברית\n1,\" \"\"a,\r\n\tb\"\n", {{1, {"", " \"a,\r\n\tb"}}}},
  };
  for (const auto& [csv, expected] : cases) {
    const LanguageTexts texts = ParseLanguageTexts(csv, "t.csv");
    EXPECT_EQ(texts, expected) << csv;
    EXPECT_EQ(ParseLanguageTexts(PrintLanguageTexts(texts), "t.csv"), expected) << csv;
  }
}

TEST(LanguageTexts, ATableOfAnotherMakerIsReadOrRefused) {
  // Numbers as texts, rows that no search finds, the first of two.
  const recordset::Rowset other = {
      {{"LID", FieldType::kText}, {"SID", FieldType::kText}, {"t", FieldType::kText}},
      {{"2", "1001", "b"},
       {"1", "1000", "a"},
       {Null{}, "1", "x"},
       {"2", "1001", "later"},
       {"1", "1001", Null{}}}};
  EXPECT_EQ(FromLanguageTable(other, "Lang.rs"), (LanguageTexts{{1000, {"a"}}, {1001, {"", "b"}}}));
  const struct {
    recordset::Rowset table;
    const char* why;
  } bad[] = {
      {{{{"sId"}, {"b"}, {"c"}}, {}}, "no field lId"},
      {{{{"sId"}, {"lId"}}, {}}, "no third field"},
      {{{{"sId"}, {"lId"}, {"c"}}, {{1, 4, "x"}}}, "row 1 is of language 4"},
      {{{{"sId"}, {"lId"}, {"c"}}, {{"x", 1, "x"}}},
       "field sId of its row 1 is not a whole number"},
      {{{{"sId"}, {"lId"}, {"c"}}, {{1, 1, CellError{"why"}}}}, "cannot be shown, why"},
  };
  for (const auto& [wrong, why] : bad) {
    const Failure failure = FailureOf([&] { FromLanguageTable(wrong, "Lang.rs"); });
    EXPECT_EQ(failure.number(), failure_number::kUnspecified) << why;
    EXPECT_THAT(failure.description(), HasSubstr(why));
  }
}

TEST(LanguageTexts, NotesSayWhatATranslatorShouldLookAt) {
  EXPECT_THAT(LanguageNotes(OwnTexts()), IsEmpty());
  LanguageTexts texts = OwnTexts();
  for (LanguageText& line : texts) line.texts[1] = line.texts[0];
  const auto find = [&](int number) {
    return std::find_if(texts.begin(), texts.end(),
                        [&](const LanguageText& line) { return line.number == number; });
  };
  find(1100)->texts[1] = "האם למחוק את";
  find(1205)->texts[1] = "";
  texts.erase(find(1000));
  texts.push_back({9000, {"x"}});
  EXPECT_THAT(LanguageNotes(texts),
              ElementsAre("Language 1 lacks 1000", "Language 2 lacks 1000, 1205",
                          AllOf(HasSubstr("Language 2"), HasSubstr("blank"), HasSubstr(": 1100")),
                          "No window has a text of the number 9000"));
  EXPECT_THAT(LanguageNotes({{1000, {"a"}}})[0], HasSubstr(" more"));
}

TEST(LanguageTexts, TheShippedTextsAreCompleteAndEachAccessKeyIsOneControls) {
  EXPECT_THAT(LanguageNotes(Shipped()), IsEmpty());
  const vok::test::SimpleLocale locale;
  const struct {
    int first, last;
    const char* where;  ///< each key is there once
  } places[] = {{1200, 1260, "main"},    {1264, 1264, "main"},    {1267, 1267, "main"},
                {1272, 1272, "main"},    {1261, 1263, "File"},    {1270, 1271, "File"},
                {1265, 1266, "Periods"}, {1269, 1269, "Periods"}, {1273, 1276, "View"},
                {1268, 1268, "Help"},    {1277, 1277, "Help"},    {1300, 1349, "options"},
                {1350, 1359, "cube"},    {1400, 1409, "wizard"}};
  std::set<std::string> keys;
  for (const LanguageText& line : Shipped()) {
    EXPECT_EQ(line.texts[0], StringTableText(line.number)) << line.number;
    for (const std::string& text : line.texts) EXPECT_NE(text, "") << line.number;
    const auto* place = std::find_if(std::begin(places), std::end(places), [&](const auto& range) {
      return line.number >= range.first && line.number <= range.last;
    });
    if (place == std::end(places)) continue;
    for (std::size_t language = 0; language < kLanguageCount; ++language) {
      const std::string_view text = line.texts[language];
      const auto mark = text.find('&');
      if (mark == std::string_view::npos) continue;
      const std::string key(Utf16Prefix(text.substr(mark + 1), 1));
      EXPECT_TRUE(
          keys.insert(place->where + std::to_string(language) + locale.FoldCase(key)).second)
          << text;
    }
  }
  EXPECT_GE(keys.size(), 3U * 43);
}

}  // namespace
}  // namespace vok::cli
