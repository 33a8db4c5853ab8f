// The system's clocks, in the user's time zone.
#pragma once

#include "hosts/windows/platform/system_header.h"
#include "platform/clock.h"

namespace vok::windows {

/// To the second.
Date DateOf(const SYSTEMTIME& moment);

class WindowsClock : public Clock {
 public:
  uint32_t Milliseconds() const override;
  Date Now() const override;
};

}  // namespace vok::windows
