#include "system/windows/windows_clock.h"

#include "system/windows/system_dll.h"

namespace vok::windows {

Date DateOf(const SYSTEMTIME& moment) {
  constexpr double kSecondsOfDay = 86400;
  Date date = Date::FromCivil(moment.wYear, moment.wMonth, moment.wDay);
  date.serial += ((moment.wHour * 60 + moment.wMinute) * 60 + moment.wSecond) / kSecondsOfDay;
  return date;
}

uint32_t WindowsClock::Milliseconds() const {
  static const auto time = RequiredSystemFunction<DWORD(WINAPI*)()>(L"winmm.dll", "timeGetTime");
  return time();
}

Date WindowsClock::Now() const {
  SYSTEMTIME now{};
  ::GetLocalTime(&now);
  return DateOf(now);
}

}  // namespace vok::windows
