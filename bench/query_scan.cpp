#include "bench/query_scan.h"

#include <algorithm>
#include <numeric>

#include "bench/query_entries.h"

namespace vok::bench {

HandWrittenScan::HandWrittenScan(const std::string& folder) {
  std::vector<Entry> entries;
  ReadEntries(folder, [&](const Entry& entry) {
    if (entry.ledger != 1 || entry.opening != 1) return;
    entries.push_back(entry);
    lines_ = std::max(lines_, static_cast<std::size_t>(entry.line) + 1);
  });
  sums_.resize((kMonths + 1) * lines_);
  for (const Entry& entry : entries) {
    constexpr int64_t kFirstYear = 2022;
    const int64_t month = (entry.date / 10000 - kFirstYear) * 12 + entry.date / 100 % 100;
    Sums& sums =
        sums_[static_cast<std::size_t>(month) * lines_ + static_cast<std::size_t>(entry.line)];
    sums.units += entry.units.value_or(0);
    sums.cents += entry.cents.value_or(0);
    sums.units_count += entry.units.has_value();
    sums.cents_count += entry.cents.has_value();
  }
  for (std::size_t place = lines_; place < sums_.size(); ++place) {
    const Sums& before = sums_[place - lines_];
    sums_[place].units += before.units;
    sums_[place].cents += before.cents;
    sums_[place].units_count += before.units_count;
    sums_[place].cents_count += before.cents_count;
  }
}

void HandWrittenScan::Ask() {
  constexpr std::size_t kFirstMonth = 24;
  constexpr std::size_t kPeriods = 12;
  numbers_.resize(2 * kPeriods * lines_);
  present_.resize(numbers_.size());
  for (std::size_t period = 0; period < kPeriods; ++period) {
    const Sums* before = UpTo(kFirstMonth + period);
    const Sums* after = UpTo(kFirstMonth + period + 1);
    double* const numbers = numbers_.data() + 2 * period * lines_;
    uint8_t* const present = present_.data() + 2 * period * lines_;
    for (std::size_t line = 0; line < lines_; ++line) {
      numbers[line] = static_cast<double>(after[line].units - before[line].units);
      numbers[lines_ + line] = static_cast<double>(after[line].cents - before[line].cents) / 100;
      present[line] = after[line].units_count != before[line].units_count;
      present[lines_ + line] = after[line].cents_count != before[line].cents_count;
    }
  }
}

double HandWrittenScan::Total() const {
  return std::accumulate(numbers_.begin(), numbers_.end(), 0.0);
}

}  // namespace vok::bench
