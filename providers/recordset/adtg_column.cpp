#include "providers/recordset/adtg_column.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/utf8.h"
#include "providers/recordset/adtg_values.h"

namespace vok::recordset {
namespace {

uint32_t UnitAt(std::string_view bytes, std::size_t at) {
  return static_cast<uint32_t>(static_cast<unsigned char>(bytes[at])) |
         static_cast<uint32_t>(static_cast<unsigned char>(bytes[at + 1])) << 8;
}

/// Nothing when the bytes are not UTF-16LE: an odd count, half a pair of surrogates.
std::optional<std::string> Utf8OfUtf16(std::string_view bytes) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  std::string text;
  text.reserve(bytes.size());
  for (std::size_t at = 0; at < bytes.size(); at += 2) {
    uint32_t character = UnitAt(bytes, at);
    if (character >= 0xD800 && character < 0xE000) {
      if (character >= 0xDC00 || at + 4 > bytes.size()) return std::nullopt;
      const uint32_t low = UnitAt(bytes, at += 2);
      if (low < 0xDC00 || low >= 0xE000) return std::nullopt;
      character = 0x10000 + ((character - 0xD800) << 10) + (low - 0xDC00);
    }
    AppendUtf8(text, character);
  }
  return text;
}

constexpr uint32_t kIsFixedLength = 0x10;
constexpr uint32_t kIsLong = 0x80;
constexpr uint32_t kIsChildSet = 0x2000;
constexpr uint16_t kChildSetType = 136;
constexpr uint32_t kLongestShortText = 255;

/// How the values of a type are stored. Those of types that are not known take the bytes that the
/// column's description tells.
enum class Storage { kFixed, kBytes, kByteText, kWideText, kUnknown };

Storage StorageOf(uint16_t type) {
  if (FindFixedType(type) != nullptr) return Storage::kFixed;
  switch (type) {
    case 8:
    case 130:
    case 202:
    case 203:
      return Storage::kWideText;
    case 129:
    case 200:
    case 201:
      return Storage::kByteText;
    case 128:
    case 204:
    case 205:
      return Storage::kBytes;
    default:
      return Storage::kUnknown;
  }
}

std::size_t BytesPerCharacter(uint16_t type) {
  return StorageOf(type) == Storage::kWideText ? 2 : 1;
}

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

Value TextOfCodePage(std::string_view bytes, const CodePage& code_page) {
  if (IsAscii(bytes)) return std::string(bytes);
  if (code_page.locale != nullptr) {
    if (auto text = code_page.locale->FromCodePage(bytes, code_page.number))
      return *std::move(text);
  }
  return CellError{code_page.number == 0
                       ? "it has letters of a code page that neither the file nor the user's "
                         "language tells"
                       : "it has letters that the code page " + std::to_string(code_page.number) +
                             " does not have"};
}

std::string CountedText(ByteReader& part) {
  const std::size_t units = part.Get<uint16_t>();
  const auto text = Utf8OfUtf16(part.TakeText(units * 2));
  if (!text) part.Throw("a column's name is not a text");
  return *text;
}

/// Bits of the map that says which parts a column's description has, first byte uppermost.
enum Presence : uint32_t {
  kFriendlyName = 0x800000,
  kBaseTable = 0x400000,
  kBaseColumn = 0x200000,
  kBaseName = 0x100000,
  kCalculation = 0x4
};

uint32_t PresenceMap(ByteReader& part) {
  uint32_t map = 0;
  for (const std::byte byte : part.Take(3)) map = map << 8 | static_cast<uint32_t>(byte);
  return map;
}

}  // namespace

AdtgColumn::AdtgColumn(ByteReader part) {
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
  // What follows is of use to those who send changes back, except what it ends with in a child set.
  const bool ends_otherwise = IsChildSet() || (present & kCalculation) != 0;
  if (!ends_otherwise && part.left() >= sizeof(uint32_t)) {
    part.Take(part.left() - sizeof(uint32_t));
    set_number_ = part.Get<uint32_t>();
  }
  column_.type = Type();
}

bool AdtgColumn::IsChildSet() const {
  return type_ == kChildSetType || (flags_ & kIsChildSet) != 0;
}

FieldType AdtgColumn::Type() const {
  if (IsChildSet()) return FieldType::kUnshown;
  if (const FixedType* fixed = FindFixedType(type_)) return fixed->field;
  const Storage storage = StorageOf(type_);
  const bool is_text = storage == Storage::kByteText || storage == Storage::kWideText;
  return is_text ? FieldType::kText : FieldType::kUnshown;
}

bool AdtgColumn::DependsOnRule() const {
  return StorageOf(type_) == Storage::kWideText && (flags_ & (kIsFixedLength | kIsLong)) == 0 &&
         max_length_ <= kLongestShortText && max_length_ * 2 > kLongestShortText;
}

std::size_t AdtgColumn::Length(ByteReader& reader, LengthRule rule) const {
  const std::size_t unit = BytesPerCharacter(type_);
  if ((flags_ & kIsLong) != 0) return reader.Get<uint32_t>();
  if ((flags_ & kIsFixedLength) != 0) return max_length_ * unit;
  const std::size_t counted = rule == LengthRule::kBytes ? max_length_ * unit : max_length_;
  return counted <= kLongestShortText ? reader.Get<uint8_t>() : reader.Get<uint32_t>();
}

Value AdtgColumn::Absent() const {
  return IsChildSet() ? Value(CellError{"its values are record sets"}) : Value(Null{});
}

Value AdtgColumn::Read(ByteReader& reader, LengthRule rule, const CodePage& code_page) const {
  if (IsChildSet()) return Absent();
  if (const FixedType* fixed = FindFixedType(type_)) return fixed->read(reader);
  const auto bytes = reader.TakeText(Length(reader, rule));
  switch (StorageOf(type_)) {
    case Storage::kBytes:
      return CellError{"its values are bytes, not texts"};
    case Storage::kByteText:
      return TextOfCodePage(bytes, code_page);
    case Storage::kWideText:
      break;
    default:
      return CellError{"its values are of the type " + std::to_string(type_) +
                       ", which is not read"};
  }
  const auto text = Utf8OfUtf16(bytes);
  if (!text) reader.Throw("a text of column \"" + column_.name + "\" is not UTF-16");
  return *text;
}

}  // namespace vok::recordset
