// Tables, columns and indexes as the store keeps them.
//
// The store's own types are fewer than the platform's: which column is a date, a number, a text or
// a yes/no stands in its private table `vok_columns`, written together with the table itself.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/database.h"
#include "platform/value.h"
#include "providers/database/sqlite/store.h"

namespace vok {

/// Length of a text column whose definition gives none, in UTF-16 units.
inline constexpr int32_t kDefaultTextSize = 255;

std::vector<std::string> TableNames(SqliteStore& store);
/// Columns in the order of their making; nothing for an unknown table. Names without regard
/// to case.
std::optional<TableDefinition> FindTable(SqliteStore& store, const std::string& name);
/// Fails with `missing` when there is no such table.
TableDefinition TableNamed(SqliteStore& store, const std::string& name, int32_t missing);
/// nullptr when there is no such column.
const ColumnDefinition* FindColumn(const Locale& locale, const TableDefinition& table,
                                   const std::string& name);

/// Fail with -2147217857 when there is one of that name already.
void AddTable(SqliteStore& store, const TableDefinition& table);
/// Rows that are there get false in a yes/no column, the empty text in one of texts that is not
/// nullable, NULL in any other.
void AddColumn(SqliteStore& store, const std::string& table, const ColumnDefinition& column);
void AddIndex(SqliteStore& store, const std::string& table, const IndexDefinition& index);

/// The value as the column stores it: an empty value is NULL, NULL in a yes/no column is false.
/// Fails with -2147217833 for a text that is too long (naming both lengths) or a date before the
/// year 100 or after 9999; 6 and 13 as conversions do.
Value ToStored(const Locale& locale, const ColumnDefinition& column, const Value& value);

}  // namespace vok
