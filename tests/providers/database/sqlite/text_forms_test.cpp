#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "providers/database/sqlite/like_pattern.h"
#include "providers/database/sqlite/statement.h"
#include "tests/providers/database/sqlite/settings_file.h"

namespace vok {
namespace {

using test::DescriptionOf;
using test::NumberOf;

TEST(Statement, SaysWhereItStopsUnderstanding) {
  const std::vector<std::pair<std::string, std::string>> bad = {
      {"", "character 1: select, delete or a table's name"},
      {"1Periods", "character 1: select, delete"},
      {"Periods where n like 'a'", "character 9: the end"},
      {"select from t", "character 13: \"from\""},
      {"select * from t where n > 'a'", "character 25: \"like\" or \"=\""},
      {"select * from t where n = 'a''", "character 31: the closing single quote"},
      {"select * from t where n like a", "character 30: a text in single quotes"},
      {"select * from t where n like 'a' or 1", "character 34: the end"},
      {"select * from דוח דוח", "character 19: the end"},
      {std::string(kLongestStatement + 1, 'x'), "at most 64000 bytes"},
  };
  for (const auto& [text, words] : bad) {
    const auto parse = [&text = text] { ParseStatement(text); };
    EXPECT_EQ(NumberOf(parse), failure_number::kSyntax) << text;
    EXPECT_NE(DescriptionOf(parse).find(words), std::string::npos) << DescriptionOf(parse);
  }
  EXPECT_EQ(ParseStatement(std::string(kLongestStatement, 'x')).table.size(), kLongestStatement);
}

TEST(LikePattern, MatchesAsJetDoes) {
  using Texts = std::vector<const char*>;
  const struct {
    const char* pattern;
    Texts matching, others;
  } rows[] = {
      {"Sales", {"SALES"}, {"Sales ", "Sale"}},
      {"straße", {"STRASSE"}, {}},
      {"*", {"", "anything"}, {}},
      {"*a*e", {}, {"Sales"}},
      {"a*b*c", {"aXbYbZc"}, {"aXbYbZ"}},
      {"?", {"א", "😀"}, {"", "ab"}},
      {"201#", {"2019"}, {"201x", "201٣"}},
      {"[a-c]x", {"BX"}, {"dx"}},
      {"[!a-c]x", {"dx"}, {"bx"}},
      {"[א-ת]", {"ג"}, {}},
      {"[а-я]", {"Ж"}, {}},
      {"[[]a", {"[a"}, {}},
      {"[?#]", {"#"}, {}},
      {"a[]b", {"ab"}, {}},
      {"[!]", {"!"}, {}},
      {"[a-]", {"-"}, {}},
      {"]*", {"]x"}, {}},
      {"[a!]", {"!"}, {}},
      {"%", {}, {"Sales"}},
      {"*\xFF", {"a\xFF"}, {}},
  };
  const IcuLocale locale("en_GB");
  for (const auto& [text, matching, others] : rows) {
    const LikePattern pattern(locale, text);
    for (const char* match : matching) EXPECT_TRUE(pattern.Matches(match)) << text << match;
    for (const char* other : others) EXPECT_FALSE(pattern.Matches(other)) << text << other;
  }
  std::string runs;
  for (int run = 0; run < 50; ++run) runs += "*a";
  EXPECT_FALSE(LikePattern(locale, runs + "b").Matches(std::string(2000, 'a'))) << "takes no ages";
  for (const char* pattern : {"a[b", "[", "*[a-", "[z-a]"}) {
    EXPECT_EQ(NumberOf([&] { LikePattern(locale, pattern); }), failure_number::kSyntax) << pattern;
  }
}

}  // namespace
}  // namespace vok
