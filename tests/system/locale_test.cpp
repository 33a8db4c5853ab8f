#include <gtest/gtest.h>

#include "native.h"
#include "platform/failure.h"

namespace vok {
namespace {

TEST(LocaleTest, ReadsDatesAsPeopleTypeThem) {
  const Date day = Date::FromCivil(2024, 3, 15);
  const struct {
    const char* country;
    const char* text;
    Date date;
  } rows[] = {
      {"en_GB", "15/03/2024", day},
      {"en_US", "3/15/2024", day},
      {"de_DE", "15.03.2024", day},
      {"he_IL", "15/03/2024", day},
      {"ru_RU", "15.03.2024", day},
      {"en_GB", "15 March 2024", day},
      {"en_GB", "2024-03-15", day},
      {"en_US", "2024-03-15", day},
      {"en_GB", "15/03/2024 12:00", Date{day.serial + 0.5}},
  };
  for (const auto& [country, text, date] : rows) {
    EXPECT_EQ(test::NativeLocale(country).ParseDate(text), date) << country << " " << text;
  }
  for (const char* text : {"", "abc", "30/02/2024 x", "2024-13-45"}) {
    EXPECT_FALSE(test::NativeLocale("en_GB").ParseDate(text).has_value()) << text;
  }
}

TEST(LocaleTest, WritesDatesThatItReadsAgain) {
  const Date noon{Date::FromCivil(2024, 3, 15).serial + 0.5};
  for (const char* country : {"en_GB", "en_US", "de_DE", "he_IL", "ru_RU"}) {
    const test::NativeLocale locale(country);
    for (const Date date : {noon, Date{-1}, Date{}, Date{0.5}, Date::FromCivil(1500, 3, 15)}) {
      EXPECT_EQ(locale.ParseDate(locale.ShortDate(date)), date.DayOnly()) << country;
      EXPECT_EQ(locale.ParseDate(locale.DateText(date)), date) << country;
    }
  }
  const test::NativeLocale british("en_GB");
  EXPECT_EQ(british.ShortDate(noon), "15/03/2024");
  EXPECT_EQ(british.DateText(noon.DayOnly()), "15/03/2024");
  EXPECT_EQ(british.ShortDate(Date{}), "30/12/1899");
  EXPECT_EQ(british.DateText(Date{}), "00:00:00");
}

TEST(LocaleTest, WritesNumbersAsTheCountryDoes) {
  const struct {
    const char* country;
    double number;
    int decimals;
    const char* text;
  } rows[] = {{"en_GB", -1234567.891, 2, "-1,234,567.89"},
              {"de_DE", 1234.5, 1, "1.234,5"},
              {"ru_RU", 1234, 0, "1\u00A0234"},
              {"en_US", -0.001, 2, "0.00"},
              {"en_GB", 999.999, 2, "1,000.00"},
              {"en_GB", 0.25, 1, "0.2"}};
  for (const auto& [country, number, decimals, text] : rows) {
    EXPECT_EQ(test::NativeLocale(country).NumberText(number, decimals), text);
  }
}

TEST(LocaleTest, FoldsCaseInEveryScriptAndInEveryCountryAlike) {
  const std::pair<const char*, const char*> rows[] = {
      {"Straße", "STRASSE"},  {"ΟΔΟΣ", "οδος"},         {"οδος", "οδοσ"},   {"Отчёт Ё", "ОТЧЁТ ё"},
      {"Ünïcôdé", "üNÏCÔDÉ"}, {"Istanbul", "iSTANBUL"}, {"דוח A", "דוח a"}, {"", ""},
  };
  for (const char* country : {"en_US", "tr_TR"}) {
    const test::NativeLocale locale(country);
    for (const auto& [a, b] : rows) EXPECT_EQ(locale.FoldCase(a), locale.FoldCase(b)) << a;
    EXPECT_NE(locale.FoldCase("а"), locale.FoldCase("a")) << "Cyrillic and Latin";
    EXPECT_EQ(locale.FoldCase("𝄞 \xFF"), "𝄞 �");
  }
}

}  // namespace
}  // namespace vok
