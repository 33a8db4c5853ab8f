// The machine's clock, in the user's time zone.
#pragma once

#include <ctime>

#include "platform/calendar.h"

namespace vok {

/// The moment in local time, to the second.
Date LocalDate(std::time_t moment);

class SystemClock : public Clock {
 public:
  uint32_t Milliseconds() const override;
  Date Now() const override;
};

}  // namespace vok
