// Waiting on a thread that has windows or automation objects: its messages go on meanwhile.
#pragma once

#include <functional>
#include <optional>
#include <span>

#include "system/windows/system_header.h"

namespace vok::windows {

/// A request to end the thread that comes meanwhile is kept, and stands again when the wait is
/// over.
class PumpedWait {
 public:
  using Dispatch = std::function<void(MSG&)>;
  explicit PumpedWait(Dispatch dispatch = DispatchPlainly);
  PumpedWait(const PumpedWait&) = delete;
  PumpedWait& operator=(const PumpedWait&) = delete;
  ~PumpedWait();

  /// The position of an event that is signalled.
  std::size_t For(std::span<const HANDLE> events);

  static void DispatchPlainly(MSG& message);

 private:
  Dispatch dispatch_;
  std::optional<int> quit_;
};

}  // namespace vok::windows
