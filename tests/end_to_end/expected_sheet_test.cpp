#include "tests/end_to_end/expected_sheet.h"

#include <gtest/gtest.h>

#include <limits>

namespace vok::end_to_end {
namespace {

using namespace std::chrono;

constexpr Date Day(int y, unsigned m, unsigned d) { return sys_days{year{y} / month{m} / day{d}}; }

Fact Booked(Date date, size_t line, const char* key, const char* amount, const char* units) {
  return {
      date, line, "Ledger1", key, {{"Amount", ParseExact(amount)}, {"Units", ParseExact(units)}}};
}

/// March to May 2010 in months, three lines of which the last is never booked.
DataSet SmallData() {
  DataSet data;
  data.dates = {Day(2010, 3, 1), Day(2010, 4, 1), Day(2010, 5, 1)};
  data.captions = {"a\tAlpha\t2\t3\t4\t5\t6\t7\t8\t9", "b\tBeta", "c\tGamma"};
  data.has_opening_balance = true;
  data.facts = {
      Booked(Day(2010, 3, 1), 0, "1", "0.1", "2"),    Booked(Day(2010, 4, 1), 0, "1", "0.2", ""),
      Booked(Day(2010, 5, 1), 0, "1", "100", "7"),    Booked(Day(2010, 4, 1), 1, "1", "10.5", "1"),
      Booked(Day(2010, 4, 1), 1, "1", "-10.5", "-1"), Booked(Day(2010, 3, 1), 1, "0", "55", "")};
  return data;
}

Report SmallReport(std::vector<Period> periods) {
  Report report{"QEL", "Ledger1", {}};
  for (Period& period : report.periods) period.measure = "Amount";
  std::ranges::move(periods, report.periods.begin());
  return report;
}

TEST(ExpectedSheet, PlacesFieldsSumsExactlyAndAppendsOpeningBalances) {
  Report report =
      SmallReport({{"early", Day(2010, 1, 1), Day(2010, 2, 28), true, "Amount", "Units"},
                   {"spring", Day(2010, 3, 1), Day(2010, 4, 30), true, "Amount", "Units"},
                   {"bare", Day(2010, 4, 1), Day(2010, 4, 1), false, "Amount", ""}});
  std::vector<Row> sheet = ExpectedSheet(SmallData(), report);
  ASSERT_EQ(sheet.size(), 4u);
  EXPECT_EQ(sheet[0][13].text, "Q2>spring");
  EXPECT_EQ(sheet[0][34].text, "M12>");
  EXPECT_EQ(FormatRow(sheet[1]).substr(0, 71),
            R"("0","a","Alpha","4","7","8","9","5","6","2","3",,,2,0.3,,0.2,,,,,,,,,,,)");
  EXPECT_EQ(FormatRow(sheet[2]), "\"0\",\"b\",\"Beta\"" + std::string(32, ',') + "\n")
      << "what cancels is blank, and its row stays";
  EXPECT_EQ(FormatRow(sheet[3]), R"("0","b","Beta",,,,,,,,,,,,55)" + std::string(20, ',') + "\n");
}

TEST(ExpectedSheet, FindsTheDatesThatAPeriodCovers) {
  struct Case {
    Date from, until;
    const char* money;
  };
  const Case cases[] = {
      {Day(2010, 3, 1), Day(2010, 3, 31), "0.1"},  {Day(2010, 3, 2), Day(2010, 4, 1), "0.2"},
      {Day(2010, 3, 2), Day(2010, 3, 31), "0.2"},   // between two members: the next one
      {Day(2010, 3, 15), Day(2010, 3, 15), "0.2"},  // one day: the next one
      {Day(2000, 1, 1), Day(2030, 1, 1), "100.3"}, {Day(2010, 4, 1), Day(2010, 12, 31), "100.2"},
      {Day(2010, 4, 20), Day(2010, 3, 20), "0.2"},  // backwards: the first after its end
  };
  for (const Case& item : cases) {
    Report report = SmallReport({{"p", item.from, item.until, false, "Amount", "Units"}});
    EXPECT_EQ(ExpectedSheet(SmallData(), report).at(1).at(12).text, item.money);
  }
  for (auto [from, until] :
       {std::pair{Day(2010, 5, 2), Day(2011, 1, 1)}, std::pair{Day(2010, 1, 1), Day(2010, 2, 28)},
        std::pair{Day(2010, 1, 1), kNoDate}}) {
    Report report = SmallReport({{"p", from, until, false, "Amount", "Units"}});
    EXPECT_TRUE(ExpectedSheet(SmallData(), report).empty());
  }
  Report backwards =
      SmallReport({{"p", Day(2010, 5, 1), Day(2010, 4, 20), false, "Amount", "Units"}});
  EXPECT_THROW(ExpectedSheet(SmallData(), backwards), NoDate);
}

TEST(ExpectedSheet, RoundsASumOnceAtTheEnd) {
  EXPECT_EQ(ToDouble(*ParseExact("0.1") + *ParseExact("0.2")), 0.3);
  EXPECT_EQ(ToDouble(*ParseExact("9007199254740993.5")), 9007199254740994.0);
  EXPECT_EQ(ToDouble(*ParseExact("-1234.567891")), -1234.567891);
  EXPECT_THROW(ParseExact("0.1234567"), std::runtime_error);
  EXPECT_THROW(ParseExact("1e5"), std::runtime_error);
}

}  // namespace
}  // namespace vok::end_to_end
