// What span of time the members of a level stand for, where the cube declares it.
#pragma once

#include <cstdint>

#include "platform/cube.h"

namespace vok {

/// `kOther`: half-years, quarters or weeks.
enum class LevelTime : uint8_t { kUntold, kYears, kMonths, kDays, kOther };

/// The levels of a provider that can tell.
class TimedLevel : public CubeLevel {
 public:
  virtual LevelTime Time() const = 0;
};

/// `kUntold` where the provider or the cube does not tell.
inline LevelTime TimeOf(const CubeLevel& level) {
  const auto* timed = dynamic_cast<const TimedLevel*>(&level);
  return timed == nullptr ? LevelTime::kUntold : timed->Time();
}

}  // namespace vok
