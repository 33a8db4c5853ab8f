// What an action fails with.
#pragma once

#include <functional>
#include <string>

#include "platform/failure.h"

namespace vok::test {

/// Number 0 for an action that does not fail.
inline Failure FailureOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Failure& failure) {
    return failure;
  }
  return Failure(0, "no failure");
}
inline int32_t NumberOf(const std::function<void()>& action) { return FailureOf(action).number(); }
inline std::string DescriptionOf(const std::function<void()>& action) {
  return FailureOf(action).description();
}

}  // namespace vok::test
