// Lines of a report as a ledger has them, for writers of workbooks.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace vok::bench {

inline constexpr std::size_t kCaptions = 11;
inline constexpr std::size_t kPeriods = 12;

struct Line {
  std::array<std::string, kCaptions> captions;
  std::array<double, 2 * kPeriods> numbers;  ///< of each period a quantity and an amount
};

/// The line of that number: captions in several languages, some of its own.
inline Line LineOf(std::size_t number) {
  static const std::array<std::string, 4> names = {
      "Freight and handling", "\xD7\xA9\xD7\x9B\xD7\xA8 \xD7\xA2\xD7\x91\xD7\x95\xD7\x93\xD7\x94",
      "Verkaufserl\xC3\xB6se", "\xD0\x97\xD0\xB0\xD1\x80\xD0\xBF\xD0\xBB\xD0\xB0\xD1\x82\xD0\xB0"};
  Line line;
  line.captions[0] = "0";
  for (std::size_t i = 1; i < kCaptions; ++i) line.captions[i] = names[(number + i) % names.size()];
  line.captions[1] = std::to_string(90'000 + number);
  line.captions[2] += " " + std::to_string(number);
  uint64_t random = 42 + number;
  for (std::size_t i = 0; i < line.numbers.size(); ++i) {
    random = random * 6364136223846793005U + 1442695040888963407U;
    const bool is_quantity = i % 2 == 0;
    line.numbers[i] = is_quantity ? static_cast<double>(1 + (random >> 54))
                                  : static_cast<double>(random >> 40) / 100;
  }
  return line;
}

}  // namespace vok::bench
