// What periods are called after their dates, and which names say something else than these.
#pragma once

#include <string>

#include "platform/locale.h"

namespace vok {

/// What an interval of whole months is called: "2024", "2024 H1", "2024 Q1", "2024-01"; by its
/// first and last month where it is not one of the calendar's: "2024-02 - 2024-04".
std::string IntervalName(Date from, Date until);

/// Whether a person gave the name: it is there and is not of the kind that `IntervalName` gives.
bool IsGivenName(const std::string& name);

/// Whether the name says a time, and the dates are another one: an `IntervalName`, or a month by
/// its name and year ("Jan 2024", "Jan 24"), that they do not meet or that is shorter than they
/// are; a month of any year ("Jan"), or a day ("Jan 24" over part of a month), whose month they do
/// not meet; a year that they do not meet. The zero date is not a date; without any date nothing is
/// contradicted.
bool Contradicts(const Locale& locale, const std::string& name, Date from, Date until);

}  // namespace vok
