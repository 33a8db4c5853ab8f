#include "platform/date.h"

#include <chrono>
#include <cmath>

namespace vok {
namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr sys_days kZeroDay = std::chrono::year{1899} / std::chrono::December / 30;

year_month_day Civil(const Date& date) {
  return year_month_day{kZeroDay + days{static_cast<int>(std::floor(date.serial))}};
}

}  // namespace

Date Date::FromCivil(int year, int month, int day) {
  const auto first = std::chrono::year{year} / std::chrono::January / 1;
  const sys_days month_start{first + std::chrono::months{month - 1}};
  return Date{static_cast<double>((month_start + days{day - 1} - kZeroDay).count())};
}

Date Date::DayOnly() const { return Date{std::floor(serial)}; }
int Date::Year() const { return static_cast<int>(Civil(*this).year()); }
int Date::Month() const { return static_cast<int>(static_cast<unsigned>(Civil(*this).month())); }
int Date::Day() const { return static_cast<int>(static_cast<unsigned>(Civil(*this).day())); }

}  // namespace vok
