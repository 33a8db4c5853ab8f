#include "settings/all_sets.h"

#include <map>
#include <string>

#include "settings/set_rows.h"
#include "settings/store.h"

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

}  // namespace

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
