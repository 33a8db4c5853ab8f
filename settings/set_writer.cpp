#include "settings/set_writer.h"

#include "platform/failure.h"
#include "settings/set_rows.h"
#include "settings/settings_database.h"
#include "settings/settings_tables.h"

namespace vok {
namespace {

/// Replaces one row on the opened database as one save; a failure names the set.
void Save(const Host& host, const Environment& environment, const std::string& kind,
          const std::string& table, const Fields& fields) {
  const std::string name = fields.front().second.ToText();
  try {
    const auto connection = OpenSettings(host, environment);
    Transaction save(*connection, Purpose::kSave);
    connection->Execute(NamedSetStatement("delete * from " + table + " WHERE setname like ", name));
    const auto rows = connection->OpenTable(table);
    rows->Add(fields);
    rows->Close();
    save.Commit();
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
  const auto connection = OpenSettings(host, environment);
  for (const char* table : TablesOfKind(host.locale, kind)) {
    connection->Execute(
        NamedSetStatement(std::string("DELETE * FROM ") + table + " WHERE setname LIKE ", name));
  }
}

}  // namespace vok
