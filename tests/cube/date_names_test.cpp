#include <gmock/gmock.h>

#include "cube/date_list.h"
#include "native.h"
#include "tests/support/failures.h"

namespace vok::test {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

TEST(DateFromNames, ReadsNumbersAndTheNamesOfMonthsInTheUsersLanguageAndInEnglish) {
  const struct {
    const char* country;
    std::vector<DateNames> names;
    Date expected;
  } cases[] = {
      {"en_US", {{"5", "3", "24"}, {"05", "03", " 2024 "}}, Date::FromCivil(2024, 3, 5)},
      {"en_GB", {{"5", "3", "24"}, {"5", "MARCH", "2024"}}, Date::FromCivil(2024, 3, 5)},
      {"en_GB", {{"1", "1", "29"}}, Date::FromCivil(2029, 1, 1)},
      {"en_GB", {{"1", "1", "30"}}, Date::FromCivil(1930, 1, 1)},
      {"en_GB", {{"1", "1", "00"}}, Date::FromCivil(2000, 1, 1)},
      {"en_GB", {{"1", "1", "5"}}, Date::FromCivil(2005, 1, 1)},
      {"en_GB", {{"29", "Feb.", "2024"}}, Date::FromCivil(2024, 2, 29)},
      {"he_IL",
       {{"1", "ספט׳", "24"}, {"1", "ספט", "24"}, {"1", "Sept", "24"}},
       Date::FromCivil(2024, 9, 1)},
      {"ru_RU",
       {{"1", "Март", "24"}, {"1", "МАРТА", "24"}, {"1", "мар", "24"}},
       Date::FromCivil(2024, 3, 1)},
      {"ru_RU", {{"1", "май", "24"}, {"1", "мая", "24"}}, Date::FromCivil(2024, 5, 1)},
      {"tr_TR",
       {{"1", "KASIM", "24"}, {"1", "kasım", "24"}, {"1", "NOVEMBER", "24"}},
       Date::FromCivil(2024, 11, 1)},
      {"tr_TR",
       {{"1", "HAZİRAN", "24"}, {"1", "Haziran", "24"}, {"1", "haz", "24"}},
       Date::FromCivil(2024, 6, 1)},
      {"de_DE",
       {{"1", "MÄRZ", "24"}, {"1", "Mär", "24"}, {"1", "Mar", "24"}},
       Date::FromCivil(2024, 3, 1)},
  };
  for (const auto& [country, names, expected] : cases) {
    const NativeLocale locale(country);
    for (const DateNames& name : names) {
      EXPECT_EQ(DateFromNames(locale, name, false, "m", "l"), expected) << country << name.month;
      const Date first = Date::FromCivil(expected.Year(), expected.Month(), 1);
      EXPECT_EQ(DateFromNames(locale, {"", name.month, name.year}, true, "m", "l"), first);
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
