#include "settings/linear_dates.h"

#include <utility>

#include "platform/failure.h"

namespace vok {
namespace {

constexpr Date kFarPast{1.0};

struct Step {
  int months;
  int years;
};

Step StepOf(int interval) {
  switch (interval) {
    case kQuarters:
      return {3, 0};
    case kHalfYears:
      return {6, 0};
    case kYears:
      return {0, 1};
    default:
      return {1, 0};
  }
}

/// Where a run without any date ends: the last day of an interval. In the last month of a quarter
/// or half year that is the running one's.
Date DefaultEnd(int interval, Date today) {
  const int months = StepOf(interval).months;
  if (interval == kYears) return Date::FromCivil(today.Year(), 1, 0);
  if (months == 1) return Date::FromCivil(today.Year(), today.Month(), 0);
  return Date::FromCivil(today.Year(), months * (today.Month() / months) + 1, 0);
}

/// Fills in what was not given.
void Complete(LinearDates& run) {
  const Step step = StepOf(run.interval);
  if (run.anchor.IsZero() && run.end.IsZero()) run.end = DefaultEnd(run.interval, run.today);
  if (run.first == 0) run.first = 1;
  if (run.last == 0) run.last = kPeriodCount;
  if (run.anchor.IsZero()) {
    std::swap(run.first, run.last);
    run.anchor = Date::FromCivil(run.end.Year() - step.years, run.end.Month() + 1 - step.months, 1);
    run.end = kFarPast;
  }
  if (run.end.IsZero()) run.end = Date{run.anchor.serial + 1};
}

}  // namespace

Date& DateList::operator()(int number) {
  if (number < 1 || number > kPeriodCount) {
    throw Failure(failure_number::kSubscript, "Subscript out of range: there is no period " +
                                                  std::to_string(number) + ", only 1 to 12");
  }
  return dates_[static_cast<std::size_t>(number - 1)];
}

Date DateOf(const Locale& locale, const std::string& text) {
  const auto date = locale.ParseDate(text);
  if (!date) throw Failure(failure_number::kTypeMismatch, "\"" + text + "\" is not a date");
  return *date;
}

Date ThroughShortDate(const Locale& locale, Date date) {
  return DateOf(locale, locale.ShortDate(date));
}

void FillLinearDates(LinearDates run, const Locale& locale, DateList& from, DateList& until) {
  Complete(run);
  const Step step = StepOf(run.interval);
  const int direction = run.anchor <= run.end ? 1 : -1;
  const int walk = run.first <= run.last ? 1 : -1;
  const int count = (run.last - run.first) * walk + 1;
  for (int i = 0; i < count; ++i) {
    const int number = run.first + i * walk;
    const Date start = ThroughShortDate(
        locale, Date::FromCivil(run.anchor.Year() + direction * i * step.years,
                                run.anchor.Month() + direction * i * step.months, 1));
    from(number) = start;
    until(number) = ThroughShortDate(
        locale, Date::FromCivil(start.Year() + step.years, start.Month() + step.months, 0));
  }
}

}  // namespace vok
