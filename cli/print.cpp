#include "cli/print.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace vok::cli {

std::string IsoDate(Date date) {
  if (date.IsZero()) return {};
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02d", date.Year(), date.Month(), date.Day());
  return text.data();
}

std::string IsoDateTime(Date date) {
  constexpr int kSecondsPerDay = 24 * 60 * 60;
  const double rounded = std::round(date.serial * kSecondsPerDay) / kSecondsPerDay;
  const double day = std::floor(rounded);
  const int seconds = static_cast<int>(std::lround((rounded - day) * kSecondsPerDay));
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "T%02d:%02d:%02d", seconds / 3600, seconds / 60 % 60,
                seconds % 60);
  return IsoDate(Date{day}) + text.data();
}

}  // namespace vok::cli
