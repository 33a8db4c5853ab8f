#include "cube/date_names.h"

#include <gmock/gmock.h>

#include "native.h"
#include "tests/support/failures.h"

namespace vok::test {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

constexpr const char* kCountries[] = {"en_US", "en_GB", "de_DE", "he_IL", "ru_RU", "sv_SE"};

TEST(DateFromNames, ReadsNumbersAlikeInEveryCountry) {
  const struct {
    DateNames names;
    bool by_month;
    Date expected;
  } cases[] = {
      {{"5", "3", "24"}, false, Date::FromCivil(2024, 3, 5)},
      {{"", "3", "24"}, true, Date::FromCivil(2024, 3, 1)},
      {{"05", "03", " 29 "}, false, Date::FromCivil(2029, 3, 5)},
      {{"13", "5", "30"}, false, Date::FromCivil(1930, 5, 13)},
      {{"31", "12", "99"}, false, Date::FromCivil(1999, 12, 31)},
      {{"", "1", "00"}, true, Date::FromCivil(2000, 1, 1)},
      {{"", "1", "5"}, true, Date::FromCivil(2005, 1, 1)},
      {{"29", "2", "2024"}, false, Date::FromCivil(2024, 2, 29)},
      {{"x", "12", "1899"}, true, Date::FromCivil(1899, 12, 1)},
      {{"5", "March", "2024"}, false, Date::FromCivil(2024, 3, 5)},
  };
  for (const char* country : kCountries) {
    const NativeLocale locale(country);
    for (const auto& c : cases) {
      EXPECT_EQ(DateFromNames(locale, c.names, c.by_month, "m", "l"), c.expected)
          << country << " " << c.names.day << "/" << c.names.month << "/" << c.names.year;
    }
  }
}

TEST(DateFromNames, ReadsMonthsByTheirNamesInTheUsersLanguageAndInEnglish) {
  const struct {
    const char* country;
    std::vector<const char*> names;
    int month;
  } cases[] = {
      {"he_IL", {"מרץ", "מרץ ", "March", "mar"}, 3},
      {"he_IL", {"יולי", "יול", "JULY", "Jul."}, 7},
      {"he_IL", {"ספטמבר", "ספט׳", "ספט", "Sept"}, 9},
      {"ru_RU", {"март", "Март", "МАРТА", "мар", "March"}, 3},
      {"ru_RU", {"май", "мая", "May"}, 5},
      {"ru_RU", {"сентябрь", "сентября", "сен", "September"}, 9},
      {"en_GB", {"March", "MARCH", "Mar", "mar."}, 3},
      {"en_GB", {"September", "Sept", "Sep"}, 9},
      {"de_DE", {"März", "MÄRZ", "Mär", "March", "Mar"}, 3},
      {"de_DE", {"Dezember", "Dez", "December"}, 12},
      {"sv_SE", {"oktober", "okt", "October"}, 10},
  };
  for (const auto& [country, names, month] : cases) {
    const NativeLocale locale(country);
    for (const char* name : names) {
      SCOPED_TRACE(std::string(country) + " " + name);
      EXPECT_EQ(DateFromNames(locale, {"5", name, "24"}, false, "m", "l"),
                Date::FromCivil(2024, month, 5));
      EXPECT_EQ(DateFromNames(locale, {"", name, "2024"}, true, "m", "l"),
                Date::FromCivil(2024, month, 1));
    }
  }
}

TEST(DateFromNames, RefusesWhatIsNotADateAndSaysWhatIs) {
  const DateNames cases[] = {
      {"1", "13", "2010"},    {"0", "1", "2010"},    {"31", "4", "2010"},
      {"29", "2", "2023"},    {"1", "1", "10000"},   {"1", "1", "024"},
      {"1", "", "2010"},      {"1", "1", "All"},     {"1.5", "1", "2010"},
      {"-1", "1", "2010"},    {"1", "1", "-5"},      {"1", "1", "99999999999"},
      {"1", "Ju", "2010"},    {"1", "март", "2010"}, {"1", "March 2010", "2010"},
      {"1", "Marching", "5"}, {"1", "1", "FY 2010"}};
  const NativeLocale locale("de_DE");
  for (const DateNames& names : cases) {
    const std::string text = names.day + "/" + names.month + "/" + names.year;
    const Failure failure =
        FailureOf([&] { DateFromNames(locale, names, false, "[Date].[x]", "Days"); });
    EXPECT_EQ(failure.number(), failure_number::kTypeMismatch) << text;
    EXPECT_THAT(failure.description(), AllOf(HasSubstr("\"" + text + "\""), HasSubstr("[Date].[x]"),
                                             HasSubstr("Days"), HasSubstr("two or four digits")));
  }
}

}  // namespace
}  // namespace vok::test
