#include "providers/recordset/xml_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>

#include "platform/text.h"
#include "providers/recordset/dates.h"

namespace vok::recordset {
namespace {

struct TypeRow {
  std::string_view name;
  FieldType type;
};

// The first of a type is the one that is written.
constexpr TypeRow kTypes[] = {
    {"int", FieldType::kInteger},        {"i1", FieldType::kInteger},
    {"i2", FieldType::kInteger},         {"i4", FieldType::kInteger},
    {"ui1", FieldType::kInteger},        {"ui2", FieldType::kInteger},
    {"r8", FieldType::kNumber},          {"r4", FieldType::kNumber},
    {"float", FieldType::kNumber},       {"number", FieldType::kNumber},
    {"fixed.14.4", FieldType::kNumber},  {"i8", FieldType::kNumber},
    {"ui4", FieldType::kNumber},         {"ui8", FieldType::kNumber},
    {"boolean", FieldType::kBoolean},    {"dateTime", FieldType::kDate},
    {"date", FieldType::kDate},          {"time", FieldType::kDate},
    {"string", FieldType::kText},        {"bin.hex", FieldType::kUnshown},
    {"bin.base64", FieldType::kUnshown},
};

template <typename Number>
std::optional<Value> ParseNumber(std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (!std::isfinite(static_cast<double>(number))) return std::nullopt;
  return Value(number);
}

std::optional<Value> ParseBoolean(std::string_view text) {
  for (const char* yes : {"True", "true", "1", "-1"}) {
    if (text == yes) return Value(true);
  }
  for (const char* no : {"False", "false", "0"}) {
    if (text == no) return Value(false);
  }
  return std::nullopt;
}

}  // namespace

FieldType TypeNamed(std::string_view data_type) {
  const auto* found = std::find_if(std::begin(kTypes), std::end(kTypes),
                                   [&](const TypeRow& row) { return row.name == data_type; });
  return found == std::end(kTypes) ? FieldType::kText : found->type;
}

const char* NameOf(FieldType type) {
  return std::find_if(std::begin(kTypes), std::end(kTypes),
                      [type](const TypeRow& row) { return row.type == type; })
      ->name.data();
}

std::optional<Value> ParseValue(FieldType type, std::string_view text) {
  if (type == FieldType::kText) return Value(std::string(text));
  if (type == FieldType::kUnshown) return Value(CellError{"its values are bytes, not texts"});
  text = TrimBlanks(text);
  switch (type) {
    case FieldType::kInteger:
      return ParseNumber<int32_t>(text);
    case FieldType::kNumber:
      return ParseNumber<double>(text);
    case FieldType::kBoolean:
      return ParseBoolean(text);
    default: {
      const auto date = ParseIsoDate(text);
      return date ? std::optional<Value>(*date) : std::nullopt;
    }
  }
}

std::string TextOf(const Value& value) {
  if (const Date* date = value.As<Date>()) return IsoText(*date);
  if (const bool* flag = value.As<bool>()) return *flag ? "True" : "False";
  if (const double* number = value.As<double>()) {
    std::array<char, 40> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), *number).ptr};
  }
  return value.ToText();
}

}  // namespace vok::recordset
