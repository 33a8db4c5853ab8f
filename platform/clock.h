// The time.
#pragma once

#include <cstdint>

#include "platform/date.h"

namespace vok {

class Clock {
 public:
  virtual ~Clock() = default;
  /// The system's millisecond clock; it wraps.
  virtual uint32_t Milliseconds() const = 0;
  /// Local date and time.
  virtual Date Now() const = 0;
};

}  // namespace vok
