#include "settings/left_out.h"

#include <algorithm>
#include <set>

#include "settings/settings_tables.h"

namespace vok {
namespace {

using Sentences = std::vector<std::string>;

void AddColumns(const Host& host, const Rows& rows, const TableDefinition& table,
                Sentences& sentences) {
  for (int32_t i = 0; i < rows.FieldCount(); ++i) {
    const std::string name = rows.FieldName(i);
    const bool known = std::any_of(table.columns.begin(), table.columns.end(),
                                   [&](const ColumnDefinition& column) {
                                     return EqualNoCase(host.locale, column.name, name);
                                   });
    if (known) continue;
    sentences.push_back("The column " + name + " of the table " + table.name +
                        ": settings have no such column.");
  }
}

void AddUnusedTable(const Rows& rows, const std::string& table, Sentences& sentences) {
  if (rows.Count() == 0) return;
  sentences.push_back("The rows of the table " + table + " (" + std::to_string(rows.Count()) +
                      "): nothing reads them.");
}

void AddOrphans(const Host& host, Rows& rows, const std::set<std::string>& data_sources,
                Sentences& sentences) {
  for (; !rows.AtEnd(); rows.MoveNext()) {
    const Value stored = rows.Field("SetName");
    const std::string name = stored.IsNull() ? "" : stored.ToText();
    if (data_sources.contains(host.locale.FoldCase(name))) continue;
    sentences.push_back("The money sets of \"" + name + "\": no data source has that name.");
  }
}

}  // namespace

Sentences LeftOut(const Host& host, Connection& connection,
                  const std::vector<DataSourceSetting>& data_sources) {
  Sentences sentences;
  std::set<std::string> names;
  for (const DataSourceSetting& setting : data_sources) {
    names.insert(host.locale.FoldCase(setting.SetName));
    if (setting.AccFile.empty()) continue;
    sentences.push_back("The AccFile of the data source \"" + setting.SetName + "\", \"" +
                        setting.AccFile + "\": it is never stored.");
  }
  for (const TableDefinition& table : SettingsTables()) {
    const auto rows = connection.Query("SELECT * FROM " + table.name);
    AddColumns(host, *rows, table, sentences);
    if (table.name == "Main") AddUnusedTable(*rows, table.name, sentences);
    if (table.name == "MoneySetsMeasures") AddOrphans(host, *rows, names, sentences);
  }
  return sentences;
}

}  // namespace vok
