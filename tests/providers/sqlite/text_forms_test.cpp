#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/failure.h"
#include "providers/posix/icu_locale.h"
#include "providers/sqlite/connection_text.h"
#include "providers/sqlite/like_pattern.h"
#include "providers/sqlite/statement.h"
#include "tests/providers/sqlite/settings_file.h"

namespace vok {
namespace {

using test::DescriptionOf;
using test::NumberOf;

TEST(ConnectionText, NamesTheFile) {
  const std::string jet = "Provider=Microsoft.Jet.OLEDB.4.0;";
  const std::vector<std::pair<std::string, std::string>> good = {
      {jet + "Data Source=/s/a.mdb", "/s/a.mdb"},
      {jet + ";Data Source=C:\\s\\a.mdb", "C:\\s\\a.mdb"},
      {jet + "Data Source=a.mdb;Jet OLEDB:Database Password=;Jet OLEDB:Engine Type=5;", "a.mdb"},
      {" PROVIDER = microsoft.jet.oledb.4.0 ; data source =  my file.mdb ;; ", "my file.mdb"},
      {jet + "Data Source=\"a;b\"\"c.mdb\" ;User ID=Admin", "a;b\"c.mdb"},
      {jet + "Data Source='it''s.mdb'", "it's.mdb"},
      {jet + "Data Source=a=b.mdb", "a=b.mdb"},
  };
  for (const auto& [text, source] : good) {
    EXPECT_EQ(ParseConnectionText(text).data_source, source) << text;
    const auto again = ParseConnectionText(ParseConnectionText(text).ToText());
    EXPECT_EQ(again.data_source, source) << text;
  }
}

TEST(ConnectionText, RefusesWhatItDoesNotKnow) {
  const std::string jet = "Provider=Microsoft.Jet.OLEDB.4.0;";
  const std::vector<std::pair<std::string, int32_t>> bad = {
      {"", failure_number::kProviderNotFound},
      {"Data Source=a.mdb", failure_number::kProviderNotFound},
      {"Provider=MSOLAP;Data Source=a.cub", failure_number::kProviderNotFound},
      {jet, failure_number::kUnspecified},
      {jet + "Data Source=", failure_number::kUnspecified},
      {jet + "Data Source", failure_number::kUnspecified},
      {jet + "=a.mdb", failure_number::kUnspecified},
      {jet + "Data Source=\"a.mdb", failure_number::kUnspecified},
      {jet + "Data Source=\"a.mdb\"b", failure_number::kUnspecified},
      {jet + "Data Source=a.mdb;Colour=red", failure_number::kUnspecified},
      {jet + "Data Source=a.mdb;Jet OLEDB:Database Password=x", failure_number::kUnspecified},
  };
  for (const auto& [text, number] : bad) {
    EXPECT_EQ(NumberOf([&] { ParseConnectionText(text); }), number) << text;
  }
}

TEST(Statement, ReadsTheFormsThatSettingsUse) {
  using Kind = Statement::Kind;
  struct Row {
    const char* text;
    Kind kind;
    std::vector<std::string> columns;
    const char* table;
    const char* column;  // nullptr: no filter
    const char* pattern;
  };
  const std::vector<Row> rows = {
      {"Periods", Kind::kSelect, {}, "Periods", nullptr, ""},
      {" [My Sets] ; ", Kind::kSelect, {}, "My Sets", nullptr, ""},
      {"SELECT * FROM Periods ", Kind::kSelect, {}, "Periods", nullptr, ""},
      {"select SetName,CubeFile from DataSourceInfo ",
       Kind::kSelect,
       {"SetName", "CubeFile"},
       "DataSourceInfo",
       nullptr,
       ""},
      {"Select [a b] ,\r\n c\tFrom t;", Kind::kSelect, {"a b", "c"}, "t", nullptr, ""},
      {"SELECT * FROM Periods WHERE setname like '2024'",
       Kind::kSelect,
       {},
       "Periods",
       "setname",
       "2024"},
      {"SELECT * FROM t WHERE n LiKe ''", Kind::kSelect, {}, "t", "n", ""},
      {"select*from t where n like'דוח \"1\"; --'  ", Kind::kSelect, {}, "t", "n", "דוח \"1\"; --"},
      {"delete * from Periods WHERE setname like 'a*'",
       Kind::kDelete,
       {},
       "Periods",
       "setname",
       "a*"},
      {"DELETE FROM Periods", Kind::kDelete, {}, "Periods", nullptr, ""},
  };
  for (const Row& row : rows) {
    const Statement statement = ParseStatement(row.text);
    EXPECT_EQ(statement.kind, row.kind) << row.text;
    EXPECT_EQ(statement.columns, row.columns) << row.text;
    EXPECT_EQ(statement.table, row.table) << row.text;
    EXPECT_EQ(statement.filter.has_value(), row.column != nullptr) << row.text;
    if (!statement.filter || row.column == nullptr) continue;
    EXPECT_EQ(statement.filter->column, row.column) << row.text;
    EXPECT_EQ(statement.filter->pattern, row.pattern) << row.text;
  }
}

TEST(Statement, SaysWhereItStopsUnderstanding) {
  const std::vector<std::pair<std::string, std::string>> bad = {
      {"", "character 1: select, delete or a table's name"},
      {"1Periods", "character 1: select, delete"},
      {"[]", "character 2: select, delete"},
      {"[Periods", "character 2: the closing bracket"},
      {"Periods where n like 'a'", "character 9: the end"},
      {"select from t", "character 13: \"from\""},
      {"select a, from t", "character 16: \"from\""},
      {"select * t", "character 10: \"from\""},
      {"select * from", "character 14: a table's name"},
      {"select * from t where", "character 22: a column's name"},
      {"select * from t where n = 'a'", "character 25: \"like\""},
      {"select * from t where n like a", "character 30: a text in single quotes"},
      {"select * from t where n like 'a", "character 31: the closing single quote"},
      {"select * from t where n like 'O'Neil'", "character 33: the end"},
      {"select * from t where n like 'a''b'", "character 33: the end"},
      {"select * from t where n like 'a' or 1", "character 34: the end"},
      {"select * from t; drop", "character 18: the end"},
      {"select * from דוח דוח", "character 19: the end"},
      {"insert into t", "character 8: the end"},
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
  struct Row {
    const char* pattern;
    const char* text;
    bool matches;
  };
  const std::vector<Row> rows = {
      {"Sales", "SALES", true},
      {"Sales", "Sales ", false},
      {"Sales", "Sale", false},
      {"", "", true},
      {"", "a", false},
      {"מכירות", "מכירות", true},
      {"ПРОДАЖИ", "продажи", true},
      {"straße", "STRASSE", true},
      {"*", "", true},
      {"*", "anything", true},
      {"S*", "sales", true},
      {"*s", "Sales", true},
      {"*a*e*", "Sales", true},
      {"*a*e", "Sales", false},
      {"a*b*c", "aXbYbZc", true},
      {"a*b*c", "aXbYbZ", false},
      {"**x**", "x", true},
      {"?", "א", true},
      {"?", "😀", true},
      {"?", "", false},
      {"?", "ab", false},
      {"П?", "пя", true},
      {"201#", "2019", true},
      {"201#", "201x", false},
      {"201#", "201٣", false},
      {"[a-c]x", "BX", true},
      {"[a-c]x", "dx", false},
      {"[!a-c]x", "dx", true},
      {"[!a-c]x", "bx", false},
      {"[א-ת]", "ג", true},
      {"[а-я]", "Ж", true},
      {"[*]", "*", true},
      {"[*]", "x", false},
      {"[[]a", "[a", true},
      {"[?#]", "#", true},
      {"a[]b", "ab", true},
      {"[!]", "!", true},
      {"[a-]", "-", true},
      {"[-a]", "-", true},
      {"]*", "]x", true},
      {"a!", "A!", true},
      {"[a!]", "!", true},
      {"%", "Sales", false},
      {"_", "S", false},
      {"*\xFF", "a\xFF", true},
  };
  const IcuLocale locale("en_GB");
  for (const Row& row : rows) {
    EXPECT_EQ(LikePattern(locale, row.pattern).Matches(row.text), row.matches)
        << row.pattern << " on " << row.text;
  }
  for (const char* pattern : {"a[b", "[", "*[a-", "[z-a]"}) {
    EXPECT_EQ(NumberOf([&] { LikePattern(locale, pattern); }), failure_number::kSyntax) << pattern;
  }
}

TEST(LikePattern, ManyRunsOnALongTextTakeNoAges) {
  const IcuLocale locale("en_GB");
  std::string pattern;
  for (int run = 0; run < 50; ++run) pattern += "*a";
  EXPECT_FALSE(LikePattern(locale, pattern + "b").Matches(std::string(2000, 'a')));
}

}  // namespace
}  // namespace vok
