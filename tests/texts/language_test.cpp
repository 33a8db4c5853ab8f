#include "texts/language.h"

#include <gtest/gtest.h>

#include "tests/support/language_host.h"
#include "texts/string_table.h"
#include "texts/text_numbers.h"

namespace vok {
namespace {

using recordset::FieldType;

class LanguageTest : public testing::Test {
 protected:
  std::string Text(int number) { return GetLangString(language, number); }
  void Init() { InitLanguage(host.host, environment, language); }

  test::LanguageHost host;
  Environment environment;
  Language language;
};

TEST_F(LanguageTest, TheIniFileChoosesTheLanguage) {
  host.SetTable({{1205, 1, "one"}, {1205, 2, "two"}, {1205, 3, "three"}});
  struct {
    const char* ini;
    int language;
    const char* text;
  } const cases[] = {{"", 0, "one"},    {"0", 0, "one"},  {"1", 1, "two"},   {"2", 2, "three"},
                     {"abc", 0, "one"}, {"3", 0, "one"},  {"01", 0, "one"},  {" 1", 0, "one"},
                     {"-1", 0, "one"},  {"1 ", 0, "one"}, {"2.0", 0, "one"}, {"1\x01", 0, "one"}};
  for (const auto& [ini, wanted, text] : cases) {
    host.SetIni(ini);
    EXPECT_EQ(GetUILanguage(host.host, environment), wanted) << ini;
    Init();
    EXPECT_EQ(language.UILanguage, wanted) << ini;
    EXPECT_EQ(Text(1205), text) << ini;
  }
}

TEST_F(LanguageTest, IsReadAsItsLettersAre) {
  struct {
    const char* text;
    bool from_right;
  } const cases[] = {
      {"Data source", false}, {"&מקור (QEL)", true}, {"QEL: مصدر", true}, {"Источник", false},
      {"Աղբյուր", false},     {"ࠀ", true},           {"अ", false},        {"", false}};
  for (const auto& [text, from_right] : cases) {
    host.SetTable({{text_number::kDataSource, 1, text}});
    Init();
    EXPECT_EQ(IsReadFromRight(language), from_right) << text;
  }
}

TEST_F(LanguageTest, ANumberFallsBackToTheComponentsTextAndThenToItself) {
  ASSERT_FALSE(StringTableText(1205).empty());
  ASSERT_TRUE(StringTableText(1999).empty());
  const std::string own = StringTableText(1205);
  struct {
    const char* what;
    std::vector<recordset::Row> rows;
    std::string own_number;    ///< what 1205 gives
    std::string other_number;  ///< what 1999 gives, which has no text of the component's own
  } const cases[] = {
      {"a row", {{1205, 1, "a"}, {1999, 1, "b"}}, "a", "b"},
      {"the first of two rows", {{1205, 1, "a"}, {1205, 1, "b"}}, "a", "1999"},
      {"after later rows", {{1999, 1, "b"}, {1000, 1, "x"}, {1205, 1, "a"}}, "a", "b"},
      {"another number alone", {{1000, 1, "x"}}, own, "1999"},
      {"another language alone", {{1205, 2, "x"}, {1999, 2, "y"}}, own, "1999"},
      {"no rows", {}, own, "1999"},
      {"an empty text", {{1205, 1, ""}}, "", "1999"},
      {"no text", {{1205, 1, Null{}}, {1999, 1, Null{}}}, own, "1999"},
  };
  for (const auto& [what, rows, own_number, other_number] : cases) {
    host.SetTable(rows);
    Init();
    EXPECT_FALSE(language.LanguageMissing) << what;
    EXPECT_EQ(Text(1999), other_number) << what;
    EXPECT_EQ(Text(1205), own_number) << what;
    EXPECT_EQ(Text(1999), other_number) << what << ", asked again";
  }
}

TEST_F(LanguageTest, WithoutATableThatCanBeReadTheComponentsTextsServe) {
  const std::string own = StringTableText(1102);
  EXPECT_EQ(own, "Invalid date entered at period");
  EXPECT_EQ(Text(1102), own) << "before any initialisation";
  Init();
  EXPECT_TRUE(language.LanguageMissing);
  EXPECT_EQ(Text(1102), own);
  EXPECT_EQ(Text(1999), "");

  host.File() = "no record set";
  EXPECT_TRUE(OpenLanguageTable(host.host, language));
  Init();
  EXPECT_FALSE(language.LanguageMissing);
  EXPECT_EQ(Text(1102), own);

  host.SetTable({{1102, 1, "a"}});
  Init();
  EXPECT_EQ(Text(1102), "a");
  host.memory.files.files.clear();  // the open table stays, unused
  Init();
  EXPECT_TRUE(language.LanguageMissing);
  EXPECT_EQ(Text(1102), own);
}

TEST_F(LanguageTest, TablesOfOtherMakersServeAsFarAsTheyGo) {
  // Numbers as texts, another order of the first two fields, more fields.
  host.SetTable({{"1", "1205", "a", 9}}, {{"LID", FieldType::kText},
                                          {"SID", FieldType::kText},
                                          {"hebrew", FieldType::kText},
                                          {"id", FieldType::kInteger}});
  Init();
  EXPECT_EQ(Text(1205), "a");
  host.SetTable({{1205, 1}}, {{"sId", FieldType::kInteger}, {"lId", FieldType::kInteger}});
  Init();
  EXPECT_EQ(Text(1205), StringTableText(1205)) << "no third field";
  host.SetTable(
      {{1, 1, "a"}},
      {{"number", FieldType::kInteger}, {"lId", FieldType::kInteger}, {"text", FieldType::kText}});
  Init();
  EXPECT_EQ(Text(1205), StringTableText(1205)) << "no numbers";
}

}  // namespace
}  // namespace vok
