// The stopwatch.
#pragma once

#include <cstdint>

#include "platform/calendar.h"
#include "platform/value.h"

namespace vok {

/// Measures the time between `Start` and `Finish` by the system's millisecond clock.
class Timing {
 public:
  explicit Timing(const Clock& clock) : clock_(clock) {}

  void Start();
  /// Fails with an overflow (6) when the difference of the two clock values does not fit a signed
  /// 32-bit number.
  void Finish();
  /// Seconds, a double.
  Value ElapsedTime() const;

 private:
  const Clock& clock_;
  uint32_t start_ = 0;
  uint32_t finish_ = 0;
  uint32_t elapsed_ = 0;
};

}  // namespace vok
