#include "examples/trade.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace vok::examples {
namespace {

std::vector<Entry> EntriesOf(const Plan& plan) {
  std::vector<Entry> entries;
  Trade(plan, [&](const Entry& entry) { entries.push_back(entry); }).Run();
  return entries;
}

using Place = std::array<int, 3>;  // ledger, line, money set

TEST(Trade, OpensEachYearWithWhatTheYearBeforeLeft) {
  std::map<Place, int64_t> standing;
  std::set<Place> opened;
  for (const Entry& entry : EntriesOf({})) {
    Place place = {entry.ledger, entry.line, entry.money};
    if (entry.key == kOpeningBalance) {
      EXPECT_EQ(entry.month % 12, 0);
      if (entry.month > 0) {
        EXPECT_EQ(entry.cents, standing[place]);
      }
      standing[place] = entry.cents;
      opened.insert(place);
    } else {
      standing[place] += entry.cents;
    }
  }
  EXPECT_GT(opened.size(), 80u);
}

TEST(Trade, HasLinesWithoutEntriesAndMonthsThatCancel) {
  std::map<std::array<int, 3>, int64_t> sums;  // ledger, line, month
  std::set<int> booked;
  for (const Entry& entry : EntriesOf({})) {
    booked.insert(entry.line);
    if (entry.key == kMovement) sums[{entry.ledger, entry.line, entry.month}] += entry.cents;
  }
  int zeros = 0;
  for (const auto& [place, cents] : sums) zeros += cents == 0 ? 1 : 0;
  EXPECT_GT(zeros, 50);
  EXPECT_LT(booked.size(), 290u);
}

TEST(Trade, MakesAboutAsManyEntriesAsAskedWithinTheSizesAsked) {
  const Plan plans[] = {{.facts = 100'000},
                        {.facts = 200'000, .lines = 5'000, .ledgers = 3, .files = 9},
                        {.facts = 50'000, .lines = 301, .money_sets = 1, .months = 7},
                        {.facts = 1, .lines = 1, .ledgers = 1, .files = 1}};
  for (const Plan& plan : plans) {
    std::vector<Entry> entries = EntriesOf(plan);
    if (plan.facts > 1) {
      EXPECT_NEAR(static_cast<double>(entries.size()) / static_cast<double>(plan.facts), 1, 0.15);
    }
    for (const Entry& entry : entries) {
      ASSERT_LT(entry.line, plan.lines);
      ASSERT_LT(entry.ledger, plan.ledgers);
      ASSERT_LT(entry.file, plan.files);
      ASSERT_LT(entry.money, plan.money_sets);
      ASSERT_LT(entry.month, plan.months);
      ASSERT_LE(entry.day, DaysInMonth(entry.month));
    }
  }
}

}  // namespace
}  // namespace vok::examples
