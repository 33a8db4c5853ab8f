#include "settings/settings_tables.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "platform/failure.h"
#include "settings/records.h"
#include "settings/settings_database.h"

namespace vok {
namespace {

constexpr char kMoneyTable[] = "MoneySetsMeasures";
constexpr int32_t kColumnsWithCalculated = 30;
constexpr int32_t kColumnsWithQty = 43;
constexpr int32_t kTextSize = 255;

using Columns = std::vector<ColumnDefinition>;

Columns Texts(std::initializer_list<const char*> names) {
  Columns columns;
  for (const char* name : names) columns.push_back({name, ColumnType::kText, kTextSize, false});
  return columns;
}

/// Adds one column for each number, such as "Measure0" to "Measure12".
void AddNumbered(Columns& columns, int first, int last, ColumnDefinition column) {
  const std::string prefix = column.name;
  for (int number = first; number <= last; ++number) {
    column.name = prefix + std::to_string(number);
    columns.push_back(column);
  }
}

void Append(Columns& columns, const Columns& more) {
  columns.insert(columns.end(), more.begin(), more.end());
}

Columns MoneyColumns(const char* prefix, ColumnType type, int32_t size, bool nullable) {
  Columns columns;
  AddNumbered(columns, 0, kMoneySetCount - 1, {prefix, type, size, nullable});
  return columns;
}

Columns QtyColumns() { return MoneyColumns("Qty", ColumnType::kText, 0, false); }
Columns CalculatedColumns() { return MoneyColumns("IsCalculated", ColumnType::kBoolean, 0, false); }

TableDefinition MoneySetsMeasures() {
  Columns columns = Texts({"SetName"});
  columns.push_back({"CountMoney", ColumnType::kInteger, 0, true});
  for (const Columns& group :
       {MoneyColumns("MoneySets", ColumnType::kText, kTextSize, true),
        MoneyColumns("Measure", ColumnType::kText, kTextSize, true), CalculatedColumns()}) {
    Append(columns, group);
  }
  return {kMoneyTable, columns};
}

TableDefinition Periods() {
  Columns columns = Texts({"SetName"});
  AddNumbered(columns, 1, kPeriodCount, {"PeriodName", ColumnType::kText, kTextSize, true});
  AddNumbered(columns, 1, kPeriodCount, {"FromDate", ColumnType::kDate, 0, true});
  AddNumbered(columns, 1, kPeriodCount, {"UntillDate", ColumnType::kDate, 0, true});
  AddNumbered(columns, 1, kPeriodCount, {"includeOpenBalans", ColumnType::kBoolean, 0, false});
  return {"Periods", columns};
}

std::array<TableDefinition, 4> Tables() {
  Columns main = Texts({"SetName", "Periods", "DataSource", "MoneySetMeasures"});
  main.push_back({"LastSaved", ColumnType::kBoolean, 0, false});
  return {{{"DataSourceInfo",
            Texts({"SetName", "VarnelMDB", "CubeFile", "CubeName", "OBS", "ActFile", "AccFile"})},
           {"Main", main},
           MoneySetsMeasures(),
           Periods()}};
}

IndexDefinition PrimaryKey() { return {"PrimaryKey", "SetName", true, true, false, false}; }
IndexDefinition Lookup(const char* name, const char* column) {
  return {name, column, false, false, false, true};
}

/// Runs one step; a failure in it is shown under the title, goes no further and gives false.
template <typename Step>
bool Shown(const Host& host, const char* title, Step step) {
  try {
    step();
    return true;
  } catch (...) {
    const Failure failure = CurrentFailure();
    MessageBox box;
    box.text = std::to_string(failure.number()) + " / " + failure.description();
    box.title = title;
    host.message_boxes.Show(box);
    return false;
  }
}

/// The table's name as the file spells it, when it has fewer than `count` columns.
std::optional<std::string> MoneyTableBelow(const Locale& locale, const DatabaseStructure& structure,
                                           int32_t count) {
  for (const std::string& table : structure.TableNames()) {
    if (EqualNoCase(locale, table, kMoneyTable) && structure.ColumnCount(table) < count) {
      return table;
    }
  }
  return std::nullopt;
}

void AppendColumns(DatabaseStructure& structure, const std::string& table, const Columns& columns) {
  for (const ColumnDefinition& column : columns) structure.AppendColumn(table, column);
}

void AddCalculatedColumns(const Locale& locale, DatabaseStructure& structure) {
  const auto table = MoneyTableBelow(locale, structure, kColumnsWithCalculated);
  if (table) AppendColumns(structure, *table, CalculatedColumns());
}

void AddMoneyColumns(const Locale& locale, DatabaseStructure& structure) {
  AddCalculatedColumns(locale, structure);  // with the columns below it would seem up to date
  const auto table = MoneyTableBelow(locale, structure, kColumnsWithQty);
  if (!table) return;  // they are there, or another process was first
  AppendColumns(structure, *table, QtyColumns());
}

bool HasTable(const Locale& locale, const DatabaseStructure& structure, const std::string& name) {
  const auto names = structure.TableNames();
  return std::any_of(names.begin(), names.end(),
                     [&](const std::string& table) { return EqualNoCase(locale, table, name); });
}

void UpgradeFile(const Host& host, const std::string& database) {
  UpgradeMoneySetsMeasures(host, *host.database.OpenStructure(database));
}

/// Whether there is a file that can be used after all: another process was faster.
bool IsMadeByAnother(const Host& host, const std::string& database) {
  if (!host.files.Exists(database)) return false;
  try {
    UpgradeFile(host, database);
    return true;
  } catch (const Failure&) {
    return false;
  }
}

void CreateFile(const Host& host, std::string folder) {
  if (folder.ends_with('\\')) folder.pop_back();
  const std::string database = SettingsDatabase(folder);
  std::unique_ptr<NewDatabase> made;
  try {
    made = host.database.Create(database);
  } catch (const Failure&) {
    if (IsMadeByAnother(host, database)) return;
    throw;
  }
  const bool has_tables = CreateTables(host, made->Structure());
  const bool has_indexes = CreateIndexes(host, made->Structure());
  if (has_tables && has_indexes) made->Keep();
}

}  // namespace

void CreateDB(const Host& host, const Environment& environment, const std::string& folder) {
  Shown(host, "", [&] {
    if (host.files.Exists(SettingsDatabase(environment.SettingsFolder))) {
      BringUpToDate(host, environment);
    } else {
      CreateFile(host, folder);
    }
  });
}

std::vector<TableDefinition> SettingsTables() {
  std::vector<TableDefinition> tables;
  for (const TableDefinition& table : Tables()) {
    Columns& columns = tables.emplace_back(table).columns;
    if (table.name == kMoneyTable) Append(columns, QtyColumns());
  }
  return tables;
}

Value NothingIn(const ColumnDefinition& column) {
  if (column.name.starts_with("MoneySets") || column.name.starts_with("PeriodName")) return Null{};
  switch (column.type) {
    case ColumnType::kBoolean:
      return false;
    case ColumnType::kInteger:
      return 0;
    case ColumnType::kDate:
      return Date{};
    default:
      return "";
  }
}

void CompleteShape(const Locale& locale, DatabaseStructure& structure) {
  for (const TableDefinition& table : Tables()) {
    if (!HasTable(locale, structure, table.name)) structure.AppendTable(table);
  }
  AddMoneyColumns(locale, structure);
}

void BringUpToDate(const Host& host, const Environment& environment) {
  UpgradeFile(host, SettingsDatabase(environment.SettingsFolder));
}

bool CreateTables(const Host& host, DatabaseStructure& structure) {
  return Shown(host, "Error In CreateTables", [&] {
    for (const TableDefinition& table : Tables()) structure.AppendTable(table);
  });
}

bool CreateIndexes(const Host& host, DatabaseStructure& structure) {
  return Shown(host, "Error In CreateIndexes", [&] {
    structure.AppendIndex("DataSourceInfo", PrimaryKey());
    structure.AppendIndex("Main", PrimaryKey());
    structure.AppendIndex("Main", Lookup("MoneySetsMeasuresMain", "MoneySetMeasures"));
    structure.AppendIndex("Main", Lookup("NameId", "SetName"));
    structure.AppendIndex("Main", Lookup("PeriodsMain", "Periods"));
    structure.AppendIndex(kMoneyTable, PrimaryKey());
    structure.AppendIndex("Periods", PrimaryKey());
  });
}

void UpgradeMoneySetsMeasures(const Host& host, DatabaseStructure& structure) {
  AddCalculatedColumns(host.locale, structure);
}

void UpgradeQty(const Host& host, const Environment& environment) {
  const auto connection = OpenSettings(host, environment);
  if (!MoneyTableBelow(host.locale, *connection->OpenStructure(), kColumnsWithQty)) return;
  Transaction upgrade(*connection, Purpose::kSave);
  AddQtyColumns(host, *connection);
  upgrade.Commit();
}

void AddQtyColumns(const Host& host, Connection& connection) {
  AddMoneyColumns(host.locale, *connection.OpenStructure());
}

}  // namespace vok
