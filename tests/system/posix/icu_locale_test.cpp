#include "system/posix/icu_locale.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ranges>
#include <string>
#include <vector>

namespace vok {
namespace {

double Day(int year, int month, int day) { return Date::FromCivil(year, month, day).serial; }

std::vector<std::string> Split(std::string_view texts) {
  std::vector<std::string> parts;
  for (const auto part : std::views::split(texts, '|'))
    parts.emplace_back(part.begin(), part.end());
  return parts;
}

TEST(IcuLocale, ReadsTextsOfCodePages) {
  const struct {
    const char* locale;
    int code_page;
    const char* bytes;
    const char* text;  ///< nullptr: refused
  } rows[] = {
      {"en_US", 1255, "\xF9\xEC\xE5\xED", "שלום"},
      {"he_IL", 0, "\xF9\xEC\xE5\xED", "שלום"},
      {"ru_RU", 0, "\xCF\xF0\xE8", "При"},
      {"de_DE", 0, "\xDF", "ß"},
      {"C", 0, "\x80", "€"},
      {"en_US", 932, "\x93\xFA", "日"},
      {"en_US", 932, "\x93", nullptr},
      {"en_US", 9, "a", nullptr},
      {"he_IL", 0, "", ""},
  };
  for (const auto& [locale, code_page, bytes, text] : rows) {
    const auto read = IcuLocale(locale).FromCodePage(bytes, code_page);
    EXPECT_EQ(read.value_or("nothing"), text == nullptr ? "nothing" : text) << locale << code_page;
  }
}

TEST(IcuLocale, ReadsDatesAsPeopleTypeThem) {
  const double date = Day(2024, 2, 5);
  const struct {
    const char* locale;
    const char* texts;
    double serial;
  } rows[] = {
      {"he_IL", "5.2.2024|05/02/2024|5-2-24| 5 2 2024 |2024-02-05", date},
      {"he_IL", "5 בפברואר 2024|5 פברואר 2024|5 בפבר׳ 2024|יום שני, 5 בפברואר 2024", date},
      {"de_DE.UTF-8", "05.02.2024", date},
      {"de_DE", "5.2.24|5. Februar 2024|5. FEB. 2024|Montag, 5. Februar 2024", date},
      {"de_DE", "31. März 2024|31 Mrz 2024", Day(2024, 3, 31)},
      {"he_IL", "31 מרס 2024|31 במרץ 2024", Day(2024, 3, 31)},
      {"tr_TR", "5 Şubat 2024|5 ŞUBAT 2024", date},
      {"sr_RS.UTF-8@latin", "5 februar 2024", date},
      {"sr_RS", "5 фебруар 2024", date},
      {"uz_UZ@cyrillic", "5 феврал 2024", date},
      {"en_US", "2/5/2024|2/5/24|02-05-2024|2024-02-05|2/5/2024 12:00:00 am", date},
      {"en_US", "Feb 5, 2024|February 5, 2024|5 Feb 2024|Monday, February 5, 2024", date},
      {"en_US", "Sept 5, 2024", Day(2024, 9, 5)},
      {"C", "2/5/2024", date},
      {"", "2/5/2024", date},
      {"en-GB", "5/2/2024", date},
      {"en_GB", "05/02/24|5 February 2024", date},
      {"ru_RU", "05.02.2024|5 фев 2024|20240205", date},
      {"ru_RU", "5 февраля 2024 г.|понедельник, 5 февраля 2024 г.", date},
      {"fr_FR", "5 févr. 2024", date},
      {"es_ES", "5 de febrero de 2024", date},
      {"sv_SE", "2024-02-05|24-02-05", date},
      {"hu_HU", "2024. 02. 05.|2024. február 5.", date},
      {"ja_JP", "2024年2月5日", date},
      {"ar_EG", "٥/٢/٢٠٢٤", date},
      {"bg_BG", "5.02.2024 г.", date},
      {"de_DE", "2024-02-05T06:00|2024-02-05T06:00:00.000", date + 0.25},
      {"en_US", "2/5/2024 6:00 PM", date + 0.75},
      {"en_GB", "5/2/2024 18:00:00", date + 0.75},
      {"ko_KR", "2024. 2. 5. 오후 6:00", date + 0.75},
      {"he_IL", "00:00:00", 0},
      {"en_US", "12:00:00 AM", 0},
      {"de_DE", "12:00", 0.5},
      {"en_GB", "1/1/29", Day(2029, 1, 1)},
      {"en_GB", "31/12/29", Day(2029, 12, 31)},
      {"en_GB", "1/1/30", Day(1930, 1, 1)},
      {"en_GB", "31/12/99", Day(1999, 12, 31)},
      {"en_GB", "29/2/2024", Day(2024, 2, 29)},
      {"en_GB", "1/1/0100", Day(100, 1, 1)},
      {"en_GB", "31/12/9999", Day(9999, 12, 31)},
  };
  for (const auto& [locale, texts, serial] : rows) {
    for (const std::string& text : Split(texts)) {
      const auto read = IcuLocale(locale).ParseDate(text);
      ASSERT_TRUE(read.has_value()) << locale << " " << text;
      EXPECT_DOUBLE_EQ(read->serial, serial) << locale << " " << text;
    }
  }
}

TEST(IcuLocale, RefusesWhatIsNoDate) {
  std::vector<std::string> texts = Split(
      "| "
      "|abc|31/02/2024|29/2/2023|31/4/2024|0/1/2024|1/0/2024|1/13/2024|32/1/2024|5/2|5|2024|1/2/3|"
      "1/2/024|1/2/12024|1/1/0099|5//2/2024|/5/2/2024|-5/2/2024|5/2/2024/|5/2/2024/7|1,234,567|"
      "5,2,2024|12.5|5 Foo 2024|Feb 2024|5 Feb Feb 2024|5 Ju 2024|5 Jun Mon|5/2/2024x|5/2/2024 x|"
      "5/2/2024 24:00|5/2/2024 6:60|5/2/2024 6:|5/2/2024 :30|5/2/2024 13:00 pm|5/2/2024 0:00 pm|"
      "6:00:00:00|2024-02-05T06:00Z|20240231|202402055|5+2+2024|5/2/99999999999999999999|\xFF\xFE");
  texts.insert(texts.end(), {std::string("5/2/2024\0", 9), std::string(300, '1')});
  const IcuLocale locale("en_GB");
  for (const auto& text : texts) EXPECT_FALSE(locale.ParseDate(text)) << "\"" << text << "\"";
}

TEST(IcuLocale, WritesDatesThatItReadsAgain) {
  const Date day = Date::FromCivil(2024, 2, 5);
  const Date moment{day.serial + (18 * 3600 + 30 * 60 + 5) / 86400.0};
  const std::vector<std::pair<const char*, std::string>> rows = {
      {"he_IL", "5.2.2024|5.2.2024 18:30:05|00:00:00"},
      {"de_DE", "05.02.2024|05.02.2024 18:30:05|00:00:00"},
      {"en_US", "2/5/2024|2/5/2024 6:30:05 PM|12:00:00 AM"},
      {"en_GB", "05/02/2024|05/02/2024 18:30:05|00:00:00"},
      {"ru_RU", "05.02.2024|05.02.2024 18:30:05|00:00:00"},
      {"sv_SE", "2024-02-05|2024-02-05 18:30:05|00:00:00"},
      {"fi_FI", "5.2.2024|5.2.2024 18:30:05|00:00:00"},
      {"ar_EG", "5/2/2024|5/2/2024 6:30:05 م|12:00:00 ص"},
      {"th_TH", "5/2/2024|5/2/2024 18:30:05|00:00:00"},
  };
  for (const auto& [name, written] : rows) {
    const IcuLocale locale(name);
    std::vector<std::string> texts;
    for (const Date date : {day, moment, Date{}}) {
      texts.push_back(locale.DateText(date));
      EXPECT_EQ(locale.ParseDate(texts.back()), date) << name;
    }
    EXPECT_EQ(texts, Split(written));
    EXPECT_EQ(locale.ShortDate(moment), texts[0]);
    for (double serial = Day(1850, 1, 1); serial < Day(2050, 1, 1); serial += 97) {
      ASSERT_EQ(locale.ParseDate(locale.ShortDate(Date{serial})), Date{serial}) << name << serial;
    }
  }
}

TEST(IcuLocale, WritesNumbersAsTheCountryDoes) {
  const struct {
    const char* name;
    double number;
    int decimals;
    const char* text;
  } rows[] = {{"he_IL", -5, 0, "\u200E-5"},
              {"ar_EG", 1234, 0, "1,234"},
              {"hi_IN", 1234567, 0, "12,34,567"},
              {"C", 0.26, 1, "0.3"}};
  for (const auto& [name, number, decimals, text] : rows) {
    EXPECT_EQ(IcuLocale(name).NumberText(number, decimals), text) << name;
  }
  EXPECT_TRUE(IcuLocale("en_CA").UsesLetterPaper());
  EXPECT_FALSE(IcuLocale("he_IL").UsesLetterPaper());
}

TEST(IcuLocale, TakesTheFirstNameThatTheEnvironmentSets) {
  for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) ::unsetenv(variable);
  EXPECT_EQ(IcuLocale::NameFromEnvironment(), "");
  ::setenv("LANG", "de_DE.UTF-8", 1);
  ::setenv("LC_TIME", "he_IL.UTF-8", 1);
  ::setenv("LC_ALL", "", 1);
  EXPECT_EQ(IcuLocale::NameFromEnvironment(), "he_IL.UTF-8");
}

}  // namespace
}  // namespace vok
