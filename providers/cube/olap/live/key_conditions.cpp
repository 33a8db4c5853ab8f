#include "providers/cube/olap/live/key_conditions.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

#include "providers/cube/olap/storage/key_map.h"

namespace vok::olap {
namespace {

/// Fewer are as well listed.
constexpr std::size_t kLeastRange = 3;

std::optional<int64_t> AsInteger(std::string_view text) {
  int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

void AddNumbers(std::vector<int64_t> numbers, KeyCondition& condition) {
  std::sort(numbers.begin(), numbers.end());
  for (std::size_t begin = 0; begin < numbers.size();) {
    std::size_t end = begin + 1;
    while (end < numbers.size() && numbers[end - 1] + 1 == numbers[end]) ++end;
    if (end - begin >= kLeastRange) {
      condition.ranges.push_back(
          {std::to_string(numbers[begin]), std::to_string(numbers[end - 1])});
    } else {
      for (; begin < end; ++begin) condition.keys.push_back({std::to_string(numbers[begin])});
    }
    begin = end;
  }
}

}  // namespace

KeyCondition ConditionOf(const LiveKeys& hierarchy, std::span<const IdRange> leaves) {
  KeyCondition condition{hierarchy.columns};
  std::vector<int64_t> numbers;
  for (const IdRange& range : leaves) {
    const auto before = [](const LiveKey& key, uint32_t leaf) { return key.leaf < leaf; };
    auto key = std::lower_bound(hierarchy.keys.begin(), hierarchy.keys.end(), range.begin, before);
    for (; key != hierarchy.keys.end() && key->leaf < range.end; ++key) {
      const auto number =
          hierarchy.are_numbers && !hierarchy.are_joined ? AsInteger(key->text) : std::nullopt;
      if (number) {
        numbers.push_back(*number);
      } else if (hierarchy.are_joined) {
        condition.keys.push_back(SplitKeys(key->text));
      } else {
        condition.keys.push_back({key->text});
      }
    }
  }
  AddNumbers(std::move(numbers), condition);
  return condition;
}

}  // namespace vok::olap
