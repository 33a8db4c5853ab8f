// Dates of a cube, from the names of its date members.
#pragma once

#include <string>

#include "platform/date.h"
#include "platform/locale.h"

namespace vok {

/// The names of a date member and of its ancestors.
struct DateNames {
  std::string day;  ///< not read for months
  std::string month;
  std::string year;
};

/// The first day of the month when `by_month`, else the day. Names that are whole numbers of a
/// calendar date (the year in full) are that date; anything else is what "day/month/year" or
/// "month/year" means to the user's locale. Failure 13 when it means nothing; `member` and `level`
/// name the culprit in its text.
Date DateFromNames(const Locale& locale, const DateNames& names, bool by_month,
                   const std::string& member, const std::string& level);

}  // namespace vok
