// Small cubes that a seed makes, as plain members and facts and as the texts that the system builds
// a cube file from; and random queries on them, each part of which is made as a text and as what it
// means, side by side.
#pragma once

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/reference_olap/reference_cube.h"

namespace vok::plain {

/// The same seed gives the same numbers on every machine.
class Dice {
 public:
  explicit Dice(uint64_t seed) : engine_(seed) {}
  int Below(int limit) { return static_cast<int>(engine_() % static_cast<uint64_t>(limit)); }
  bool OneIn(int chances) { return Below(chances) == 0; }
  template <typename Items>
  const auto& OneOf(const Items& items) {
    return items[engine_() % items.size()];
  }
  template <typename Items>
  void Shuffle(Items& items) {
    for (std::size_t i = items.size(); i > 1; --i) std::swap(items[i - 1], items[engine_() % i]);
  }

 private:
  std::mt19937_64 engine_;
};

/// At most so many facts, rows of a dimension's table and values of a level's column; amounts are
/// whole numbers divided by `parts`.
struct CubeSize {
  int facts = 60, rows = 16, values = 4;
  int parts = 4;  ///< sums of quarters are exact in any order
};

/// Two to four dimensions, the first of time, with one or two hierarchies of up to three levels;
/// facts with zeros, blanks, and some that cancel.
struct RandomCube {
  Cube cube;
  std::string schema;                         ///< the element <Cube>, with the given name
  std::map<std::string, std::string> tables;  ///< CSV, by name: the cube's, then a number
};
RandomCube MakeRandomCube(uint64_t seed, const std::string& name, const CubeSize& size = {});

/// Within the failure of a query that asks for the one member of a hierarchy where the slicer has
/// several.
inline constexpr const char* kUnknownMember = "is not known here";

struct RandomQuery {
  std::string mdx;
  /// The axes and cells, in the words of the recorded answers, or `kUnknownMember`.
  std::string answer;
};

/// Queries with calculated members, a named set, two or three axes and a slicer; expressions nest
/// three deep. `tame`: only tame forms, no pairs, nothing taken together in the slicer, no NON
/// EMPTY on sets that pick.
std::vector<RandomQuery> RandomQueries(const Cube& cube, const std::string& cube_name,
                                       uint64_t seed, bool tame, int count);

}  // namespace vok::plain
