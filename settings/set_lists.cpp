#include "settings/set_lists.h"

#include <map>
#include <optional>
#include <string>

#include "platform/failure.h"
#include "platform/text.h"
#include "settings/set_rows.h"
#include "settings/settings_database.h"

namespace vok {
namespace {

/// Calls `visit` with every row of a table.
template <typename Visit>
void ForEachRow(Connection& connection, const std::string& table, Visit visit) {
  const auto rows = connection.Query("SELECT * FROM " + table);
  const SetRow row(*rows, table, NullRule::kIsEmpty);
  for (; !rows->AtEnd(); rows->MoveNext()) visit(row);
  rows->Close();
}

/// Nothing for a file that is not there or cannot be looked at: it must not hide the other
/// settings.
std::optional<Date> DateOf(const Host& host, const std::string& file) {
  try {
    if (host.files.Exists(file)) return GetFileDate(host, file);
  } catch (const Failure&) {
  }
  return std::nullopt;
}

}  // namespace

Value::Array ListPeriodSets(const Host& host, const Environment& environment) {
  const auto rows = OpenSettings(host, environment)->Query("SELECT * FROM Periods ");
  Value::Array names;
  if (rows->Count() > 0) rows->MoveFirst();
  for (; !rows->AtEnd(); rows->MoveNext()) names.push_back(rows->Field(0));
  rows->Close();
  if (names.empty()) names.resize(1);
  return names;
}

DataSourceList ListDataSources(const Host& host, const Environment& environment) {
  const auto rows =
      OpenSettings(host, environment)->Query("SELECT SetName,CubeFile FROM DataSourceInfo ");
  DataSourceList list;
  for (; !rows->AtEnd(); rows->MoveNext()) {
    const std::string stored = rows->Field("CubeFile").ToText();
    const auto date = DateOf(host, std::string(TrimBlanks(stored)));
    list.names.push_back(rows->Field("SetName"));
    list.cube_files.emplace_back(date ? stored : std::string());
    list.file_dates.push_back(date ? Value(*date) : Value());
  }
  rows->Close();
  if (list.names.empty()) list = {Value::Array(1), Value::Array(1), Value::Array(1)};
  return list;
}

Date GetFileDate(const Host& host, const std::string& path) {
  return host.files.LastModified(path);
}

std::vector<DataSourceSetting> ReadAllDataSources(const Host& host,
                                                  const Environment& environment) {
  return ReadAllDataSources(host, *OpenSettings(host, environment));
}

std::vector<DataSourceSetting> ReadAllDataSources(const Host& host, Connection& connection) {
  std::vector<DataSourceSetting> settings;
  std::map<std::string, std::size_t> by_name;
  ForEachRow(connection, "DataSourceInfo", [&](const SetRow& row) {
    DataSourceSetting& setting = settings.emplace_back();
    ReadInfoRow(row, setting);
    setting.VarnelMDB = row.Text("VarnelMDB");
    by_name[host.locale.FoldCase(setting.SetName)] = settings.size() - 1;
  });
  ForEachRow(connection, "MoneySetsMeasures", [&](const SetRow& row) {
    const auto owner = by_name.find(host.locale.FoldCase(row.Text("SetName")));
    if (owner != by_name.end()) {
      ReadMoneyRow(row, settings[owner->second], NullRule::kIsEmpty);
    }
  });
  return settings;
}

std::vector<PeriodSet> ReadAllPeriodSets(const Host& host, const Environment& environment) {
  return ReadAllPeriodSets(*OpenSettings(host, environment));
}

std::vector<PeriodSet> ReadAllPeriodSets(Connection& connection) {
  std::vector<PeriodSet> sets;
  ForEachRow(connection, "Periods",
             [&](const SetRow& row) { ReadPeriodsRow(row, sets.emplace_back()); });
  return sets;
}

}  // namespace vok
