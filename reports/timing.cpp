#include "reports/timing.h"

#include <limits>

#include "platform/failure.h"

namespace vok {

void Timing::Start() {
  start_ = clock_.Milliseconds();
  finish_ = 0;
  elapsed_ = 0;
}

void Timing::Finish() {
  finish_ = clock_.Milliseconds();
  const int64_t difference =
      int64_t{static_cast<int32_t>(finish_)} - int64_t{static_cast<int32_t>(start_)};
  if (difference < std::numeric_limits<int32_t>::min() ||
      difference > std::numeric_limits<int32_t>::max()) {
    throw Failure(failure_number::kOverflow,
                  "Overflow: the millisecond clock turned over between start and finish; measure "
                  "again");
  }
  elapsed_ = static_cast<uint32_t>(difference);
}

Value Timing::ElapsedTime() const { return Value(elapsed_ / 1000.0); }

}  // namespace vok
