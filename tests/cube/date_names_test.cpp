#include "cube/date_names.h"

#include <gmock/gmock.h>

#include "tests/support/failures.h"
#include "tests/support/memory_host.h"

namespace vok::test {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

/// Knows two texts.
struct TwoDatesLocale : SimpleLocale {
  std::optional<Date> ParseDate(std::string_view text) const override {
    if (text == "March/2010") return Date::FromCivil(2010, 3, 15);
    if (text == "5/13/2010") return Date{Date::FromCivil(2010, 5, 13).serial + 0.5};
    return std::nullopt;
  }
};

TEST(DateFromNames, ReadsWholeNumbersElseAsksTheLocale) {
  const TwoDatesLocale locale;
  const struct {
    DateNames names;
    bool by_month;
    Date expected;
  } cases[] = {
      {{"", "1", "2010"}, true, Date::FromCivil(2010, 1, 1)},
      {{"", "03", " 2010 "}, true, Date::FromCivil(2010, 3, 1)},
      {{"x", "12", "1899"}, true, Date::FromCivil(1899, 12, 1)},
      {{"31", "12", "2024"}, false, Date::FromCivil(2024, 12, 31)},
      {{"29", "2", "2024"}, false, Date::FromCivil(2024, 2, 29)},
      {{"", "March", "2010"}, true, Date::FromCivil(2010, 3, 1)},
      {{"5", "13", "2010"}, false, Date::FromCivil(2010, 5, 13)},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(DateFromNames(locale, c.names, c.by_month, "m", "l"), c.expected)
        << c.names.day << "/" << c.names.month << "/" << c.names.year;
  }
}

TEST(DateFromNames, RefusesWhatIsNoDate) {
  const TwoDatesLocale locale;
  const DateNames cases[] = {{"1", "13", "2010"}, {"0", "1", "2010"},       {"31", "4", "2010"},
                             {"29", "2", "2023"}, {"1", "1", "10000"},      {"1", "1", "10"},
                             {"1", "", "2010"},   {"1", "1", "All"},        {"1.5", "1", "2010"},
                             {"-1", "1", "2010"}, {"1", "1", "99999999999"}};
  for (const DateNames& names : cases) {
    const Failure failure =
        FailureOf([&] { DateFromNames(locale, names, false, "[Date].[x]", "Days"); });
    EXPECT_EQ(failure.number(), failure_number::kTypeMismatch)
        << names.day << "/" << names.month << "/" << names.year;
    EXPECT_THAT(failure.description(), AllOf(HasSubstr("[Date].[x]"), HasSubstr("Days")));
  }
}

}  // namespace
}  // namespace vok::test
