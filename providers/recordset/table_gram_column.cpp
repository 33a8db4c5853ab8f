#include "providers/recordset/table_gram_column.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "platform/calendar.h"
#include "providers/recordset/dates.h"
#include "providers/recordset/utf16.h"

namespace vok::recordset {
namespace {

constexpr uint32_t kIsFixedLength = 0x10;
constexpr uint32_t kIsLong = 0x80;
constexpr uint32_t kLongestShortText = 255;
constexpr uint16_t kBinaryText = 8, kByteText = 129, kWideText = 130;

template <typename Number, typename Stored>
Value Plain(ByteReader& reader) {
  return static_cast<Stored>(reader.Get<Number>());
}

template <typename Number>
Value Floating(ByteReader& reader) {
  const auto number = static_cast<double>(reader.Get<Number>());
  if (!std::isfinite(number)) reader.Throw("it has a number that is none");
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

/// The types of fixed length whose values are understood, by their number in the form.
struct FixedType {
  uint16_t type;
  FieldType field;
  Value (*read)(ByteReader&);
};

constexpr FixedType kFixedTypes[] = {
    {2, FieldType::kInteger, Plain<int16_t, int32_t>},
    {3, FieldType::kInteger, Plain<int32_t, int32_t>},
    {4, FieldType::kNumber, Floating<float>},
    {5, FieldType::kNumber, Floating<double>},
    {6, FieldType::kNumber, Currency},
    {7, FieldType::kDate, SerialDate},
    {11, FieldType::kBoolean, Boolean},
    {16, FieldType::kInteger, Plain<int8_t, int32_t>},
    {17, FieldType::kInteger, Plain<uint8_t, int32_t>},
    {18, FieldType::kInteger, Plain<uint16_t, int32_t>},
    {19, FieldType::kNumber, Plain<uint32_t, double>},
    {20, FieldType::kNumber, Plain<int64_t, double>},
    {21, FieldType::kNumber, Plain<uint64_t, double>},
    {133, FieldType::kDate, DayDate},
    {134, FieldType::kDate, TimeDate},
    {135, FieldType::kDate, Timestamp},
};

const FixedType* FindFixed(uint16_t type) {
  const auto* found = std::find_if(std::begin(kFixedTypes), std::end(kFixedTypes),
                                   [type](const FixedType& row) { return row.type == type; });
  return found == std::end(kFixedTypes) ? nullptr : found;
}

std::size_t BytesPerCharacter(uint16_t type) { return type == kByteText ? 1 : 2; }

std::string CountedText(ByteReader& part) {
  const std::size_t units = part.Get<uint16_t>();
  const auto text = Utf8OfUtf16(part.TakeText(units * 2));
  if (!text) part.Throw("a column's name is no text");
  return *text;
}

/// Bits of the map that says which parts a column's description has, first byte uppermost.
enum Presence : uint32_t {
  kFriendlyName = 0x800000,
  kBaseTable = 0x400000,
  kBaseColumn = 0x200000,
  kBaseName = 0x100000
};

uint32_t PresenceMap(ByteReader& part) {
  uint32_t map = 0;
  for (const std::byte byte : part.Take(3)) map = map << 8 | static_cast<uint32_t>(byte);
  return map;
}

}  // namespace

TableGramColumn::TableGramColumn(ByteReader part) {
  const uint32_t present = PresenceMap(part);
  ordinal_ = part.Get<uint16_t>();
  if ((present & kFriendlyName) != 0) column_.name = CountedText(part);
  if ((present & kBaseTable) != 0) part.Take(2);
  if ((present & kBaseColumn) != 0) part.Take(2);
  if ((present & kBaseName) != 0) {
    const std::string base_name = CountedText(part);
    if (column_.name.empty()) column_.name = base_name;
  }
  type_ = part.Get<uint16_t>();
  max_length_ = part.Get<uint32_t>();
  part.Take(8);  // precision and scale
  flags_ = part.Get<uint32_t>();
  // The rest of the description is of use to whoever sends changes back.

  const FixedType* fixed = FindFixed(type_);
  if (fixed == nullptr && type_ != kBinaryText && type_ != kByteText && type_ != kWideText) {
    part.Throw("its column \"" + column_.name + "\" is of the type " + std::to_string(type_) +
               ", which is not read");
  }
  column_.type = fixed != nullptr ? fixed->field : FieldType::kText;
}

bool TableGramColumn::DependsOnRule() const {
  return column_.type == FieldType::kText && BytesPerCharacter(type_) == 2 &&
         (flags_ & (kIsFixedLength | kIsLong)) == 0 && max_length_ <= kLongestShortText &&
         max_length_ * 2 > kLongestShortText;
}

std::size_t TableGramColumn::TextLength(ByteReader& reader, LengthRule rule) const {
  const std::size_t unit = BytesPerCharacter(type_);
  if ((flags_ & kIsLong) != 0) return reader.Get<uint32_t>();
  if ((flags_ & kIsFixedLength) != 0) return max_length_ * unit;
  const std::size_t counted = rule == LengthRule::kBytes ? max_length_ * unit : max_length_;
  return counted <= kLongestShortText ? reader.Get<uint8_t>() : reader.Get<uint32_t>();
}

Value TableGramColumn::Read(ByteReader& reader, LengthRule rule) const {
  if (const FixedType* fixed = FindFixed(type_)) return fixed->read(reader);
  const auto bytes = reader.TakeText(TextLength(reader, rule));
  if (type_ != kByteText) {
    const auto text = Utf8OfUtf16(bytes);
    if (!text) reader.Throw("a text of column \"" + column_.name + "\" is no UTF-16");
    return *text;
  }
  const bool is_ascii = std::all_of(bytes.begin(), bytes.end(),
                                    [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (!is_ascii) {
    reader.Throw("column \"" + column_.name +
                 "\" has letters of a code page that the file does not name; make it a column of "
                 "Unicode texts");
  }
  return std::string(bytes);
}

}  // namespace vok::recordset
