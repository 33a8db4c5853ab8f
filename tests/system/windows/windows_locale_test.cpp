#include "system/windows/windows_locale.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "system/windows/utf16.h"

namespace vok::windows {
namespace {

TEST(WindowsLocale, ReadsDatesAsPeopleTypeThem) {
  const struct {
    const char* country;
    const char* text;
    Date date;
  } rows[] = {
      {"en_GB", "15/03/2024", Date::FromCivil(2024, 3, 15)},
      {"en_US", "3/15/2024", Date::FromCivil(2024, 3, 15)},
      {"de_DE", "15.03.2024", Date::FromCivil(2024, 3, 15)},
      {"he_IL", "15/03/2024", Date::FromCivil(2024, 3, 15)},
      {"ru_RU", "15.03.2024", Date::FromCivil(2024, 3, 15)},
      {"en_GB", "15 March 2024", Date::FromCivil(2024, 3, 15)},
      {"en_GB", "2024-03-15", Date::FromCivil(2024, 3, 15)},
      {"en_US", "2024-03-15", Date::FromCivil(2024, 3, 15)},
      {"en_GB", "29/02/2024 12:00", Date{Date::FromCivil(2024, 2, 29).serial + 0.5}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.country) + " " + row.text);
    const auto read = WindowsLocale(row.country).ParseDate(row.text);
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->serial, row.date.serial);
  }
  for (const char* text : {"", "abc", "30/02/2024 x", "2024-13-45"}) {
    EXPECT_FALSE(WindowsLocale("en_GB").ParseDate(text).has_value()) << text;
  }
}

TEST(WindowsLocale, WritesDatesThatItReadsAgain) {
  const Date noon{Date::FromCivil(2024, 3, 15).serial + 0.5};
  for (const char* country : {"en_GB", "en_US", "de_DE", "he_IL", "ru_RU"}) {
    SCOPED_TRACE(country);
    const WindowsLocale locale(country);
    const auto day = locale.ParseDate(locale.ShortDate(noon));
    ASSERT_TRUE(day.has_value()) << locale.ShortDate(noon);
    EXPECT_EQ(day->serial, noon.DayOnly().serial);
    const auto moment = locale.ParseDate(locale.DateText(noon));
    ASSERT_TRUE(moment.has_value()) << locale.DateText(noon);
    EXPECT_EQ(moment->serial, noon.serial);
  }
  EXPECT_EQ(WindowsLocale("en_GB").ShortDate(noon), "15/03/2024");
  EXPECT_EQ(WindowsLocale("en_GB").DateText(Date{}), "00:00:00");
  EXPECT_EQ(WindowsLocale("en_GB").DateText(noon.DayOnly()), "15/03/2024");
  EXPECT_THROW(WindowsLocale("en_GB").ShortDate(Date{1e9}), Failure);
  EXPECT_THROW(WindowsLocale("no such country"), Failure);
}

TEST(WindowsLocale, WritesNumbersAsTheCountryDoes) {
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
    EXPECT_EQ(WindowsLocale(country).NumberText(number, decimals), text);
  }
}

TEST(WindowsLocale, FoldsCaseInEveryScriptAndInEveryCountryAlike) {
  const std::pair<const char*, const char*> rows[] = {
      {"Straße", "STRASSE"},  {"ΟΔΟΣ", "οδος"},         {"οδος", "οδοσ"},   {"Отчёт Ё", "ОТЧЁТ ё"},
      {"Ünïcôdé", "üNÏCÔDÉ"}, {"Istanbul", "iSTANBUL"}, {"דוח A", "דוח a"}, {"", ""},
  };
  for (const char* country : {"en_US", "tr_TR"}) {
    const WindowsLocale locale(country);
    for (const auto& [a, b] : rows) EXPECT_EQ(locale.FoldCase(a), locale.FoldCase(b)) << a;
    EXPECT_NE(locale.FoldCase("а"), locale.FoldCase("a")) << "Cyrillic and Latin";
    EXPECT_EQ(locale.FoldCase("𝄞 \xFF"), "𝄞 �");
  }
}

TEST(Utf16, TurnsTextsAroundWhole) {
  const std::string text = "a é Я ש 𝄞";
  EXPECT_EQ(Utf8(Utf16(text)), text);
  EXPECT_EQ(Utf16("𝄞").size(), 2U);
  EXPECT_EQ(Utf8(std::wstring(1, L'\xD834')), "�");
  EXPECT_EQ(Utf8OfAnsi(AnsiText("plain")), "plain");
}

}  // namespace
}  // namespace vok::windows
