#include "providers/recordset/adtg_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>

#include "platform/calendar.h"
#include "providers/recordset/dates.h"

namespace vok::recordset {
namespace {

template <typename Number, typename Stored>
Value Plain(ByteReader& reader) {
  return static_cast<Stored>(reader.Get<Number>());
}

template <typename Number>
Value Floating(ByteReader& reader) {
  const auto number = static_cast<double>(reader.Get<Number>());
  if (!std::isfinite(number)) reader.Throw("it has a number that is NaN or infinite");
  return number;
}

Value Currency(ByteReader& reader) { return static_cast<double>(reader.Get<int64_t>()) / 10000; }

[[noreturn]] void ThrowNoDate(const ByteReader& reader) {
  reader.Throw("it has a date that no calendar has");
}

Value SerialDate(ByteReader& reader) {
  const Date date{reader.Get<double>()};
  if (!IsInCalendar(date)) ThrowNoDate(reader);
  return date;
}

Date TakeDay(ByteReader& reader) {
  const int year = reader.Get<int16_t>();
  const int month = reader.Get<uint16_t>();
  const auto date = CalendarDay(year, month, reader.Get<uint16_t>());
  if (!date) ThrowNoDate(reader);
  return *date;
}

Date TakeTime(ByteReader& reader) {
  const int hour = reader.Get<uint16_t>();
  const int minute = reader.Get<uint16_t>();
  const auto time = TimeOf(hour, minute, reader.Get<uint16_t>());
  if (!time) ThrowNoDate(reader);
  return *time;
}

Value DayDate(ByteReader& reader) { return TakeDay(reader); }
Value TimeDate(ByteReader& reader) { return TakeTime(reader); }
Value Timestamp(ByteReader& reader) {
  const Date day = TakeDay(reader);
  const Date time = TakeTime(reader);
  reader.Take(4);  // billionths of a second
  return Date{day.serial + time.serial};
}

Value Boolean(ByteReader& reader) { return reader.Get<uint16_t>() != 0; }

/// Ticks of 100 nanoseconds from 1601 on.
Value FileTime(ByteReader& reader) {
  constexpr double kTicksOfDay = 864e9;
  constexpr double kFirstDay = -109205;  // 1 January 1601
  const Date date{kFirstDay + static_cast<double>(reader.Get<uint64_t>()) / kTicksOfDay};
  if (!IsInCalendar(date)) ThrowNoDate(reader);
  return date;
}

/// A whole number of 128 bits, the lowest 32 first.
using Magnitude = std::array<uint32_t, 4>;

/// Divides by ten; the remainder.
uint32_t TakeLastDigit(Magnitude& number) {
  uint64_t remainder = 0;
  for (std::size_t word = number.size(); word-- > 0;) {
    const uint64_t part = remainder << 32 | number[word];
    number[word] = static_cast<uint32_t>(part / 10);
    remainder = part % 10;
  }
  return static_cast<uint32_t>(remainder);
}

/// The double nearest to the decimal, by way of its digits: "-12345e-2".
double Scaled(bool is_negative, Magnitude magnitude, int scale) {
  std::string digits;
  while (magnitude != Magnitude{}) digits += static_cast<char>('0' + TakeLastDigit(magnitude));
  if (digits.empty()) return 0;
  if (is_negative) digits += '-';
  std::reverse(digits.begin(), digits.end());
  digits += "e-" + std::to_string(scale);
  double number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

Value Numeric(ByteReader& reader) {
  reader.Take(1);  // precision
  const int scale = reader.Get<uint8_t>();
  const bool is_negative = reader.Get<uint8_t>() == 0;
  return Scaled(is_negative, reader.Get<Magnitude>(), scale);
}

Value Decimal(ByteReader& reader) {
  reader.Take(2);  // reserved
  const int scale = reader.Get<uint8_t>();
  const bool is_negative = reader.Get<uint8_t>() != 0;
  const auto high = reader.Get<uint32_t>();
  const auto low = reader.Get<uint32_t>();
  return Scaled(is_negative, {low, reader.Get<uint32_t>(), high, 0}, scale);
}

template <typename Number>
void AppendHex(std::string& text, Number number) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  for (int shift = static_cast<int>(sizeof number) * 8 - 4; shift >= 0; shift -= 4) {
    text += kDigits[number >> shift & 0xF];
  }
}

Value Guid(ByteReader& reader) {
  std::string text = "{";
  AppendHex(text, reader.Get<uint32_t>());
  text += '-';
  AppendHex(text, reader.Get<uint16_t>());
  text += '-';
  AppendHex(text, reader.Get<uint16_t>());
  for (int byte = 0; byte < 8; ++byte) {
    if (byte == 0 || byte == 2) text += '-';
    AppendHex(text, reader.Get<uint8_t>());
  }
  return text + "}";
}

constexpr FixedType kFixedTypes[] = {
    {2, FieldType::kInteger, Plain<int16_t, int32_t>},
    {3, FieldType::kInteger, Plain<int32_t, int32_t>},
    {4, FieldType::kNumber, Floating<float>},
    {5, FieldType::kNumber, Floating<double>},
    {6, FieldType::kNumber, Currency},
    {7, FieldType::kDate, SerialDate},
    {11, FieldType::kBoolean, Boolean},
    {14, FieldType::kNumber, Decimal},
    {16, FieldType::kInteger, Plain<int8_t, int32_t>},
    {17, FieldType::kInteger, Plain<uint8_t, int32_t>},
    {18, FieldType::kInteger, Plain<uint16_t, int32_t>},
    {19, FieldType::kNumber, Plain<uint32_t, double>},
    {20, FieldType::kNumber, Plain<int64_t, double>},
    {21, FieldType::kNumber, Plain<uint64_t, double>},
    {64, FieldType::kDate, FileTime},
    {72, FieldType::kText, Guid},
    {131, FieldType::kNumber, Numeric},
    {133, FieldType::kDate, DayDate},
    {134, FieldType::kDate, TimeDate},
    {135, FieldType::kDate, Timestamp},
};

}  // namespace

const FixedType* FindFixedType(uint16_t type) {
  const auto* found = std::find_if(std::begin(kFixedTypes), std::end(kFixedTypes),
                                   [type](const FixedType& row) { return row.type == type; });
  return found == std::end(kFixedTypes) ? nullptr : found;
}

}  // namespace vok::recordset
