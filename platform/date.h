// A point in time as the settings and the cube speak of it.
#pragma once

#include <compare>
#include <cstdint>

namespace vok {

/// Days since 30 December 1899, the zero date; the fraction is the time of day. The zero date
/// stands for "no date".
struct Date {
  double serial = 0.0;

  /// Calendar constructor that normalises: month 13 is January of the next year, day 0 is the last
  /// day of the month before. Years are taken as given (proleptic Gregorian calendar).
  static Date FromCivil(int year, int month, int day);

  bool IsZero() const { return serial == 0.0; }
  /// The same day at midnight.
  Date DayOnly() const;

  int Year() const;
  int Month() const;  ///< 1 to 12
  int Day() const;    ///< 1 to 31

  friend auto operator<=>(const Date&, const Date&) = default;
};

}  // namespace vok
