#include "examples/plan.h"

#include <charconv>
#include <chrono>
#include <stdexcept>
#include <string>

namespace vok::examples {
namespace {

template <class Number>
void Read(std::string_view option, std::string_view text, Number least, Number most,
          Number* target) {
  Number value{};
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size() || value < least || value > most) {
    throw std::invalid_argument(std::string(option) + " takes a whole number from " +
                                std::to_string(least) + " to " + std::to_string(most) + ", not \"" +
                                std::string(text) + "\"");
  }
  *target = value;
}

void Assign(Plan* plan, std::string_view option, std::string_view text) {
  if (option == "--output") {
    plan->output = std::filesystem::path(text);
  } else if (option == "--seed") {
    Read<uint64_t>(option, text, 0, UINT64_MAX, &plan->seed);
  } else if (option == "--facts") {
    Read<int64_t>(option, text, 1, 1'000'000'000, &plan->facts);
  } else if (option == "--lines") {
    Read(option, text, 1, 1'000'000, &plan->lines);
  } else if (option == "--ledgers") {
    Read(option, text, 1, 1000, &plan->ledgers);
  } else if (option == "--files") {
    Read(option, text, 1, 1000, &plan->files);
  } else if (option == "--money-sets") {
    Read(option, text, 1, 100, &plan->money_sets);
  } else if (option == "--months") {
    Read(option, text, 1, 1200, &plan->months);
  } else {
    throw std::invalid_argument("unknown option " + std::string(option));
  }
}

}  // namespace

Plan ParsePlan(int count, const char* const* arguments) {
  Plan plan;
  for (int i = 1; i < count; ++i) {
    std::string_view option = arguments[i];
    if (option == "--days") {
      plan.days = true;
    } else if (i + 1 < count) {
      Assign(&plan, option, arguments[++i]);
    } else {
      throw std::invalid_argument(std::string(option) + " is unknown or lacks its value");
    }
  }
  if (plan.output.empty()) throw std::invalid_argument("--output DIR is missing");
  return plan;
}

int DaysInMonth(int month) {
  using namespace std::chrono;
  auto last = year{kFirstYear + month / 12} / (month % 12 + 1) / std::chrono::last;
  return static_cast<int>(static_cast<unsigned>(last.day()));
}

}  // namespace vok::examples
