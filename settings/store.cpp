#include "settings/store.h"

#include "platform/text.h"

namespace vok {
namespace {

constexpr char kPeriods[] = "Periods";

}  // namespace

std::unique_ptr<Connection> OpenSettings(const Host& host, const Environment& environment) {
  return OpenDatabase(host, SettingsDatabase(environment.SettingsFolder));
}

std::unique_ptr<Connection> OpenDatabase(const Host& host, const std::string& path) {
  constexpr int32_t kTimeoutSeconds = 20;
  return host.database.Open(path, kTimeoutSeconds);
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
