#include "settings/writer.h"

#include <utility>
#include <vector>

#include "platform/failure.h"
#include "settings/schema.h"
#include "settings/store.h"

namespace vok {
namespace {

using Fields = std::vector<std::pair<std::string, Value>>;

void Run(objRs& store, const std::string& statement, const std::string& name) {
  store.SQL = NamedSetStatement(statement, name);
  store.RunCommand();
}

void InsertRow(objRs& store, const std::string& table, const Fields& fields) {
  store.SQL = table;
  const auto rows = store.GetRs();
  rows->AddNew();
  for (const auto& [field, value] : fields) rows->SetField(field, value);
  rows->Update();
  rows->Close();
}

void ReplaceRow(objRs& store, const std::string& table, const std::string& name,
                const Fields& fields) {
  Run(store, "delete * from " + table + " WHERE setname like ", name);
  InsertRow(store, table, fields);
}

Fields PeriodFields(const std::string& name, const PeriodSet& set) {
  Fields fields = {{"SetName", name}};
  const auto add = [&](const char* prefix, auto member) {
    for (int i = 1; i <= kPeriodCount; ++i) {
      fields.emplace_back(prefix + std::to_string(i), set.Period(i).*member);
    }
  };
  add("PeriodName", &PeriodEntry::PeriodName);
  add("FromDate", &PeriodEntry::FromDate);
  add("UntillDate", &PeriodEntry::UntilDate);
  add("includeOpenBalans", &PeriodEntry::IncludeOpenBalance);
  return fields;
}

Fields InfoFields(const DataSourceSetting& setting) {
  return {{"SetName", setting.SetName},
          {"VarnelMDB", setting.VarnelMDB},
          {"CubeFile", setting.CubeFile},
          {"CubeName", setting.CubeName},
          {"OBs", setting.OBS},
          {"ActFile", setting.ActFile},
          {"AccFile", ""}};
}

Fields MoneyFields(const DataSourceSetting& setting) {
  Fields fields = {{"SetName", setting.SetName}, {"CountMoney", setting.CountMoney}};
  const auto add = [&](const char* prefix, std::size_t i, Value value) {
    fields.emplace_back(prefix + std::to_string(i), std::move(value));
  };
  const auto& sets = setting.MoneySets;
  for (std::size_t i = 0; i < sets.size(); ++i) {
    add("Measure", i, sets[i].Measure.empty() ? sets[0].Measure : sets[i].Measure);
    add("IsCalculated", i, sets[i].IsCalculated);
  }
  for (std::size_t i = 0; i < sets.size(); ++i) {
    add("MoneySets", i, sets[i].MoneySet.IsEmpty() ? Value(Null{}) : sets[i].MoneySet);
  }
  for (std::size_t i = 0; i < sets.size(); ++i) add("Qty", i, sets[i].Qty);
  return fields;
}

void ReplaceInfo(objRs& store, const DataSourceSetting& setting) {
  ReplaceRow(store, "DataSourceInfo", setting.SetName, InfoFields(setting));
}

void ReplaceMoney(objRs& store, const DataSourceSetting& setting) {
  ReplaceRow(store, "MoneySetsMeasures", setting.SetName, MoneyFields(setting));
}

/// Runs `statements` on the opened database as one save; a failure names the set.
template <typename Statements>
void Save(const Host& host, const Environment& environment, const std::string& set,
          Statements statements) {
  try {
    objRs store = OpenSettings(host, environment);
    SaveGroup group(store.OpenedConnection());
    statements(store);
    group.Commit();
  } catch (const Failure& failure) {
    throw Failure(failure.number(), failure.description() + " (while saving " + set + ")",
                  failure.source(), failure.section());
  }
}

std::string DataSourceText(const DataSourceSetting& setting) {
  return "the data source \"" + setting.SetName + "\"";
}

}  // namespace

void SavePeriods(const Host& host, const Environment& environment, const PeriodSet& set) {
  const std::string name = set.SetName.empty() ? "Periods" : set.SetName;
  Save(host, environment, "the period set \"" + name + "\"",
       [&](objRs& store) { ReplaceRow(store, "Periods", name, PeriodFields(name, set)); });
}

void SaveMoneyMeasures(const Host& host, const Environment& environment,
                       const DataSourceSetting& setting) {
  UpgradeQty(host, environment);
  Save(host, environment, DataSourceText(setting),
       [&](objRs& store) { ReplaceMoney(store, setting); });
}

void SaveDataSourceInfo(const Host& host, const Environment& environment,
                        const DataSourceSetting& setting) {
  Save(host, environment, DataSourceText(setting),
       [&](objRs& store) { ReplaceInfo(store, setting); });
}

void SaveDataSource(const Host& host, const Environment& environment,
                    const DataSourceSetting& setting) {
  if (setting.SetName.empty()) {
    throw Failure(failure_number::kInvalidCall,
                  "A data source without a name cannot be saved; give it a SetName");
  }
  UpgradeQty(host, environment);
  Save(host, environment, DataSourceText(setting), [&](objRs& store) {
    ReplaceInfo(store, setting);
    ReplaceMoney(store, setting);
  });
}

void DeleteSet(const Host& host, const Environment& environment, const std::string& name,
               const std::string& kind) {
  objRs store = OpenSettings(host, environment);
  if (EqualNoCase(host.locale, kind, "Periods")) {
    Run(store, "DELETE * FROM Periods WHERE setname LIKE ", name);
    return;
  }
  for (const char* table : {"Main", "MoneySetsMeasures", "DataSourceInfo"}) {
    Run(store, std::string("DELETE * FROM ") + table + " WHERE setname LIKE ", name);
  }
}

}  // namespace vok
