// Reading, deleting and inserting rows.
#pragma once

#include <string>
#include <vector>

#include "platform/value.h"
#include "providers/database/sqlite/schema.h"
#include "providers/database/sqlite/statement.h"
#include "providers/database/sqlite/store.h"

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
