// The settings database: its file, tables and indexes, and bringing an older file up to date.
#pragma once

#include <string>
#include <vector>

#include "env/environment.h"
#include "platform/host.h"

namespace vok {

/// Makes sure that the settings database exists and is current: creates it in `folder` (one closing
/// "\" is dropped) when the settings folder has none, else adds missing `IsCalculated` columns.
/// Never fails: a failure is shown. A file that could be made in part alone is not kept, where the
/// provider has the choice.
void CreateDB(const Host& host, const Environment& environment, const std::string& folder);

/// The steps of making a new file. A failure ends its step, is shown under the step's title and
/// makes the result false.
bool CreateTables(const Host& host, DatabaseStructure& structure);
bool CreateIndexes(const Host& host, DatabaseStructure& structure);

/// Its tables, as they are today.
std::vector<TableDefinition> SettingsTables();

/// What a save stores for nothing: the zero date, 0, the empty text. NULL for the names of money
/// sets and periods, which are read as such.
Value NothingIn(const ColumnDefinition& column);

/// Adds the tables, `IsCalculated` and `Qty` columns that a database of an older shape lacks.
/// Failures pass to the caller.
void CompleteShape(const Locale& locale, DatabaseStructure& structure);

/// What `CreateDB` does to a file that is there; a failure passes to the caller.
void BringUpToDate(const Host& host, const Environment& environment);

/// Adds `IsCalculated0` to `IsCalculated12` to a `MoneySetsMeasures` of fewer than 30 columns.
void UpgradeMoneySetsMeasures(const Host& host, DatabaseStructure& structure);

/// Adds `Qty0` to `Qty12` to a `MoneySetsMeasures` of fewer than 43 columns. Of several processes
/// that come at once, one adds them. Failures pass to the caller.
void UpgradeQty(const Host& host, const Environment& environment);
/// The same inside a save or change of the caller's.
void AddQtyColumns(const Host& host, Connection& connection);

}  // namespace vok
