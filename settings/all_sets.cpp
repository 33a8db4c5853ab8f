#include "settings/all_sets.h"

#include <map>
#include <string>

#include "settings/set_rows.h"
#include "settings/store.h"

namespace vok {
namespace {

/// Calls `visit` with every row of a table.
template <typename Visit>
void ForEachRow(objRs& store, const std::string& table, Visit visit) {
  store.SQL = "SELECT * FROM " + table;
  const auto rows = store.GetRsReadOnly();
  const SetRow row(*rows, table, NullRule::kIsEmpty);
  for (; !rows->EndOfFile(); rows->MoveNext()) visit(row);
  rows->Close();
}

}  // namespace

std::vector<DataSourceSetting> ReadAllDataSources(const Host& host,
                                                  const Environment& environment) {
  objRs store = OpenSettings(host, environment);
  return ReadAllDataSources(host, store);
}

std::vector<DataSourceSetting> ReadAllDataSources(const Host& host, objRs& store) {
  std::vector<DataSourceSetting> settings;
  std::map<std::string, std::size_t> by_name;
  ForEachRow(store, "DataSourceInfo", [&](const SetRow& row) {
    DataSourceSetting& setting = settings.emplace_back();
    ReadInfoRow(row, setting);
    setting.VarnelMDB = row.Text("VarnelMDB");
    by_name[host.locale.FoldCase(setting.SetName)] = settings.size() - 1;
  });
  ForEachRow(store, "MoneySetsMeasures", [&](const SetRow& row) {
    const auto owner = by_name.find(host.locale.FoldCase(row.Text("SetName")));
    if (owner != by_name.end()) {
      ReadMoneyRow(row, settings[owner->second], NullRule::kIsEmpty);
    }
  });
  return settings;
}

std::vector<PeriodSet> ReadAllPeriodSets(const Host& host, const Environment& environment) {
  objRs store = OpenSettings(host, environment);
  return ReadAllPeriodSets(store);
}

std::vector<PeriodSet> ReadAllPeriodSets(objRs& store) {
  std::vector<PeriodSet> sets;
  ForEachRow(store, "Periods",
             [&](const SetRow& row) { ReadPeriodsRow(row, sets.emplace_back()); });
  return sets;
}

}  // namespace vok
