#include "system/posix/system_clock.h"

#include <chrono>

namespace vok {

Date LocalDate(std::time_t moment) {
  constexpr double kSecondsOfDay = 86400;
  std::tm local{};
  ::localtime_r(&moment, &local);
  const int seconds = (local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec;
  Date date = Date::FromCivil(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
  date.serial += seconds / kSecondsOfDay;
  return date;
}

uint32_t SystemClock::Milliseconds() const {
  using std::chrono::duration_cast;
  using std::chrono::milliseconds;
  const auto since_start = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<uint32_t>(duration_cast<milliseconds>(since_start).count());
}

Date SystemClock::Now() const { return LocalDate(std::time(nullptr)); }

}  // namespace vok
