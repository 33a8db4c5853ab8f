// How large an example to make, and where.
#pragma once

#include <cstdint>
#include <filesystem>

namespace vok::examples {

/// The defaults make the committed example. `facts` is what the trade is scaled towards; overheads
/// and opening balances come as they must, so the number made is near it, not equal to it.
struct Plan {
  std::filesystem::path output = {};
  uint64_t seed = 17;
  int64_t facts = 20000;
  int lines = 300;
  int ledgers = 2;
  int files = 4;
  int money_sets = 4;
  int months = 36;
  bool days = false;
};

inline constexpr int kFirstYear = 2022;

/// The plan that the arguments ask for. Throws std::invalid_argument with what is wrong.
Plan ParsePlan(int count, const char* const* arguments);

/// Days in a month counted from January of the first year, leap years included.
int DaysInMonth(int month);

}  // namespace vok::examples
