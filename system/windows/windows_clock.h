// The system's clocks, in the user's time zone.
#pragma once

#include "platform/calendar.h"
#include "system/windows/system_header.h"

namespace vok::windows {

/// To the second.
Date DateOf(const SYSTEMTIME& moment);

class WindowsClock : public Clock {
 public:
  uint32_t Milliseconds() const override;
  Date Now() const override;
};

}  // namespace vok::windows
