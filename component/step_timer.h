// Adds the time that a step of the run takes to its total.
#pragma once

#include <cstdint>

#include "platform/calendar.h"

namespace vok {

/// From construction to destruction, in milliseconds.
class StepTimer {
 public:
  StepTimer(const Clock& clock, uint32_t& total)
      : clock_(clock), total_(total), start_(clock.Milliseconds()) {}
  ~StepTimer() { total_ += clock_.Milliseconds() - start_; }
  StepTimer(const StepTimer&) = delete;
  StepTimer& operator=(const StepTimer&) = delete;

 private:
  const Clock& clock_;
  uint32_t& total_;
  uint32_t start_;
};

}  // namespace vok
