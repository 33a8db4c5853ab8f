#include "providers/cube/olap/storage/key_map.h"

#include <algorithm>
#include <charconv>

namespace vok::olap {
namespace {

/// The integer that is written exactly so: no sign but "-", no zeros in front.
std::optional<int64_t> AsInteger(std::string_view key) {
  constexpr std::size_t kMostDigits = 18;
  const bool negative = !key.empty() && key[0] == '-';
  const std::string_view digits = key.substr(negative);
  if (digits.empty() || digits.size() > kMostDigits) return std::nullopt;
  if (digits[0] == '0' && (digits.size() > 1 || negative)) return std::nullopt;
  int64_t value = 0;
  for (const char digit : digits) {
    if (digit < '0' || digit > '9') return std::nullopt;
    value = value * 10 + (digit - '0');
  }
  return negative ? -value : value;
}

}  // namespace

std::optional<uint32_t> KeyMap::Insert(std::string_view key, uint32_t number) {
  const auto integer = AsInteger(key);
  if (integer) {
    const auto [place, is_new] = integers_.emplace(*integer, number);
    return is_new ? std::nullopt : std::optional(place->second);
  }
  const auto [place, is_new] = texts_.emplace(key, number);
  return is_new ? std::nullopt : std::optional(place->second);
}

std::vector<std::string> KeyMap::KeysByNumber() const {
  std::vector<std::string> keys(integers_.size() + texts_.size());
  for (const auto& [key, number] : integers_) keys[number] = std::to_string(key);
  for (const auto& [key, number] : texts_) keys[number] = key;
  return keys;
}

void KeyMap::Finish(const std::vector<uint32_t>& numbers) {
  for (auto& [key, number] : integers_) number = numbers[number];
  for (auto& [key, number] : texts_) number = numbers[number];
  MakeDense();
}

void KeyMap::MakeDense() {
  if (integers_.empty()) return;
  const auto [low, high] =
      std::minmax_element(integers_.begin(), integers_.end(),
                          [](const auto& a, const auto& b) { return a.first < b.first; });
  const auto span = static_cast<uint64_t>(high->first - low->first) + 1;
  constexpr uint64_t kSmall = 65536;
  if (span > std::max<uint64_t>(kSmall, 8 * integers_.size())) return;
  dense_begin_ = low->first;
  dense_.assign(span, kAbsent);
  for (const auto& [key, number] : integers_) {
    dense_[static_cast<std::size_t>(key - dense_begin_)] = number;
  }
  integers_ = {};
}

void KeyMap::ForEach(
    const std::function<void(const std::string& key, uint32_t number)>& tell) const {
  for (const auto& [key, number] : integers_) tell(std::to_string(key), number);
  for (std::size_t place = 0; place < dense_.size(); ++place) {
    if (dense_[place] == kAbsent) continue;
    tell(std::to_string(dense_begin_ + static_cast<int64_t>(place)), dense_[place]);
  }
  for (const auto& [key, number] : texts_) tell(key, number);
}

uint32_t KeyMap::Find(std::string_view key) const {
  const auto integer = AsInteger(key);
  if (!integer) {
    const auto found = texts_.find(key);
    return found == texts_.end() ? kAbsent : found->second;
  }
  if (!dense_.empty()) {
    const auto place = static_cast<uint64_t>(*integer - dense_begin_);
    return place < dense_.size() ? dense_[place] : kAbsent;
  }
  const auto found = integers_.find(*integer);
  return found == integers_.end() ? kAbsent : found->second;
}

void JoinKeys(std::span<const Field> fields, std::string& key) {
  key.clear();
  for (const Field& field : fields) {
    key += field.is_null ? "-" : std::to_string(field.text.size());
    key += ':';
    key += field.text;
  }
}

std::vector<std::optional<std::string>> SplitKeys(std::string_view key) {
  std::vector<std::optional<std::string>> texts;
  while (!key.empty()) {
    const std::size_t colon = std::min(key.find(':'), key.size() - 1);
    std::size_t length = 0;
    const bool is_null = key.starts_with('-');
    std::from_chars(key.data(), key.data() + colon, length);
    key.remove_prefix(colon + 1);
    length = is_null ? 0 : std::min(length, key.size());
    texts.push_back(is_null ? std::nullopt : std::optional<std::string>(key.substr(0, length)));
    key.remove_prefix(length);
  }
  return texts;
}

}  // namespace vok::olap
