// A column of integers that takes little memory: 32 bits each while all of them fit, else 64.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

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

}  // namespace vok::olap
