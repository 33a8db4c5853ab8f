#include "providers/cube/olap/build/value_reader.h"

#include <bit>
#include <charconv>

#include "providers/cube/olap/build/decimal.h"

namespace vok::olap {

bool ValueReader::Add(const Field& field) {
  if (aggregator_ == Aggregator::kCount) {
    column_.Add(field.is_null ? 0 : 1);
  } else if (field.is_null) {
    column_.AddNull();
  } else if (aggregator_ == Aggregator::kDistinctCount) {
    const auto known = different_.Insert(field.text, different_count_);
    column_.Add(known ? *known : different_count_++);
  } else {
    return AddNumber(field.text);
  }
  return true;
}

bool ValueReader::AddNumber(std::string_view text) {
  const Decimal decimal = ParseDecimal(text);
  if (decimal.fit == NumberFit::kNone) return false;
  if (column_.kind() == NumberKind::kDecimal) {
    int64_t number = decimal.number;
    if (decimal.fit == NumberFit::kDecimal && column_.RaiseScale(decimal.scale) &&
        ShiftDecimal(number, column_.scale() - decimal.scale)) {
      column_.Add(number);
      return true;
    }
    column_.TurnIntoDoubles();
  }
  double value = 0;
  if (text[0] == '+') text.remove_prefix(1);
  const auto error = std::from_chars(text.data(), text.data() + text.size(), value).ec;
  if (error != std::errc()) return false;
  column_.Add(std::bit_cast<int64_t>(value));
  return true;
}

}  // namespace vok::olap
