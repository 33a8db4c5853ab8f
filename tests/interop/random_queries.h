// Random queries of the form that the system itself sends, made by its own query builder.
#pragma once

#include <cstdint>
#include <random>
#include <string>

namespace vok::interop {

/// The same seed gives the same queries on every machine.
class RandomQueries {
 public:
  explicit RandomQueries(uint64_t seed) : engine_(seed) {}

  /// A query on one of the cubes of sample.xml.
  std::string Next();

 private:
  int Below(int limit) { return static_cast<int>(engine_() % static_cast<uint64_t>(limit)); }
  bool OneIn(int chances) { return Below(chances) == 0; }

  std::mt19937_64 engine_;
};

}  // namespace vok::interop
