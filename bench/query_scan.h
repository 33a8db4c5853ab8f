// The question of bench/query as a program that has no other question would write it: sums that
// grow from month to month, for each line, and subtractions. What no query can be faster than.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vok::bench {

class HandWrittenScan {
 public:
  /// Reads the movements of the first ledger from `folder`.
  explicit HandWrittenScan(const std::string& folder);

  /// Fills the answer, blank and zero told apart.
  void Ask();
  /// All numbers of the answer added up.
  double Total() const;

 private:
  /// Of one line, up to the end of one month.
  struct Sums {
    int64_t units = 0;
    int64_t cents = 0;
    uint32_t units_count = 0;
    uint32_t cents_count = 0;
  };
  static constexpr std::size_t kMonths = 60;

  const Sums* UpTo(std::size_t month) const { return sums_.data() + month * lines_; }

  std::size_t lines_ = 0;
  std::vector<Sums> sums_;  // month by month, the first before all entries
  std::vector<double> numbers_;
  std::vector<uint8_t> present_;
};

}  // namespace vok::bench
