// The values of one measure column while the facts are read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "providers/cube/olap/build/key_map.h"
#include "providers/cube/olap/build/table_source.h"
#include "providers/cube/olap/storage/format.h"
#include "providers/cube/olap/storage/model.h"

namespace vok::olap {

class IntegerColumn {
 public:
  void Reserve(std::size_t rows) { narrow_.reserve(rows); }
  std::size_t capacity() const { return is_wide_ ? wide_.capacity() : narrow_.capacity(); }
  std::size_t size() const { return is_wide_ ? wide_.size() : narrow_.size(); }
  int64_t At(std::size_t row) const { return is_wide_ ? wide_[row] : narrow_[row]; }

  void Add(int64_t value) {
    if (!is_wide_ && static_cast<int32_t>(value) != value) Widen();
    if (is_wide_) {
      wide_.push_back(value);
    } else {
      narrow_.push_back(static_cast<int32_t>(value));
    }
  }

  /// Replaces every value v by `change(v)`.
  template <typename Change>
  void Replace(const Change& change) {
    IntegerColumn changed;
    changed.Reserve(capacity());
    for (std::size_t row = 0; row < size(); ++row) changed.Add(change(At(row)));
    *this = std::move(changed);
  }

 private:
  void Widen() {
    wide_.reserve(narrow_.capacity());
    wide_.assign(narrow_.begin(), narrow_.end());
    narrow_ = {};
    is_wide_ = true;
  }

  bool is_wide_ = false;
  std::vector<int32_t> narrow_;
  std::vector<int64_t> wide_;
};

/// Keeps decimal values as integers of one scale, the largest that came; all of them turn into
/// doubles when one does not fit. Counts are 1 or 0. For a count of different values each is a
/// number that stands for the text as it is written.
class ValueColumn {
 public:
  explicit ValueColumn(Aggregator aggregator) : aggregator_(aggregator) {}

  void Reserve(uint64_t rows) { values_.Reserve(rows); }
  /// False when the text is not a number, or one that no double holds.
  bool Add(const Field& field);

  ValueFormat Format() const;
  /// Joins and reorders: row i of the result is made of rows `order[starts[i]]` up to
  /// `order[starts[i + 1]]`. Only columns that `CanJoin` are given more than one.
  void Arrange(const std::vector<uint32_t>& order, const std::vector<uint32_t>& starts);
  /// Whether joining values loses nothing.
  bool CanJoin() const;

  int64_t At(uint64_t row) const { return values_.At(row); }
  bool IsNull(uint64_t row) const { return !nulls_.empty() && nulls_[row]; }

 private:
  bool AddNumber(std::string_view text);
  bool RaiseScale(uint8_t scale);
  void TurnIntoDoubles();
  void AddNull();
  int64_t Joined(int64_t a, int64_t b) const;

  Aggregator aggregator_;
  NumberKind kind_ = NumberKind::kDecimal;
  uint8_t scale_ = 0;
  IntegerColumn values_;
  std::vector<bool> nulls_;  // empty while there is none
  KeyMap different_;         // only for a count of different values
  uint32_t different_count_ = 0;
};

}  // namespace vok::olap
