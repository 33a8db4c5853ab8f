// From the keys of a table's rows to numbers. Keys are compared as they are written.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/row_text.h"

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
  /// Each key with its number, in no order.
  void ForEach(const std::function<void(const std::string& key, uint32_t number)>& tell) const;

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

/// The keys of several columns as one: they are told apart by their lengths.
void JoinKeys(std::span<const Field> fields, std::string& key);
/// What was joined: the text of each column, nothing for NULL.
std::vector<std::optional<std::string>> SplitKeys(std::string_view key);

}  // namespace vok::olap
