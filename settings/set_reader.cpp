#include "settings/set_reader.h"

#include <memory>

#include "platform/failure.h"
#include "platform/text.h"
#include "reports/error_report.h"
#include "settings/set_rows.h"
#include "settings/settings_database.h"
#include "settings/settings_tables.h"

namespace vok {
namespace {

constexpr int32_t kFound = 0;
using failure_number::kNotFound;

/// Rows of a table whose set name is like `name`.
std::unique_ptr<Rows> SelectSet(const Host& host, const Environment& environment,
                                const std::string& table, const std::string& name) {
  return OpenSettings(host, environment)
      ->Query(NamedSetStatement("SELECT * FROM " + table + " WHERE setname like ", name));
}

/// Runs one loading procedure; a failure in it is reported under its name and becomes its result.
template <typename Loading>
int32_t Reported(const Host& host, const char* procedure, Loading loading) {
  try {
    return loading();
  } catch (...) {
    const Failure failure = CurrentFailure();
    ShowErrorReport(host, failure, {.FunctionName = procedure, .ModuleName = "ModSettings"});
    return failure.number();
  }
}

void FillEmptyMeasures(DataSourceSetting& setting, const Value::Array& cube_measures) {
  std::string& first = setting.MoneySets[0].Measure;
  if (first.empty() && !cube_measures.empty()) first = cube_measures.front().ToText();
  for (MoneySetEntry& entry : setting.MoneySets) {
    if (entry.Measure.empty()) entry.Measure = first;
  }
}

/// Calls `read` with the table's row of that name; false when there is none.
template <typename Read>
bool ReadSet(const Host& host, const Environment& environment, const std::string& table,
             const std::string& name, Read read) {
  const auto rows = SelectSet(host, environment, table, name);
  const bool found = rows->Count() > 0;
  if (found) read(SetRow(*rows, table, NullRule::kFails));
  rows->Close();
  return found;
}

}  // namespace

int32_t LoadSettings(const Host& host, const Environment& environment, CurrentSettings& current,
                     const Value::Array& cube_measures, const std::string& data_source,
                     const std::string& periods) {
  std::string missing;
  if (ReadDataSourceSetting(host, environment, current.data_source, cube_measures, data_source) !=
      kFound) {
    missing = "Datasource Definition: " + data_source + "  Not Found!! \r\n";
  }
  if (PeriodSettings(host, environment, current.periods, periods) != kFound) {
    missing += "Periods Definition: " + periods + "  Not Found!! ";
  }
  if (missing.empty()) return kFound;
  host.message_boxes.Note(Failure(kNotFound, missing));
  MessageBox box;
  box.text = missing;
  box.title = host.component.executable_name;
  box.icon = MessageIcon::kInformation;
  host.message_boxes.Show(box);
  return kNotFound;
}

int32_t ReadDataSourceSetting(const Host& host, const Environment& environment,
                              DataSourceSetting& setting, const Value::Array& cube_measures,
                              const std::string& name) {
  if (name.empty()) return kNotFound;
  return Reported(host, "DataSourceSetting", [&] {
    const bool found =
        ReadSet(host, environment, "DataSourceInfo", name,
                [&](const SetRow& row) { ReadInfoRow(row, setting); }) &&
        ReadSet(host, environment, "MoneySetsMeasures", name,
                [&](const SetRow& row) { ReadMoneyRow(row, setting, NullRule::kFails); });
    if (!found) return kNotFound;
    FillEmptyMeasures(setting, cube_measures);
    return kFound;
  });
}

int32_t PeriodSettings(const Host& host, const Environment& environment, PeriodSet& set,
                       const std::string& name) {
  if (name.empty()) return kFound;
  return Reported(host, "PeriodSettings", [&] {
    const bool found = ReadSet(host, environment, "Periods", name,
                               [&](const SetRow& row) { ReadPeriodsRow(row, set); });
    return found ? kFound : kNotFound;
  });
}

std::optional<DataSourceSetting> ReadEditedDataSource(const Host& host,
                                                      const Environment& environment,
                                                      const std::string& name) {
  UpgradeQty(host, environment);
  DataSourceSetting setting;
  const bool found = ReadSet(host, environment, "DataSourceInfo", name, [&](const SetRow& row) {
    ReadInfoRow(row, setting);
    setting.VarnelMDB = row.Text("VarnelMDB");
  });
  if (!found) return std::nullopt;
  ReadSet(host, environment, "MoneySetsMeasures", name,
          [&](const SetRow& row) { ReadMoneyRow(row, setting, NullRule::kIsEmpty); });
  return setting;
}

std::optional<PeriodSet> ReadEditedPeriods(const Host& host, const Environment& environment,
                                           const std::string& name) {
  PeriodSet set;
  const bool found = ReadSet(host, environment, "Periods", name,
                             [&](const SetRow& row) { ReadPeriodsRow(row, set); });
  return found ? std::optional(set) : std::nullopt;
}

}  // namespace vok
