// Small cubes that a seed makes, as plain members and facts and as the texts that the system builds
// a cube file from.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <string_view>

#include "tests/support/plain_olap/plain_cube.h"

namespace vok::plain {

/// The same seed gives the same numbers on every machine.
class Dice {
 public:
  explicit Dice(uint64_t seed) : engine_(seed) {}
  int Below(int limit) { return static_cast<int>(engine_() % static_cast<uint64_t>(limit)); }
  bool OneIn(int chances) { return Below(chances) == 0; }
  template <typename Items>
  const auto& OneOf(const Items& items) {
    return items[static_cast<std::size_t>(Below(static_cast<int>(items.size())))];
  }

 private:
  std::mt19937_64 engine_;
};

/// The aggregations over one fact table, as the schema has them.
struct MeasureWords {
  Measure measure;
  std::string_view name;
  std::string_view attributes;
};
inline constexpr std::array<MeasureWords, 7> kMeasures = {{
    {Measure::kAmount, "Amount", "column=\"amount\" aggregator=\"sum\""},
    {Measure::kUnits, "Units", "column=\"units\" aggregator=\"sum\""},
    {Measure::kRows, "Rows", "column=\"id\" aggregator=\"count\""},
    {Measure::kKnown, "Known", "column=\"units\" aggregator=\"count\""},
    {Measure::kLeast, "Least", "column=\"units\" aggregator=\"min\""},
    {Measure::kMost, "Most", "column=\"amount\" aggregator=\"max\""},
    {Measure::kWho, "Who", "column=\"who\" aggregator=\"distinct-count\""},
}};

/// Two to four dimensions, the first of time, with one or two hierarchies of up to three levels; up
/// to 60 facts with zeros, blanks, and some that cancel. Amounts are quarters of one, so sums are
/// exact in any order.
struct RandomCube {
  Cube cube;
  std::string schema;                         ///< the element <Cube>, with the given name
  std::map<std::string, std::string> tables;  ///< CSV, by name: the cube's, then a number
};
/// Moving is as good as none: members point at one another.
void MakeRandomCube(uint64_t seed, const std::string& name, RandomCube& made);

}  // namespace vok::plain
