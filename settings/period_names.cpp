#include "settings/period_names.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <vector>

#include "platform/calendar.h"

namespace vok {
namespace {

constexpr int kMonthsOfYear = 12;
constexpr std::size_t kYearDigits = 4;
constexpr std::size_t kShortYearDigits = 2;

struct Interval {
  Date from;
  Date until;

  int Months() const {
    return (until.Year() - from.Year()) * kMonthsOfYear + until.Month() - from.Month() + 1;
  }
  bool Meets(const Interval& other) const { return from <= other.until && other.from <= until; }
  /// Also where it is the shorter one.
  bool Misses(const Interval& other) const { return !Meets(other) || Months() < other.Months(); }
  bool IsOfWholeMonths() const { return from.Day() == 1 && Date{until.serial + 1}.Day() == 1; }
};

Interval MonthsFrom(int year, int month, int count) {
  return {Date::FromCivil(year, month, 1), Date::FromCivil(year, month + count, 0)};
}

std::string MonthText(Date date) {
  std::array<char, 24> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02d", date.Year(), date.Month());
  return text.data();
}

/// The numbers of four digits in the text that may be years.
std::vector<int> YearsIn(const std::string& text) {
  constexpr char kDigits[] = "0123456789";
  std::vector<int> years;
  std::size_t end = 0;
  for (auto at = text.find_first_of(kDigits); at != text.npos;
       at = text.find_first_of(kDigits, end)) {
    end = std::min(text.find_first_not_of(kDigits, at), text.size());
    const std::string digits = text.substr(at, end - at);
    if (digits.size() == kYearDigits && (digits.starts_with("19") || digits.starts_with("20"))) {
      years.push_back(std::stoi(digits));
    }
  }
  return years;
}

/// The interval of the calendar whose `IntervalName` this is.
std::optional<Interval> CalendarInterval(const std::string& name) {
  const auto years = YearsIn(name.substr(0, kYearDigits));
  if (years.empty()) return std::nullopt;
  for (const int length : {1, 3, 6, kMonthsOfYear}) {
    for (int month = 1; month <= kMonthsOfYear; month += length) {
      const Interval interval = MonthsFrom(years.front(), month, length);
      if (IntervalName(interval.from, interval.until) == name) return interval;
    }
  }
  return std::nullopt;
}

std::optional<Interval> NamedInterval(const std::string& name) {
  constexpr std::string_view kTo = " - ";
  const auto to = name.find(kTo);
  if (to == name.npos) return CalendarInterval(name);
  const auto first = CalendarInterval(name.substr(0, to));
  const auto last = CalendarInterval(name.substr(to + kTo.size()));
  if (!first || !last || IntervalName(first->from, last->until) != name) return std::nullopt;
  return Interval{first->from, last->until};
}

std::optional<Interval> NamedMonth(const Locale& locale, const std::string& name) {
  if (YearsIn(name).size() != 1) return std::nullopt;
  const auto first = locale.ParseDate("1 " + name);
  if (!first || first->Year() != YearsIn(name).front()) return std::nullopt;
  return MonthsFrom(first->Year(), first->Month(), 1);
}

/// "Jan" of any year, or "Jan 24", which may be a month or a day.
struct YearlessMonth {
  int month;
  std::optional<int> year;  ///< when it is a month
};

std::optional<YearlessMonth> NamedYearlessMonth(const Locale& locale, const std::string& name) {
  if (const auto month = locale.MonthNamed(name)) return YearlessMonth{*month, std::nullopt};
  const auto digits = name.find_last_not_of("0123456789") + 1;
  if (name.size() - digits != kShortYearDigits) return std::nullopt;
  const auto month = locale.MonthNamed(name.substr(0, digits));
  if (!month) return std::nullopt;
  return YearlessMonth{*month, YearOfTwoDigits(std::stoi(name.substr(digits)))};
}

/// Weeks are called by their first days, and months by their last ones ("Feb 29"): "Jan 24" is a
/// month only over whole months that do not end on a 24th.
bool IsOutside(const YearlessMonth& named, const Interval& dates) {
  if (named.year && dates.IsOfWholeMonths() && *named.year % 100 != dates.until.Day()) {
    return MonthsFrom(*named.year, named.month, 1).Misses(dates);
  }
  const int first = dates.from.Month();
  const int later = (named.month - first + kMonthsOfYear) % kMonthsOfYear;
  return later >= dates.Months();
}

}  // namespace

std::string IntervalName(Date from, Date until) {
  std::string first = MonthText(from);
  const std::string last = MonthText(until);
  const std::string year = first.substr(0, kYearDigits);
  const int months = Interval{from, until}.Months();
  const auto place_among = [&](int length) {
    const bool is_one = months == length && (from.Month() - 1) % length == 0;
    return is_one ? (from.Month() - 1) / length + 1 : 0;
  };
  if (first == last) return first;
  if (const int quarter = place_among(3)) return year + " Q" + std::to_string(quarter);
  if (const int half = place_among(6)) return year + " H" + std::to_string(half);
  return place_among(kMonthsOfYear) != 0 ? year : first + " - " + last;
}

bool IsGivenName(const std::string& name) { return !name.empty() && !NamedInterval(name); }

bool Contradicts(const Locale& locale, const std::string& name, Date from, Date until) {
  if (from.IsZero() && until.IsZero()) return false;
  const Interval dates{from.IsZero() ? until : from, until.IsZero() ? from : until};
  auto named = NamedInterval(name);
  if (!named) named = NamedMonth(locale, name);
  if (named) return named->Misses(dates);
  if (const auto month = NamedYearlessMonth(locale, name)) return IsOutside(*month, dates);
  const auto years = YearsIn(name);
  return !years.empty() && std::none_of(years.begin(), years.end(), [&](int year) {
    return MonthsFrom(year, 1, kMonthsOfYear).Meets(dates);
  });
}

}  // namespace vok
