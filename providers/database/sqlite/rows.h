// Reading, deleting and inserting rows.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/value.h"
#include "providers/database/sqlite/statement.h"
#include "providers/database/sqlite/store.h"
#include "providers/database/sqlite/table_schema.h"

namespace vok::failure_number {

inline constexpr int32_t kNoColumn = -2147217904;         // DB_E_PARAMNOTOPTIONAL
inline constexpr int32_t kObjectExists = -2147217857;     // DB_E_TABLEEXISTS
inline constexpr int32_t kWrongColumnType = -2147217913;  // DB_E_DATATYPEMISMATCH

}  // namespace vok::failure_number

namespace vok {

struct Selection {
  TableDefinition table;  ///< with the selected columns alone
  std::vector<std::vector<Value>> rows;
};

/// Runs a select or reads a whole table. A delete is refused.
Selection Select(SqliteStore& store, const std::string& source);
/// Runs any statement; the rows of a select are dropped.
void Run(SqliteStore& store, const std::string& text);
/// One row, a value per column of `table`. Fails with -2147217873 when its key is taken or NULL.
void Insert(SqliteStore& store, const TableDefinition& table, const std::vector<Value>& row);

}  // namespace vok
