// From the keys of a table's rows to numbers. Keys are compared as they are written.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vok::olap {

class KeyMap {
 public:
  static constexpr uint32_t kAbsent = 0xFFFFFFFF;

  /// The number that the key already had, if it had one; it keeps it then.
  std::optional<uint32_t> Insert(std::string_view key, uint32_t number);
  /// The keys of the numbers from 0 on, where these are all that there are.
  std::vector<std::string> KeysByNumber() const;
  /// Replaces every number n by `numbers[n]` and prepares for fast look-ups.
  void Finish(const std::vector<uint32_t>& numbers);
  uint32_t Find(std::string_view key) const;

 private:
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };

  void MakeDense();

  std::unordered_map<int64_t, uint32_t> integers_;
  std::unordered_map<std::string, uint32_t, Hash, std::equal_to<>> texts_;
  int64_t dense_begin_ = 0;
  std::vector<uint32_t> dense_;  // in place of `integers_` when they lie close together
};

}  // namespace vok::olap
