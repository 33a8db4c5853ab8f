// The dates of the twelve periods. Fills a run of periods with consecutive calendar intervals of
// one length. Plain date arithmetic.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/date.h"
#include "platform/locale.h"
#include "settings/records.h"

namespace vok {

/// Addressed by period number, 1 to 12. The zero date: no date.
class DateList {
 public:
  /// Failure 9 for a number that is not a period's.
  Date& operator()(int number);
  Date operator()(int number) const { return const_cast<DateList&>(*this)(number); }

  friend bool operator==(const DateList&, const DateList&) = default;

 private:
  std::array<Date, kPeriodCount> dates_{};
};

/// The date that the text means to the user. Failure 13 for a text that is not one.
Date DateOf(const Locale& locale, const std::string& text);

/// The date after it was shown in the short form and read again.
Date ThroughShortDate(const Locale& locale, Date date);

/// Positions of the intervals; any other position counts as months.
enum IntervalKind : int { kMonths = 0, kQuarters = 1, kHalfYears = 2, kYears = 3 };

struct LinearDates {
  int interval = kMonths;
  Date anchor;        ///< start of the run; the zero date: not given
  Date end;           ///< only its relation to the anchor matters; the zero date: not given
  int16_t first = 0;  ///< first period to fill; 0: 1
  int16_t last = 0;   ///< last period to fill; 0: 12
  Date today;
};

/// Writes the dates of the periods from first to last, from whole month to whole month; the other
/// entries stay. Without an anchor the run goes back from the end date into the last period, and
/// without both from the last interval of its kind that is over. An anchor later than the end date
/// makes it go back from the anchor. Failure 9 for a period number outside 1 to 12, which ends the
/// filling there.
void FillLinearDates(LinearDates run, const Locale& locale, DateList& from, DateList& until);

}  // namespace vok
