// A program that is run for what it prints.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace vok::jet {

struct ChildLimits {
  std::size_t bytes;  ///< that it may print
  std::chrono::seconds time;
};

struct ChildAnswer {
  std::string output;
  /// How the program ended, as words that go on after its name, such as "was ended by the signal 11
  /// (Segmentation fault)"; for a failure of the answer.
  std::string end;
};

/// Runs `program`, a native path, with an empty input, and waits for its end. One that prints or
/// takes more than the limits is killed. What it writes to its standard error is dropped. Throws a
/// `Failure` 57 when it cannot be started.
ChildAnswer RunChild(const std::string& program, const std::vector<std::string>& arguments,
                     const ChildLimits& limits);

}  // namespace vok::jet
