#include "settings/writer.h"

#include "platform/failure.h"
#include "settings/schema.h"
#include "settings/set_fields.h"
#include "settings/set_names.h"
#include "settings/store.h"

namespace vok {
namespace {

void Run(objRs& store, const std::string& statement, const std::string& name) {
  store.SQL = NamedSetStatement(statement, name);
  store.RunCommand();
}

/// Replaces one row on the opened database as one save; a failure names the set.
void Save(const Host& host, const Environment& environment, const std::string& kind,
          const std::string& table, const Fields& fields) {
  const std::string name = fields.front().second.ToText();
  try {
    objRs store = OpenSettings(host, environment);
    SaveGroup group(store.OpenedConnection());
    Run(store, "delete * from " + table + " WHERE setname like ", name);
    store.SQL = table;
    const auto rows = store.GetRs();
    AddRow(*rows, fields);
    rows->Close();
    group.Commit();
  } catch (const Failure& failure) {
    throw WhileSaving(failure, kind, name);
  }
}

}  // namespace

void SavePeriods(const Host& host, const Environment& environment, const PeriodSet& set) {
  PeriodSet named = set;
  if (named.SetName.empty()) named.SetName = "Periods";
  CheckSetName(kPeriodSetWords, named.SetName);
  Save(host, environment, kPeriodSetWords, "Periods", PeriodFields(named));
}

void SaveMoneyMeasures(const Host& host, const Environment& environment,
                       const DataSourceSetting& setting) {
  CheckSetName(kDataSourceWords, setting.SetName);
  UpgradeQty(host, environment);
  Save(host, environment, kDataSourceWords, "MoneySetsMeasures", MoneyFields(setting));
}

void SaveDataSourceInfo(const Host& host, const Environment& environment,
                        const DataSourceSetting& setting) {
  CheckSetName(kDataSourceWords, setting.SetName);
  Save(host, environment, kDataSourceWords, "DataSourceInfo", InfoFields(setting));
}

void DeleteSet(const Host& host, const Environment& environment, const std::string& name,
               const std::string& kind) {
  CheckSetName(WordsForKind(host.locale, kind), name);
  objRs store = OpenSettings(host, environment);
  for (const char* table : TablesOfKind(host.locale, kind)) {
    Run(store, std::string("DELETE * FROM ") + table + " WHERE setname LIKE ", name);
  }
}

}  // namespace vok
