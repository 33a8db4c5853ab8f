#include "settings/store.h"

#include "platform/text.h"

namespace vok {
namespace {

constexpr char kPeriods[] = "Periods";
constexpr char kDataSource[] = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=";

objRs Connected(const Host& host, const std::string& connection_text) {
  constexpr int16_t kTimeoutSeconds = 20;
  objRs store(host.database);
  store.ADOConnect(connection_text, kTimeoutSeconds);
  return store;
}

}  // namespace

std::string SettingsConnectionText(const Environment& environment) {
  return kDataSource + SettingsDatabase(environment.SettingsFolder);
}

objRs OpenSettings(const Host& host, const Environment& environment) {
  return Connected(host, SettingsConnectionText(environment));
}

objRs OpenDatabase(const Host& host, const std::string& path) {
  return Connected(host, kDataSource + ("\"" + path + "\""));
}

std::string NamedSetStatement(const std::string& statement, const std::string& name) {
  return statement + "'" + std::string(TrimBlanks(name)) + "'";
}

std::string ExactSetStatement(const std::string& statement, const std::string& name) {
  std::string quoted = "'";
  for (const char c : name) quoted += c == '\'' ? "''" : std::string(1, c);
  return statement + quoted + "'";
}

const char* WordsForKind(const Locale& locale, const std::string& kind) {
  return EqualNoCase(locale, kind, kPeriods) ? kPeriodSetWords : kDataSourceWords;
}

std::vector<const char*> TablesOfKind(const Locale& locale, const std::string& kind) {
  if (EqualNoCase(locale, kind, kPeriods)) return {kPeriods};
  return {"Main", "MoneySetsMeasures", "DataSourceInfo"};
}

Failure WhileSaving(const Failure& failure, const std::string& words, const std::string& name) {
  return Failure(failure.number(),
                 failure.description() + " (while saving the " + words + " \"" + name + "\")",
                 failure.source(), failure.section());
}

}  // namespace vok
