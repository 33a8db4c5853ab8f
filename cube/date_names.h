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

/// The first day of the month when `by_month`, else the day. Days and years are numbers, a year of
/// one or two digits lies from 1930 to 2029; a month is a number or a name, in the user's language
/// or in English. Failure 13 for other names and for days that no month has; `member` and `level`
/// name the culprit in its text.
Date DateFromNames(const Locale& locale, const DateNames& names, bool by_month,
                   const std::string& member, const std::string& level);

}  // namespace vok
