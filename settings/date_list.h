// The from or until dates of the twelve periods, and dates that went through a text.
#pragma once

#include <array>
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

}  // namespace vok
