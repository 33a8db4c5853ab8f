#include "providers/cube/olap/build/value_column.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

#include "providers/cube/olap/build/decimal.h"
#include "providers/cube/olap/storage/exact.h"

namespace vok::olap {
namespace {

/// `number` * 10^`places`; false when it does not fit.
bool Shift(int64_t& number, int places) {
  if (number == 0) return true;
  if (places >= static_cast<int>(kPowersOfTen.size())) return false;
  return !__builtin_mul_overflow(number, kPowersOfTen[static_cast<std::size_t>(places)], &number);
}

}  // namespace

bool ValueColumn::Add(const Field& field) {
  if (aggregator_ == Aggregator::kCount) {
    values_.Add(field.is_null ? 0 : 1);
    return true;
  }
  if (field.is_null) {
    AddNull();
    return true;
  }
  if (aggregator_ == Aggregator::kDistinctCount) {
    const auto known = different_.Insert(field.text, different_count_);
    values_.Add(known ? *known : different_count_++);
  } else if (!AddNumber(field.text)) {
    return false;
  }
  if (!nulls_.empty()) nulls_.push_back(false);
  return true;
}

void ValueColumn::AddNull() {
  if (nulls_.empty()) {
    nulls_.reserve(values_.capacity());
    nulls_.resize(values_.size());
  }
  nulls_.push_back(true);
  values_.Add(0);
}

bool ValueColumn::AddNumber(std::string_view text) {
  const Decimal decimal = ParseDecimal(text);
  if (decimal.fit == NumberFit::kNone) return false;
  if (kind_ == NumberKind::kDecimal) {
    int64_t number = decimal.number;
    if (decimal.fit == NumberFit::kDecimal && RaiseScale(decimal.scale) &&
        Shift(number, scale_ - decimal.scale)) {
      values_.Add(number);
      return true;
    }
    TurnIntoDoubles();
  }
  double value = 0;
  if (text[0] == '+') text.remove_prefix(1);
  const auto error = std::from_chars(text.data(), text.data() + text.size(), value).ec;
  if (error != std::errc()) return false;
  values_.Add(std::bit_cast<int64_t>(value));
  return true;
}

bool ValueColumn::RaiseScale(uint8_t scale) {
  if (scale <= scale_) return true;
  const int places = scale - scale_;
  for (std::size_t row = 0; row < values_.size(); ++row) {
    int64_t value = values_.At(row);
    if (!Shift(value, places)) return false;
  }
  values_.Replace([places](int64_t value) {
    Shift(value, places);
    return value;
  });
  scale_ = scale;
  return true;
}

void ValueColumn::TurnIntoDoubles() {
  values_.Replace(
      [this](int64_t value) { return std::bit_cast<int64_t>(NearestDouble(value, scale_)); });
  kind_ = NumberKind::kDouble;
  scale_ = 0;
}

ValueFormat ValueColumn::Format() const {
  Int128 total = 0;
  if (kind_ == NumberKind::kDecimal) {
    for (std::size_t row = 0; row < values_.size(); ++row) {
      const Int128 value = values_.At(row);
      total += value < 0 ? -value : value;
    }
  }
  return {kind_, scale_, total <= std::numeric_limits<int64_t>::max(), !nulls_.empty()};
}

bool ValueColumn::CanJoin() const {
  const bool is_extreme = aggregator_ == Aggregator::kMin || aggregator_ == Aggregator::kMax;
  if (aggregator_ == Aggregator::kDistinctCount) return false;
  return is_extreme || (kind_ == NumberKind::kDecimal && Format().is_narrow);
}

int64_t ValueColumn::Joined(int64_t a, int64_t b) const {
  if (aggregator_ == Aggregator::kSum || aggregator_ == Aggregator::kCount) return a + b;
  const bool less =
      kind_ == NumberKind::kDouble ? std::bit_cast<double>(a) < std::bit_cast<double>(b) : a < b;
  return less == (aggregator_ == Aggregator::kMin) ? a : b;
}

void ValueColumn::Arrange(const std::vector<uint32_t>& order, const std::vector<uint32_t>& starts) {
  const std::size_t cells = starts.size() - 1;
  IntegerColumn values;
  values.Reserve(cells);
  std::vector<bool> nulls(nulls_.empty() ? 0 : cells);
  for (std::size_t cell = 0; cell < cells; ++cell) {
    bool is_null = true;
    int64_t value = 0;
    for (uint32_t place = starts[cell]; place < starts[cell + 1]; ++place) {
      const uint32_t row = order[place];
      if (IsNull(row)) continue;
      value = is_null ? values_.At(row) : Joined(value, values_.At(row));
      is_null = false;
    }
    values.Add(value);
    if (is_null) nulls[cell] = true;
  }
  values_ = std::move(values);
  nulls_ = std::move(nulls);
}

}  // namespace vok::olap
