#include "providers/cube/olap/mdx/query_limits.h"

#include <charconv>
#include <string>

#include "platform/failure.h"

namespace vok::olap {
namespace {

std::string Seconds(double seconds) {
  char buffer[32];
  return std::string(buffer, std::to_chars(buffer, buffer + sizeof buffer, seconds).ptr);
}

/// Longer than anyone waits, short enough for any clock.
constexpr double kLongest = 1e8;

}  // namespace

QueryGuard::QueryGuard(const QueryLimits& limits)
    : limits_(limits),
      deadline_(Clock::now() +
                std::chrono::duration_cast<Clock::duration>(
                    std::chrono::duration<double>(std::min(limits.timeout_seconds, kLongest)))) {}

void QueryGuard::CheckTuples(std::size_t count, Place place) const {
  if (count <= max_tuples()) return;
  place.Fail("the set has " + std::to_string(count) + " tuples; the limit is " +
             std::to_string(max_tuples()) + ". Ask for fewer members");
}

void QueryGuard::Check() const {
  if (limits_.stop != nullptr) limits_.stop->Check();
  if (limits_.timeout_seconds > 0 && Clock::now() >= deadline_) {
    throw Failure(failure_number::kTimeout, "The query took longer than its limit of " +
                                                Seconds(limits_.timeout_seconds) +
                                                " s. Ask for fewer members or allow more time.");
  }
}

}  // namespace vok::olap
