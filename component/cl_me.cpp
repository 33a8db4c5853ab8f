#include "component/cl_me.h"

#include <utility>

#include "component/query_run.h"
#include "platform/failure.h"
#include "settings/set_lists.h"
#include "settings/settings_database.h"
#include "settings/settings_tables.h"

namespace vok {
namespace {

constexpr std::size_t kArraySize = kPeriodCount + 1;  // indexes 0 to 12

struct KnownCode {
  int32_t code;
  const char* message;
};

constexpr KnownCode kKnownCodes[] = {
    {failure_number::kDatabaseNotFound, "Database not Found"},
    {failure_number::kSettingsUnreadable, "Cann't read Settings"},
    {failure_number::kConnectionError, "Connection error"},
    {failure_number::kInvalidDate, "Invalid date"},
    {failure_number::kInvalidMeasure, "Not Valid Measure.Check your Settings"},
};

Value FailedRun(int32_t code) {
  for (const KnownCode& known : kKnownCodes) {
    if (known.code == code) return Value::Array{static_cast<int16_t>(code), known.message};
  }
  return Value::Array{code, ""};
}

std::string RangeText(const Locale& locale, const PeriodEntry& period) {
  if (period.FromDate.IsZero() && period.UntilDate.IsZero()) return {};
  const auto text = [&locale](Date date) {
    return date.IsZero() ? std::string() : locale.ShortDate(date);
  };
  return text(period.FromDate) + " - " + text(period.UntilDate);
}

Value::Array NamesIn(Rows& rows) {
  if (rows.AtEnd()) return {Value()};
  Value::Array names;
  for (rows.MoveFirst(); !rows.AtEnd(); rows.MoveNext()) {
    names.push_back(rows.Field("SetName"));
  }
  return names;
}

}  // namespace

clMe::clMe(const Host& host, Publics& publics, QueryWindowMaker make_window, CallTurns* turns)
    : host_(host), publics_(publics), make_window_(std::move(make_window)), turns_(turns) {}

std::string clMe::Version() const {
  const ComponentInfo& component = host_.component;
  return std::to_string(component.major) + "." + std::to_string(component.minor) + "." +
         std::to_string(component.revision);
}

Value clMe::ShowQCform(int32_t& Error, std::string& DataBaseFileName) {
  try {
    const CallTurn turn(turns_);
    return ShowReporting(Error, DataBaseFileName);
  } catch (...) {  // no turn
    Error = CurrentFailure().number();
    return Value::Array(1);
  }
}

Value clMe::ShowReporting(int32_t& Error, std::string& DataBaseFileName) {
  try {
    return ShowWindow(DataBaseFileName);
  } catch (...) {
    const Failure failure = CurrentFailure();
    if (failure.number() < 1) return {};  // the platform's own failures are not told to the host
    publics_.status = {failure.description(), failure.source()};
    Error = failure.number();
    return Value::Array(1);
  }
}

Value clMe::ShowWindow(std::string& DataBaseFileName) {
  if (!make_window_) {
    throw Failure(failure_number::kNotSupported,
                  "This build of " + host_.component.product_name +
                      " has no windows; settings are edited with its command line");
  }
  const auto window = make_window_(host_, publics_);
  const std::string help_file = host_.component.folder + "\\VarnelHeb.Chm";
  if (host_.files.Exists(help_file)) publics_.help_file = help_file;
  Value result = window->Initialize(DataBaseFileName);
  window->Show();
  return result;
}

Value clMe::RunQuery(std::string& CubeSetName, std::string& PeriodsName, std::string& OutputPath) {
  try {
    const CallTurn turn(turns_);
    const int32_t code = CubtoXls(host_, publics_, CubeSetName, PeriodsName, OutputPath);
    return code == 0 ? RunResult(PeriodsName) : FailedRun(code);
  } catch (...) {  // what the run itself meets has become its code
    const Failure failure = CurrentFailure();
    return Value::Array{failure.number(), failure.description()};
  }
}

Value clMe::RunResult(const std::string& PeriodsName) const {
  Value::TextArray names(kArraySize);
  Value::Int16Array opening_balances(kArraySize);
  Value::TextArray ranges(kArraySize);
  for (int number = 1; number <= kPeriodCount; ++number) {
    const PeriodEntry& period = publics_.settings.periods.Period(number);
    const auto index = static_cast<std::size_t>(number);
    names[index] = period.PeriodName;
    opening_balances[index] = period.IncludeOpenBalance ? -1 : 0;
    ranges[index] = RangeText(host_.locale, period);
  }
  return Value::Array{std::move(names), std::move(opening_balances), std::move(ranges),
                      publics_.settings.data_source.SetName, PeriodsName};
}

int32_t clMe::GetSetNames(Value& sName, std::string& TableName) {
  const CallTurn turn(turns_);
  if (publics_.environment.SettingsFolder.empty()) FindSettingsFolder(host_, publics_.environment);
  const std::string& folder = publics_.environment.SettingsFolder;
  if (!host_.files.Exists(SettingsDatabase(folder))) CreateDB(host_, publics_.environment, folder);
  const auto settings = OpenSettings(host_, publics_.environment);
  const auto rows = settings->Query(TableName);
  sName = NamesIn(*rows);
  rows->Close();
  return 0;
}

Value clMe::Qinfo() {
  try {
    const CallTurn turn(turns_);
    FindSettingsFolder(host_, publics_.environment);
    if (!host_.files.Exists(SettingsDatabase(publics_.environment.SettingsFolder))) {
      throw Failure(failure_number::kNotFound, "Database not Found");
    }
    Value::Array period_sets = ListPeriodSets(host_, publics_.environment);
    DataSourceList sources = ListDataSources(host_, publics_.environment);
    return Value::Array{std::move(period_sets), std::move(sources.names),
                        std::move(sources.cube_files), std::move(sources.file_dates)};
  } catch (...) {
    return {};
  }
}

}  // namespace vok
