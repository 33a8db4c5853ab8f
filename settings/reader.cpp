#include "settings/reader.h"

#include <memory>

#include "platform/failure.h"
#include "platform/text.h"
#include "reports/error_report.h"
#include "settings/set_rows.h"
#include "settings/store.h"

namespace vok {
namespace {

constexpr int32_t kFound = 0;
using failure_number::kNotFound;

std::unique_ptr<Rows> Select(const Host& host, const Environment& environment,
                             const std::string& statement) {
  return OpenSettings(host, environment)->Query(statement);
}

/// Rows of a table whose set name is like `name`.
std::unique_ptr<Rows> SelectSet(const Host& host, const Environment& environment,
                                const std::string& table, const std::string& name) {
  return Select(host, environment,
                NamedSetStatement("SELECT * FROM " + table + " WHERE setname like ", name));
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
    const auto info = SelectSet(host, environment, "DataSourceInfo", name);
    if (info->Count() == 0) return kNotFound;
    ReadInfoRow(SetRow(*info, "DataSourceInfo", NullRule::kFails), setting);
    info->Close();

    const auto money = SelectSet(host, environment, "MoneySetsMeasures", name);
    if (money->Count() == 0) return kNotFound;
    ReadMoneyRow(SetRow(*money, "MoneySetsMeasures", NullRule::kFails), setting, NullRule::kFails);
    money->Close();
    FillEmptyMeasures(setting, cube_measures);
    return kFound;
  });
}

int32_t PeriodSettings(const Host& host, const Environment& environment, PeriodSet& set,
                       const std::string& name) {
  if (name.empty()) return kFound;
  return Reported(host, "PeriodSettings", [&] {
    const auto rows = SelectSet(host, environment, "Periods", name);
    if (rows->Count() == 0) return kNotFound;
    ReadPeriodsRow(SetRow(*rows, "Periods", NullRule::kFails), set);
    rows->Close();
    return kFound;
  });
}

Value::Array ListPeriodSets(const Host& host, const Environment& environment) {
  const auto rows = Select(host, environment, "SELECT * FROM Periods ");
  Value::Array names;
  if (rows->Count() > 0) rows->MoveFirst();
  for (; !rows->AtEnd(); rows->MoveNext()) names.push_back(rows->Field(0));
  rows->Close();
  if (names.empty()) names.resize(1);
  return names;
}

DataSourceList ListDataSources(const Host& host, const Environment& environment) {
  const auto rows = Select(host, environment, "SELECT SetName,CubeFile FROM DataSourceInfo ");
  DataSourceList list;
  for (; !rows->AtEnd(); rows->MoveNext()) {
    const std::string stored = rows->Field("CubeFile").ToText();
    const std::string file(TrimBlanks(stored));
    const bool exists = host.files.Exists(file);
    list.names.push_back(rows->Field("SetName"));
    list.cube_files.emplace_back(exists ? stored : std::string());
    list.file_dates.push_back(exists ? Value(GetFileDate(host, file)) : Value());
  }
  rows->Close();
  if (list.names.empty()) list = {Value::Array(1), Value::Array(1), Value::Array(1)};
  return list;
}

Date GetFileDate(const Host& host, const std::string& path) {
  return host.files.LastModified(path);
}

}  // namespace vok
