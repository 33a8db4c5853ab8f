#include "providers/cube/olap/build/fact_sorter.h"

#include <array>
#include <numeric>
#include <utility>

namespace vok::olap {
namespace {

constexpr uint32_t kDigitBits = 11;
constexpr std::size_t kDigits = std::size_t{1} << kDigitBits;

template <typename Key>
std::size_t DigitOf(Key key, uint32_t shift) {
  return static_cast<std::size_t>(key >> shift) & (kDigits - 1);
}

/// One pass of a radix sort. False when all keys have the same digit, so that nothing moves.
template <typename Key>
bool SortByDigit(uint32_t shift, const std::vector<Key>& keys, const std::vector<uint32_t>& order,
                 std::vector<Key>& sorted_keys, std::vector<uint32_t>& sorted_order) {
  std::array<uint32_t, kDigits> places{};
  for (const Key key : keys) ++places[DigitOf(key, shift)];
  if (places[DigitOf(keys.front(), shift)] == keys.size()) return false;
  std::exclusive_scan(places.begin(), places.end(), places.begin(), 0U);
  for (std::size_t index = 0; index < keys.size(); ++index) {
    const uint32_t place = places[DigitOf(keys[index], shift)]++;
    sorted_keys[place] = keys[index];
    sorted_order[place] = order[index];
  }
  return true;
}

template <typename Key>
std::vector<uint32_t> Sort(std::vector<Key>& keys, uint32_t bits) {
  std::vector<uint32_t> order(keys.size());
  std::iota(order.begin(), order.end(), 0U);
  if (keys.empty()) return order;
  std::vector<Key> sorted_keys(keys.size());
  std::vector<uint32_t> sorted_order(keys.size());
  for (uint32_t shift = 0; shift < bits; shift += kDigitBits) {
    if (!SortByDigit(shift, keys, order, sorted_keys, sorted_order)) continue;
    keys.swap(sorted_keys);
    order.swap(sorted_order);
  }
  return order;
}

}  // namespace

std::vector<uint32_t> SortKeys(std::vector<NarrowKey>& keys, uint32_t bits) {
  return Sort(keys, bits);
}

std::vector<uint32_t> SortKeys(std::vector<WideKey>& keys, uint32_t bits) {
  return Sort(keys, bits);
}

}  // namespace vok::olap
