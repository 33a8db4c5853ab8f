// The values of one measure column on their way from the tables into the cube file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "providers/cube/olap/storage/format.h"
#include "providers/cube/olap/storage/model.h"
#include "providers/cube/olap/storage/wide_integer.h"

namespace vok::olap {

/// Integers, in 32 bits each while all of them fit.
class IntegerColumn {
 public:
  void Reserve(std::size_t rows) { narrow_.reserve(rows); }
  std::size_t size() const { return is_wide_ ? wide_.size() : narrow_.size(); }
  std::size_t Bytes() const {
    return narrow_.capacity() * sizeof(int32_t) + wide_.capacity() * sizeof(int64_t);
  }
  int64_t At(std::size_t row) const { return is_wide_ ? wide_[row] : narrow_[row]; }
  void Copy(std::size_t first, std::span<int64_t> values) const;

  void Add(int64_t value) {
    if (!is_wide_ && static_cast<int32_t>(value) != value) Widen();
    if (is_wide_) {
      wide_.push_back(value);
    } else {
      narrow_.push_back(static_cast<int32_t>(value));
    }
  }
  void Append(const IntegerColumn& other, std::size_t begin, std::size_t end);
  /// Row i of the result is row `order[i]`.
  void Reorder(std::span<const uint32_t> order);

  /// Replaces every value v by `change(v)`.
  template <typename Change>
  void Replace(const Change& change) {
    IntegerColumn changed;
    changed.Reserve(size());
    for (std::size_t row = 0; row < size(); ++row) changed.Add(change(At(row)));
    *this = std::move(changed);
  }

 private:
  void Widen();

  bool is_wide_ = false;
  std::vector<int32_t> narrow_;
  std::vector<int64_t> wide_;
};

/// Decimal values as integers of one scale, or doubles as their bits, with NULLs among them.
class ValueColumn {
 public:
  ValueColumn() = default;
  /// `valid`: 1 or 0 for each; empty for a column without NULLs.
  ValueColumn(NumberKind kind, uint8_t scale, std::span<const int64_t> values,
              std::span<const int64_t> valid);

  void Reserve(std::size_t rows) { values_.Reserve(rows); }
  void Add(int64_t value) {
    values_.Add(value);
    if (!nulls_.empty()) nulls_.push_back(false);
  }
  void AddNull();
  /// `other` has the same kind and scale.
  void Append(const ValueColumn& other, std::size_t begin, std::size_t end);
  void Reorder(std::span<const uint32_t> order);
  /// Row i of the result is made of rows `starts[i]` up to `starts[i + 1]`.
  void Join(std::span<const uint32_t> starts, Aggregator aggregator);

  /// False, and nothing is changed, when a value would not fit.
  bool RaiseScale(uint8_t scale);
  void TurnIntoDoubles();
  /// Replaces every number n by `numbers[n]`.
  void Renumber(std::span<const uint32_t> numbers);

  NumberKind kind() const { return kind_; }
  uint8_t scale() const { return scale_; }
  bool HasNulls() const { return !nulls_.empty(); }
  std::size_t size() const { return values_.size(); }
  /// What the values without their signs add up to, and the largest of them.
  Int128 Magnitude() const;
  uint64_t Largest() const;
  /// Of memory.
  std::size_t Bytes() const { return values_.Bytes() + nulls_.capacity() / 8; }

  void Copy(std::size_t first, std::span<int64_t> values) const { values_.Copy(first, values); }
  /// 1 or 0.
  void CopyValidity(std::size_t first, std::span<int64_t> valid) const;

 private:
  bool IsNull(std::size_t row) const { return !nulls_.empty() && nulls_[row]; }
  int64_t Joined(Aggregator aggregator, int64_t a, int64_t b) const;

  NumberKind kind_ = NumberKind::kDecimal;
  uint8_t scale_ = 0;
  IntegerColumn values_;
  std::vector<bool> nulls_;  // empty while there is none
};

/// Brings the columns, parts of one, to one kind and scale: the largest that there is, or doubles
/// when a value does not fit that. What is common to them then.
ValueFormat MakeAlike(std::span<ValueColumn* const> columns, unsigned threads);

}  // namespace vok::olap
