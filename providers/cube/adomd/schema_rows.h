// Rows that a cube provider tells of itself, read with one call for all of them.
#pragma once

#include <string>
#include <vector>

#include "system/automation/object.h"

namespace vok::windows {

/// Numbers of the schema rowsets, as `OpenSchema` takes them.
inline constexpr int32_t kCatalogsSchema = 1;
inline constexpr int32_t kMembersSchema = 38;

/// Row by row the texts of the named columns, in the provider's order; NULL is "". Empty
/// `restrictions` ask for all rows, an empty value in them restricts nothing. Failures: the
/// provider's.
std::vector<std::vector<std::string>> SchemaRows(const Object& connection, int32_t schema,
                                                 const Value::Array& restrictions,
                                                 const std::vector<std::string>& columns);

}  // namespace vok::windows
