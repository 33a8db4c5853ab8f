// Values as the XML form writes them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "providers/recordset/rowset.h"

namespace vok::recordset {

/// Of a data type's name, such as "int" or "dateTime"; what is not known is read as text.
FieldType TypeNamed(std::string_view data_type);
/// The name that `TypeNamed` takes for this type.
const char* NameOf(FieldType type);

/// Nothing for a text that is not a value of the type.
std::optional<Value> ParseValue(FieldType type, std::string_view text);
/// The text that `ParseValue` takes for this value, which is not NULL.
std::string TextOf(const Value& value);

}  // namespace vok::recordset
