#include "providers/cube/olap/build/value_column.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <limits>

#include "platform/in_order.h"
#include "providers/cube/olap/build/decimal.h"
#include "providers/cube/olap/storage/exact.h"

namespace vok::olap {
namespace {

template <typename Value>
void Gather(std::vector<Value>& values, std::span<const uint32_t> order) {
  std::vector<Value> gathered(order.size());
  for (std::size_t row = 0; row < order.size(); ++row) gathered[row] = values[order[row]];
  values = std::move(gathered);
}

}  // namespace

void IntegerColumn::Widen() {
  wide_.reserve(narrow_.capacity());
  wide_.assign(narrow_.begin(), narrow_.end());
  narrow_ = {};
  is_wide_ = true;
}

void IntegerColumn::Copy(std::size_t first, std::span<int64_t> values) const {
  if (is_wide_) {
    std::copy_n(wide_.begin() + static_cast<std::ptrdiff_t>(first), values.size(), values.begin());
  } else {
    std::copy_n(narrow_.begin() + static_cast<std::ptrdiff_t>(first), values.size(),
                values.begin());
  }
}

void IntegerColumn::Append(const IntegerColumn& other, std::size_t begin, std::size_t end) {
  if (is_wide_ || other.is_wide_) {
    for (std::size_t row = begin; row < end; ++row) Add(other.At(row));
    return;
  }
  narrow_.insert(narrow_.end(), other.narrow_.begin() + static_cast<std::ptrdiff_t>(begin),
                 other.narrow_.begin() + static_cast<std::ptrdiff_t>(end));
}

void IntegerColumn::Reorder(std::span<const uint32_t> order) {
  if (is_wide_) {
    Gather(wide_, order);
  } else {
    Gather(narrow_, order);
  }
}

ValueColumn::ValueColumn(NumberKind kind, uint8_t scale, std::span<const int64_t> values,
                         std::span<const int64_t> valid)
    : kind_(kind), scale_(scale) {
  values_.Reserve(values.size());
  for (const int64_t value : values) values_.Add(value);
  for (const int64_t is_valid : valid) nulls_.push_back(is_valid == 0);
}

void ValueColumn::AddNull() {
  if (nulls_.empty()) nulls_.resize(values_.size());
  nulls_.push_back(true);
  values_.Add(0);
}

void ValueColumn::Append(const ValueColumn& other, std::size_t begin, std::size_t end) {
  kind_ = other.kind_;
  scale_ = other.scale_;
  if (HasNulls() || other.HasNulls()) {
    nulls_.resize(values_.size());
    for (std::size_t row = begin; row < end; ++row) nulls_.push_back(other.IsNull(row));
  }
  values_.Append(other.values_, begin, end);
}

void ValueColumn::Reorder(std::span<const uint32_t> order) {
  values_.Reorder(order);
  if (!nulls_.empty()) Gather(nulls_, order);
}

void ValueColumn::Join(std::span<const uint32_t> starts, Aggregator aggregator) {
  ValueColumn joined;
  joined.kind_ = kind_;
  joined.scale_ = scale_;
  joined.Reserve(starts.size() - 1);
  for (std::size_t cell = 0; cell + 1 < starts.size(); ++cell) {
    bool is_null = true;
    int64_t value = 0;
    for (uint32_t row = starts[cell]; row < starts[cell + 1]; ++row) {
      if (IsNull(row)) continue;
      value = is_null ? values_.At(row) : Joined(aggregator, value, values_.At(row));
      is_null = false;
    }
    if (is_null) {
      joined.AddNull();
    } else {
      joined.Add(value);
    }
  }
  *this = std::move(joined);
}

int64_t ValueColumn::Joined(Aggregator aggregator, int64_t a, int64_t b) const {
  if (aggregator == Aggregator::kSum || aggregator == Aggregator::kCount) return a + b;
  const bool less =
      kind_ == NumberKind::kDouble ? std::bit_cast<double>(a) < std::bit_cast<double>(b) : a < b;
  return less == (aggregator == Aggregator::kMin) ? a : b;
}

bool ValueColumn::RaiseScale(uint8_t scale) {
  if (scale <= scale_) return true;
  const int places = scale - scale_;
  for (std::size_t row = 0; row < values_.size(); ++row) {
    int64_t value = values_.At(row);
    if (!ShiftDecimal(value, places)) return false;
  }
  values_.Replace([places](int64_t value) {
    ShiftDecimal(value, places);
    return value;
  });
  scale_ = scale;
  return true;
}

void ValueColumn::TurnIntoDoubles() {
  if (kind_ == NumberKind::kDouble) return;
  values_.Replace(
      [this](int64_t value) { return std::bit_cast<int64_t>(NearestDouble(value, scale_)); });
  kind_ = NumberKind::kDouble;
  scale_ = 0;
}

void ValueColumn::Renumber(std::span<const uint32_t> numbers) {
  IntegerColumn renumbered;
  renumbered.Reserve(size());
  for (std::size_t row = 0; row < size(); ++row) {
    renumbered.Add(IsNull(row) ? 0 : numbers[static_cast<std::size_t>(values_.At(row))]);
  }
  values_ = std::move(renumbered);
}

Int128 ValueColumn::Magnitude() const {
  Int128 total = 0;
  for (std::size_t row = 0; row < values_.size(); ++row) {
    const Int128 value = values_.At(row);
    total += value < 0 ? -value : value;
  }
  return total;
}

uint64_t ValueColumn::Largest() const {
  uint64_t largest = 0;
  for (std::size_t row = 0; row < values_.size(); ++row) {
    const int64_t value = values_.At(row);
    const auto size = static_cast<uint64_t>(value);
    largest = std::max(largest, value < 0 ? 0 - size : size);
  }
  return largest;
}

void ValueColumn::CopyValidity(std::size_t first, std::span<int64_t> valid) const {
  for (int64_t& each : valid) each = IsNull(first++) ? 0 : 1;
}

ValueFormat MakeAlike(std::span<ValueColumn* const> columns, unsigned threads) {
  ValueFormat format;
  bool has_doubles = false;
  for (const ValueColumn* column : columns) {
    format.scale = std::max(format.scale, column->scale());
    format.has_nulls = format.has_nulls || column->HasNulls();
    has_doubles = has_doubles || column->kind() == NumberKind::kDouble;
  }
  std::atomic<bool> fits = !has_doubles;
  InParallel(threads, columns.size(), [&](std::size_t index) {
    if (fits && !columns[index]->RaiseScale(format.scale)) fits = false;
  });
  if (!fits) {
    InParallel(threads, columns.size(),
               [&](std::size_t index) { columns[index]->TurnIntoDoubles(); });
    return {NumberKind::kDouble, 0, true, format.has_nulls};
  }
  std::vector<Int128> magnitudes(columns.size());
  InParallel(threads, columns.size(),
             [&](std::size_t index) { magnitudes[index] = columns[index]->Magnitude(); });
  Int128 total = 0;
  for (const Int128 magnitude : magnitudes) total += magnitude;
  format.is_narrow = total <= std::numeric_limits<int64_t>::max();
  return format;
}

}  // namespace vok::olap
